// What the control notifies, as the automation class passes it on.

#include "HostTest.h"
#include "host/interface/IImageEvents.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HostSink : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    processing_ = std::make_unique<ImageProcessing>();
    processing_->Initialize();
    processing_->Title("Pictures");
  }
  void TearDown() override {
    processing_.reset();
    HostTest::TearDown();
  }

  ImageProcessing& processing() { return *processing_; }
  std::string caption() { return formOf(processing()).Caption(); }

  std::unique_ptr<ImageProcessing> processing_;
};

TEST_F(HostSink, AnOpenSetsTheCaptionAndThenRaisesImageOpen) {
  on(processing().ImageOpen, [this](const std::string& name) { log_.push_back(name + ": " + caption()); });
  ASSERT_TRUE(processing().OpenImage(png()));
  EXPECT_THAT(log_, ElementsAre("C:\\a\\b.png: b.png - Pictures"));
}

TEST_F(HostSink, ASaveSetsTheCaptionAndThenRaisesImageSave) {
  ASSERT_TRUE(processing().OpenImage(png()));
  on(processing().ImageSave, [this](const std::string& name) { log_.push_back(name + ": " + caption()); });
  ASSERT_TRUE(processing().SaveImageAs("C:\\a\\c.png"));
  EXPECT_THAT(log_, ElementsAre("C:\\a\\c.png: c.png - Pictures"));
  EXPECT_TRUE(exists("C:\\a\\c.png"));
}

TEST_F(HostSink, AFailedOpenLeavesTheCaptionAndRaisesNothing) {
  record(processing());
  user().answers(kAnswerOK);
  EXPECT_FALSE(processing().OpenImage("C:\\a\\missing.png"));
  EXPECT_EQ(caption(), "Untitled - Pictures");
  EXPECT_THAT(log_, IsEmpty());
}

TEST_F(HostSink, WhatTheHostFillsInForAnOpenGoesBackToTheControl) {
  const std::string file = png();
  on(processing().RequestOpenFilename, [&](std::string& name, bool& cancel) {
    EXPECT_EQ(name, "");
    EXPECT_FALSE(cancel);
    name = file;
  });
  EXPECT_TRUE(processing().OpenImage());
  EXPECT_EQ(processing().Filename(), "C:\\a\\b.png");
}

TEST_F(HostSink, TheHostMayCancelTheDialogOfAnOpen) {
  on(processing().RequestOpenFilename, [](std::string&, bool& cancel) { cancel = true; });
  EXPECT_FALSE(processing().OpenImage());
}

TEST_F(HostSink, WithoutAnAnswerOfTheHostTheUserIsAsked) {
  record(processing());
  user().cancelsFileDialog();
  EXPECT_FALSE(processing().OpenImage());
  EXPECT_THAT(log_, ElementsAre("RequestOpenFilename "));
}

TEST_F(HostSink, WhatTheHostFillsInForASaveGoesBackToTheControl) {
  ASSERT_TRUE(processing().OpenImage(png()));
  on(processing().RequestSaveFilename, [](std::string& name, bool&) { name = "C:\\a\\c.png"; });
  EXPECT_TRUE(processing().SaveImageAs());
  EXPECT_EQ(processing().Filename(), "C:\\a\\c.png");
}

TEST_F(HostSink, TheHostMayCancelTheDialogOfASave) {
  ASSERT_TRUE(processing().OpenImage(png()));
  on(processing().RequestSaveFilename, [](std::string&, bool& cancel) { cancel = true; });
  EXPECT_FALSE(processing().SaveImageAs());
}

TEST_F(HostSink, TheHostSeesWhatTheControlsEventLeft) {
  on(processing().Control().RequestOpenFilename, [](std::string& name, bool&) { name = "C:\\a\\first.png"; });
  std::string seen;
  on(processing().RequestOpenFilename, [&](std::string& name, bool& cancel) {
    seen = name;
    name.clear();
    cancel = true;
  });
  EXPECT_FALSE(processing().OpenImage());
  EXPECT_EQ(seen, "C:\\a\\first.png");
}

TEST_F(HostSink, TheControlsEventComesFirst) {
  on(processing().ImageOpen, [this](const std::string&) { log_.push_back("host"); });
  on(processing().Control().ImageOpen, [this](const std::string&) { log_.push_back("control"); });
  ASSERT_TRUE(processing().OpenImage(png()));
  EXPECT_THAT(log_, ElementsAre("control", "host"));
}

TEST_F(HostSink, AHandlerThatFailsIsReportedAndTheOpenSucceeds) {
  on(processing().ImageOpen, [](const std::string&) { throw RuntimeError(5, "The host failed."); });
  user().answers(kAnswerOK);
  EXPECT_TRUE(processing().OpenImage(png()));
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Module: ImageProcessing\r\nProcedure: ImageOpen\r\n"));
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("The host failed. (5)"));
  EXPECT_EQ(caption(), "b.png - Pictures");
}

TEST_F(HostSink, AfterTheUserClosedTheWindowTheControlHasNoSink) {
  processing().Show();
  record(processing());
  formOf(processing()).pressCloseBox();
  log_.clear();
  processing().Show();
  EXPECT_TRUE(processing().OpenImage(png()));
  EXPECT_THAT(log_, IsEmpty());
  EXPECT_EQ(caption(), "Untitled - Pictures");
}

TEST_F(HostSink, ASinkOfItsOwnClassDoesNothing) {
  const auto plain = std::make_shared<IImageEvents>();
  processing().Control().EventSink(plain);
  user().cancelsFileDialog();
  EXPECT_FALSE(processing().OpenImage()) << "the user is asked";
  EXPECT_TRUE(processing().OpenImage(png()));
  EXPECT_TRUE(processing().SaveImageAs("C:\\a\\c.png"));
}

TEST_F(HostSink, AHostsOwnSinkReplacesTheObject) {
  struct Own final : IImageEvents {
    void ImageOpen(const std::string& filename) override { opened = filename; }
    std::string opened;
  };
  const auto own = std::make_shared<Own>();
  record(processing());
  processing().Control().EventSink(own);
  ASSERT_TRUE(processing().OpenImage(png()));
  EXPECT_EQ(own->opened, "C:\\a\\b.png");
  EXPECT_THAT(log_, IsEmpty());
}

}  // namespace
}  // namespace kestrel
