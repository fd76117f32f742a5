// What fails in the class and its window: errors to the host, or a report and the window goes on.

#include <optional>

#include "../fakes/FailingPositions.h"
#include "../fakes/ForwardingPlatform.h"
#include "HostTest.h"

namespace kestrel {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// The machine of the test, on which positions fail.
class PlatformWithoutPositions final : public fakes::ForwardingPlatform {
 public:
  using ForwardingPlatform::ForwardingPlatform;
  kestrel::WindowPositions& WindowPositions() override { return positions_; }

 private:
  fakes::FailingPositions positions_;
};

class HostFailure : public HostTest {
 protected:
  void expectReport(const std::string& module, const std::string& procedure, const std::string& error) {
    ASSERT_EQ(user().boxes().size(), 1u);
    EXPECT_EQ(user().boxes()[0].title, "Application Error");
    EXPECT_THAT(user().boxes()[0].text,
                HasSubstr("Module: " + module + "\r\nProcedure: " + procedure + "\r\n"));
    EXPECT_THAT(user().boxes()[0].text, HasSubstr(error));
  }
};

class HostWithoutPositions : public HostFailure {
 protected:
  void SetUp() override {
    HostFailure::SetUp();
    failing_.emplace(platform());
    modProcessing::Attach(*failing_);
  }
  void TearDown() override {
    HostFailure::TearDown();
    failing_.reset();
  }

 private:
  std::optional<PlatformWithoutPositions> failing_;
};

// -- The window ---------------------------------------------------------------------------------------------

TEST_F(HostWithoutPositions, APositionThatCannotBeReadIsReportedAndTheWindowIsShown) {
  ImageProcessing processing;
  user().answers(kAnswerOK);
  processing.Show();
  EXPECT_TRUE(processing.Visible());
  expectReport("frmImageEditor", "Form_Load", "The position cannot be read. (57)");
}

TEST_F(HostWithoutPositions, APositionThatCannotBeStoredIsReportedAndTheWindowIsHiddenAndKept) {
  ImageProcessing processing;
  processing.Initialize();
  user().answers(kAnswerOK);
  processing.Show();
  ASSERT_TRUE(processing.OpenImage(png()));
  change(processing);
  user().forget();
  int unloaded = 0;
  on(formOf(processing).Unloaded, [&] { ++unloaded; });
  user().answers(kAnswerNo);
  user().answers(kAnswerOK);
  formOf(processing).pressCloseBox();
  EXPECT_FALSE(processing.Visible());
  EXPECT_EQ(unloaded, 0) << "the window lives as long as the object";
  EXPECT_EQ(processing.Control().ZoomWindow(), nullptr) << "its control has been through Terminate";
  ASSERT_EQ(user().boxes().size(), 2u) << "the question and the report";
  EXPECT_THAT(user().boxes()[1].text, HasSubstr("Module: frmImageEditor\r\nProcedure: zSavePosition\r\n"));
  EXPECT_THAT(user().boxes()[1].text, HasSubstr("The position cannot be stored. (61)"));
}

TEST_F(HostFailure, AHandlerThatFailsAtTheEndIsReportedAndTheObjectEnds) {
  ImageProcessing processing;
  processing.Initialize();
  processing.Show();
  on(processing.WindowClosed, [] { throw RuntimeError(5, "The host failed."); });
  user().answers(kAnswerOK);
  processing.Terminate();
  expectReport("ImageProcessing", "mForm_QueryUnload", "The host failed. (5)");
  EXPECT_EQ(errorOf([&] { static_cast<void>(processing.Visible()); }), 91);
}

// -- The sink -----------------------------------------------------------------------------------------------

TEST_F(HostFailure, AHandlerOfASaveIsReportedAndThePictureIsSaved) {
  ImageProcessing processing;
  processing.Initialize();
  ASSERT_TRUE(processing.OpenImage(png()));
  on(processing.ImageSave, [](const std::string&) { throw RuntimeError(5, "The host failed."); });
  user().answers(kAnswerOK);
  EXPECT_TRUE(processing.SaveImageAs("C:\\a\\c.png"));
  expectReport("ImageProcessing", "ImageSave", "The host failed. (5)");
  EXPECT_EQ(formOf(processing).Caption(), "c.png - " + platform().App().Title());
}

TEST_F(HostFailure, AHandlerOfARequestIsReportedAndTheUserIsAsked) {
  for (const bool save : {false, true}) {
    ImageProcessing processing;
    processing.Initialize();
    ASSERT_TRUE(processing.OpenImage(png()));
    const auto fail = [](std::string&, bool&) { throw RuntimeError(5, "The host failed."); };
    on(processing.RequestOpenFilename, fail);
    on(processing.RequestSaveFilename, fail);
    user().forget();
    user().answers(kAnswerOK);
    user().cancelsFileDialog();
    EXPECT_FALSE(save ? processing.SaveImageAs() : processing.OpenImage());
    expectReport("ImageProcessing", save ? "RequestSaveFilename" : "RequestOpenFilename",
                 "The host failed. (5)");
  }
}

// -- Errors to the host -------------------------------------------------------------------------------------

TEST_F(HostFailure, WithoutAPictureThumbnailsRaiseTheErrorOfTheControl) {
  ImageProcessing processing;
  processing.Initialize();
  EXPECT_EQ(errorOf([&] { processing.GetThumbnail(); }), 91);
  EXPECT_EQ(errorOf([&] { processing.SaveThumbnail("C:\\a\\t.png"); }), 91);
  EXPECT_FALSE(exists("C:\\a\\t.png"));
  EXPECT_THAT(user().boxes(), IsEmpty()) << "the host is told, not the user";
}

TEST_F(HostFailure, BeforeInitializeNothingWorksOnThePicture) {
  ImageProcessing processing;
  const std::string file = png();
  record(processing);
  user().answers(kAnswerOK);
  EXPECT_FALSE(processing.OpenImage(file));
  expectReport("ImageProcessingCtl", "OpenImage", "(91)");
  EXPECT_THAT(log_, IsEmpty());
  EXPECT_EQ(errorOf([&] { processing.GetThumbnail(); }), 91);
  EXPECT_EQ(errorOf([&] { processing.SaveThumbnail("C:\\a\\t.png"); }), 91);
}

}  // namespace
}  // namespace kestrel
