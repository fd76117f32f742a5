#include "EditingTest.h"
#include "imaging/modImgX.h"

namespace kestrel {
namespace {

using testing::ElementsAre;

constexpr engine::Pixel kRed{255, 0, 0, 255};

/// Zoomed in and scrolled: view positions count as picture pixels from the scroll position, with no factor
/// for the zoom.
class EditingMapping : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(1000, 900);
    suite().typeComboText("cboZoom", "2:1");
    view().ScrollLeft(100);
    view().ScrollTop(50);
    fillClipboard(60, 50, kRed);
    log().clear();
  }
};

TEST_P(EditingMapping, ThePictureRegionTakesViewPositionsUnscaled) {
  const auto inside = [this](std::int32_t x, std::int32_t y) { return modImgX::InImageRegion(view(), x, y); };
  EXPECT_TRUE(inside(-99, -49)) << "pixel (0, 0)";
  EXPECT_FALSE(inside(-100, -49));
  EXPECT_FALSE(inside(-99, -50));
  EXPECT_TRUE(inside(901, 851)) << "pixel (1000, 900)";
  EXPECT_FALSE(inside(902, 851));
  EXPECT_FALSE(inside(901, 852));
}

TEST_P(EditingMapping, TheSelectionTakesViewPositionsUnscaled) {
  editor().SetSelection(150, 80, 20, 10);
  const auto inside = [this](std::int32_t x, std::int32_t y) {
    return modImgX::InImageSelection(view(), x, y, false);
  };
  EXPECT_TRUE(inside(51, 31));
  EXPECT_FALSE(inside(50, 31));
  EXPECT_FALSE(inside(51, 30));
  EXPECT_TRUE(inside(71, 41));
  EXPECT_FALSE(inside(72, 41));
  EXPECT_FALSE(inside(71, 42));
}

TEST_P(EditingMapping, APressNextToAFloatingPasteIsTestedUnscaled) {
  click("btnEditPaste");
  view().click({61, 51});
  EXPECT_TRUE(pressed("btnEditPaste")) << "pixel (160, 100), the far corner";
  view().click({62, 20});
  EXPECT_FALSE(pressed("btnEditPaste")) << "though the rectangle is drawn as far as 121";
  EXPECT_EQ(undoCaption(), "&Undo Paste");
}

TEST_P(EditingMapping, AFloatingPasteIsPaintedUnscaled) {
  click("btnEditPaste");
  view().ScrollLeft(90);
  view().ScrollTop(45);
  log().clear();
  const engine::Bitmap seen = view().painted();
  EXPECT_THAT(calls(), ElementsAre("scratch.Surface.DrawTo(11, 6, 13369376)"));
  EXPECT_EQ(seen.at(70, 55), kRed);
  EXPECT_NE(seen.at(71, 55), kRed);
  EXPECT_NE(seen.at(70, 56), kRed);
}

TEST_P(EditingMapping, AClickOnAFloatingImageOutsideItsRectangleKeepsIt) {
  open(3000, 2500);
  suite().typeComboText("cboZoom", "0.5:1");
  view().ScrollLeft(0);
  view().ScrollTop(0);
  click("btnEditPaste");
  view().click({50, 40});
  EXPECT_TRUE(pressed("btnEditPaste")) << "pixel (49, 39), while the rectangle is drawn as far as (31, 26)";
  EXPECT_TRUE(view().SelectionVisible());
  EXPECT_EQ(view().SelectionWidth(), 60);
  EXPECT_EQ(view().SelectionHeight(), 50);
  EXPECT_EQ(panel("pnlSize"), "60, 50");
}

KESTREL_WITH_BOTH_PATHS(EditingMapping);

}  // namespace
}  // namespace kestrel
