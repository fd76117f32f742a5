// Zooming in the panes of a preview.

#include "EditingTest.h"
#include "dialogs/Preview.h"
#include "platform/headless/Surfaces.h"

namespace kestrel {
namespace {

/// A preview of a picture of 1000 by 900 in two panes of 200 by 180.
class EditingPreviewZoom : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(1000, 900);
    surface_ = headless::makePreviewSite(platform().desktop(), nullptr, "Preview", platform().surroundings());
    original_ = &Bind<headless::ImageView>(*surface_, "igxOriginal");
    preview_ = &Bind<headless::ImageView>(*surface_, "igxPreview");
    control_ = std::make_unique<Preview>(*surface_);
    surface_->InitProperties();
    surface_->Move(0, 0, 412, 180);
    control_->OriginalPicture(&view());
    control_->UseOriginal(true);
  }
  void TearDown() override {
    control_.reset();
    surface_.reset();
    EditingTest::TearDown();
  }
  void expectZoom(double factor) {
    EXPECT_DOUBLE_EQ(original_->Zoom(), factor);
    EXPECT_DOUBLE_EQ(preview_->Zoom(), factor);
  }
  static Point scrollOf(ImageView& pane) { return {pane.ScrollLeft(), pane.ScrollTop()}; }

  std::unique_ptr<headless::Site> surface_;
  headless::ImageView* original_ = nullptr;
  headless::ImageView* preview_ = nullptr;
  std::unique_ptr<Preview> control_;
};

TEST_P(EditingPreviewZoom, StartsAtActualSize) { expectZoom(1); }

TEST_P(EditingPreviewZoom, TheWheelWithCtrlInEitherPaneZoomsBoth) {
  original_->turnWheel(1, kCtrlMask, {50, 50});
  expectZoom(1.25);
  preview_->turnWheel(1, kCtrlMask, {50, 50});
  expectZoom(1.5625);
  preview_->turnWheel(-2, kCtrlMask, {50, 50});
  expectZoom(1);
}

TEST_P(EditingPreviewZoom, TheWheelKeepsThePixelUnderThePointerAndThePanesTogether) {
  original_->ScrollLeft(300);
  original_->ScrollTop(200);
  preview_->move(0, 0, {150, 30});
  const auto before = preview_->PointerPixel();
  preview_->turnWheel(1, kCtrlMask, {150, 30});
  EXPECT_EQ(preview_->PointerPixel(), before);
  EXPECT_EQ(scrollOf(*original_), scrollOf(*preview_));
  EXPECT_GT(preview_->ScrollLeft(), 300);
}

TEST_P(EditingPreviewZoom, TheWheelStopsAtActualSizeOnItsWay) {
  original_->doubleClick({50, 50});
  expectZoom(0.2);
  for (int notch = 0; notch < 7; ++notch) original_->turnWheel(1, kCtrlMask, {50, 50});
  EXPECT_LT(original_->Zoom(), 1);
  original_->turnWheel(1, kCtrlMask, {50, 50});
  expectZoom(1);
}

TEST_P(EditingPreviewZoom, TheWheelZoomsOutUntilBothPicturesAreInView) {
  original_->turnWheel(-30, kCtrlMask, {50, 50});
  expectZoom(0.2);
  control_->PreviewPane().Effects().ResizeCanvas(2000, 900, Colour(0), 0, 0);
  original_->turnWheel(-30, kCtrlMask, {50, 50});
  expectZoom(0.1);
}

TEST_P(EditingPreviewZoom, ASmallPictureIsNotZoomedOutFromActualSize) {
  open(kWidth, kHeight);
  control_->UseOriginal(false);
  control_->UseOriginal(true);
  original_->turnWheel(-3, kCtrlMask, {50, 50});
  expectZoom(1);
  original_->turnWheel(1, kCtrlMask, {50, 50});
  expectZoom(1.25);
}

TEST_P(EditingPreviewZoom, ADoubleClickFitsBothPicturesOrGoesBackToActualSize) {
  preview_->doubleClick({50, 50});
  expectZoom(0.2);
  EXPECT_EQ(original_->horizontalScroll().maximum, 0);
  EXPECT_EQ(original_->verticalScroll().maximum, 0);
  original_->doubleClick({50, 50});
  expectZoom(1);
  original_->turnWheel(2, kCtrlMask, {50, 50});
  preview_->doubleClick({50, 50});
  expectZoom(1);
}

TEST_P(EditingPreviewZoom, ADoubleClickFitsTheLargerOfTheTwo) {
  control_->PreviewPane().Effects().ResizeCanvas(2000, 900, Colour(0), 0, 0);
  original_->doubleClick({50, 50});
  expectZoom(0.1);
}

TEST_P(EditingPreviewZoom, UnlinkedPanesZoomTogetherAndScrollAlone) {
  control_->LinkedScrolling(false);
  original_->ScrollLeft(300);
  original_->turnWheel(1, kCtrlMask, {0, 0});
  expectZoom(1.25);
  EXPECT_EQ(original_->ScrollLeft(), 300);
  EXPECT_LT(preview_->ScrollLeft(), 100);
}

TEST_P(EditingPreviewZoom, StaysWhenThePreviewIsComputedAgain) {
  original_->turnWheel(1, kCtrlMask, {50, 50});
  control_->Reset();
  control_->UseOriginal(false);
  expectZoom(1.25);
}

KESTREL_WITH_BOTH_PATHS(EditingPreviewZoom);

}  // namespace
}  // namespace kestrel
