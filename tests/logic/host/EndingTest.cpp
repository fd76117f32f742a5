// A host ends the classes in their events and under their windows. Members of the window are on the stack
// then.

#include <functional>

#include "HostTest.h"
#include "browser/ImageBrowser.h"
#include "imaging/contract/controls/CommandButton.h"

namespace kestrel {
namespace {

using testing::ElementsAre;

/// How the host ends the object.
enum class Ends { kTerminate, kDestroy };

class HostEnding : public HostTest, public testing::WithParamInterface<Ends> {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    file_ = png();
    processing_ = std::make_unique<ImageProcessing>();
    processing_->Initialize();
    processing_->Show();
    EXPECT_TRUE(processing_->OpenImage(file_));
  }
  void TearDown() override {
    processing_.reset();
    HostTest::TearDown();
  }

  ImageProcessing& processing() { return *processing_; }
  void end() {
    ++ends_;
    if (GetParam() == Ends::kTerminate) {
      processing_->Terminate();
    } else {
      processing_.reset();
    }
  }
  void endIn(const std::string& what) {
    log_.push_back(what);
    end();
  }

  std::string file_;
  std::unique_ptr<ImageProcessing> processing_;
  int ends_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Ways, HostEnding, testing::Values(Ends::kTerminate, Ends::kDestroy),
                         [](const auto& way) {
                           return way.param == Ends::kTerminate ? "Terminate" : "Destructor";
                         });

TEST_P(HostEnding, InImageOpen) {
  on(processing().ImageOpen, [this](const std::string& name) { endIn(name); });
  on(processing().ImageOpen, [this](const std::string&) { log_.push_back("the second handler"); });
  processing().OpenImage(file_);
  EXPECT_THAT(log_, ElementsAre(file_));
}

TEST_P(HostEnding, InImageSave) {
  on(processing().ImageSave, [this](const std::string& name) { endIn(name); });
  processing().SaveImageAs("C:\\a\\c.png");
  EXPECT_THAT(log_, ElementsAre("C:\\a\\c.png"));
  EXPECT_TRUE(exists("C:\\a\\c.png"));
}

TEST_P(HostEnding, InRequestOpenFilename) {
  on(processing().RequestOpenFilename, [this](std::string& name, bool&) {
    name = file_;
    endIn("request");
  });
  on(processing().Control().ImageOpen, [this](const std::string&) { log_.push_back("opened"); });
  EXPECT_FALSE(processing().OpenImage());
  EXPECT_THAT(log_, ElementsAre("request"));
}

TEST_P(HostEnding, InRequestSaveFilename) {
  on(processing().RequestSaveFilename, [this](std::string& name, bool&) {
    name = "C:\\a\\c.png";
    endIn("request");
  });
  EXPECT_FALSE(processing().SaveImageAs());
  EXPECT_FALSE(exists("C:\\a\\c.png"));
}

TEST_P(HostEnding, InWindowClosedOfTheUser) {
  headless::Form& form = formOf(processing());
  int unloaded = 0;
  on(form.Unloaded, [&] { ++unloaded; });
  on(processing().WindowClosed, [this] {
    if (ends_ == 0) end();
  });
  form.pressCloseBox();
  EXPECT_EQ(ends_, 1);
  EXPECT_EQ(unloaded, 1) << "by the end, and not again by the close";
}

TEST_P(HostEnding, InWindowClosedWithUnsavedChanges) {
  change(processing());
  on(processing().WindowClosed, [this] {
    if (ends_ == 0) end();
  });
  formOf(processing()).pressCloseBox();
  EXPECT_EQ(ends_, 1) << "and the user is not asked";
}

TEST_P(HostEnding, InTheSaveOfACloseWithUnsavedChanges) {
  change(processing());
  on(processing().ImageSave, [this](const std::string& name) { endIn(name); });
  user().answers(kAnswerYes);
  formOf(processing()).pressCloseBox();
  EXPECT_THAT(log_, ElementsAre(file_));
}

TEST_P(HostEnding, InTheCommandClose) {
  processing().ShowClose(true);
  on(processing().Control().ExitRequest, [this] { end(); });
  EXPECT_TRUE(suiteOf(processing()).click("btnFileClose"));
  EXPECT_EQ(ends_, 1);
}

TEST_P(HostEnding, InEventsOfTheControl) {
  on(processing().Control().ToolChange, [this](ImageProcessingToolConstants) { end(); });
  suiteOf(processing()).click("btnDrawPan");
  EXPECT_EQ(ends_, 1);
}

TEST_P(HostEnding, WhileADialogIsOpen) {
  user().uses("frmResize", [this](Form& form) {
    end();
    form.Hide();
  });
  EXPECT_FALSE(processing().ShowResizeDialog());
  EXPECT_EQ(ends_, 1);
}

TEST_P(HostEnding, WhileADialogWithAPreviewIsOpenAndAccepted) {
  const auto picture = processing().ImgX();
  user().uses("frmRotate", [this](Form& form) {
    end();
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  EXPECT_EQ(processing().ShowRotateDialog(), 0);
  EXPECT_EQ(ends_, 1);
}

TEST_P(HostEnding, WhileTheFileDialogIsOpen) {
  user().cancelsFileDialog([this](headless::FileDialog&) { end(); });
  EXPECT_FALSE(processing().OpenImage());
  EXPECT_EQ(ends_, 1);
}

TEST_P(HostEnding, WhileTheFileDialogIsOpenAndChosen) {
  user().chooses(file_, [this](headless::FileDialog&) { end(); });
  on(processing().Control().ImageOpen, [this](const std::string&) { log_.push_back("opened"); });
  EXPECT_FALSE(processing().OpenImage());
  EXPECT_TRUE(log_.empty());
}

TEST_P(HostEnding, WhileItIsShownModally) {
  formOf(processing()).pressCloseBox();
  user().uses("frmImageEditor", [this](Form& form) {
    end();
    EXPECT_FALSE(form.Visible()) << "the end closes it";
  });
  processing().Show(true);
  EXPECT_EQ(ends_, 1);
}

TEST_P(HostEnding, ReleasesThePictureWhenTheNextObjectEnds) {
  std::weak_ptr<ImgX> picture = processing().ImgX();
  on(processing().ImageOpen, [this](const std::string&) { end(); });
  processing().OpenImage(file_);
  EXPECT_FALSE(picture.expired()) << "frames of the control were on the stack";
  { const ImageProcessing next; }
  EXPECT_TRUE(picture.expired());
}

TEST_P(HostEnding, OutsideOfAllCallsReleasesThePictureAtOnce) {
  std::weak_ptr<ImgX> picture = processing().ImgX();
  end();
  EXPECT_TRUE(picture.expired());
}

TEST_P(HostEnding, InWindowClosedOfTheEndItself) {
  int raised = 0;
  on(processing().WindowClosed, [&] {
    ++raised;
    end();
  });
  processing().Terminate();
  EXPECT_EQ(raised, 1);
}

// -- The browser --------------------------------------------------------------------------------------------

TEST_P(HostEnding, TheBrowserWhileItIsShownModally) {
  auto browser = std::make_unique<ImageBrowser>();
  user().uses("frmImageBrowser", [&](Form& form) {
    if (GetParam() == Ends::kTerminate) {
      browser->Terminate();
    } else {
      browser.reset();
    }
    EXPECT_FALSE(form.Visible()) << "the end closes it";
  });
  browser->Show(true);
}

}  // namespace
}  // namespace kestrel
