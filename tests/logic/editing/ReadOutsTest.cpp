// Position, pixel color and magnifier under a resting pointer.

#include <utility>

#include "EditingTest.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel {
namespace {

/// A picture of 1000 by 900, larger than the view, with the pointer at pixel (100, 80).
class EditingReadOuts : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(1000, 900);
    pointer = position(100, 80);
    view().move(0, 0, pointer);
    expectShows(100, 80);
  }

  std::string red() { return Bind<Label>(editor().MaterialsWindow()->Form(), "lblData", 0).Caption(); }
  void expectShows(std::int32_t x, std::int32_t y) {
    EXPECT_EQ(panel("pnlPosition"), ToText(x) + ", " + ToText(y));
    EXPECT_EQ(red(), ToText(std::int32_t{at(x, y).r}));
  }
  void expectShowsPointerPixel() {
    const auto pixel = view().PointerPixel();
    ASSERT_TRUE(pixel.has_value());
    expectShows(pixel->X, pixel->Y);
  }
  void expectShowsNothing() {
    EXPECT_EQ(panel("pnlPosition"), " ");
    EXPECT_EQ(red(), "");
  }

  Point pointer;
};

TEST_P(EditingReadOuts, FollowTheScrolling) {
  view().turnWheel(-1, 0, pointer);
  EXPECT_GT(view().ScrollTop(), 0);
  expectShows(100, 80 + view().ScrollTop());
  view().ScrollTop(0);
  view().ScrollLeft(33);
  expectShows(133, 80);
  EXPECT_TRUE(view().keyDown(engine::ViewKey::end, 0));
  expectShowsPointerPixel();
}

TEST_P(EditingReadOuts, FollowTheZoomOfWheelAndCommands) {
  for (const char* key : {"btnZoomIn", "btnZoomActualSize", "btnZoomOut"}) {
    suite().click(key);
    expectShowsPointerPixel();
  }
  suite().typeComboText("cboZoom", "3:1");
  expectShowsPointerPixel();
  view().turnWheel(-2, kCtrlMask, pointer);
  ASSERT_EQ(view().Zoom(), 1.0);
  expectShowsPointerPixel();
}

TEST_P(EditingReadOuts, AreEmptyWhenThePictureShrinksAwayFromThePointer) {
  suite().typeComboText("cboZoom", "0.1:1");
  ASSERT_EQ(view().PointerPixel(), std::nullopt);
  expectShowsNothing();
}

TEST_P(EditingReadOuts, AreEmptyOutsideAPictureThatIsZoomedOut) {
  open(kWidth, kHeight);
  const Point middle = position(20, 15);
  view().move(0, 0, middle);
  suite().typeComboText("cboZoom", "0.5:1");
  for (std::int32_t x = middle.X + kWidth / 2; x < view().Width(); x += 5) {
    view().move(0, 0, middle);
    expectShowsPointerPixel();
    view().move(0, 0, {x, middle.Y});
    ASSERT_EQ(view().PointerPixel(), std::nullopt);
    expectShowsNothing();
  }
}

TEST_P(EditingReadOuts, AreEmptyAfterThePointerHasLeftTheView) {
  view().leave();
  expectShowsNothing();
  view().ScrollLeft(100);
  expectShowsNothing();
}

TEST_P(EditingReadOuts, FollowRotationUndoAndRedo) {
  editor().Rotate(90, -1, false);
  EXPECT_EQ(panel("pnlSize"), "900, 1000");
  expectShowsPointerPixel();
  editor().Undo();
  EXPECT_EQ(panel("pnlSize"), "1000, 900");
  expectShows(100, 80);
  editor().Redo();
  EXPECT_EQ(panel("pnlSize"), "900, 1000");
  expectShowsPointerPixel();
}

TEST_P(EditingReadOuts, FollowAnotherPicture) {
  open(1200, 1100);
  EXPECT_EQ(panel("pnlSize"), "1200, 1100");
  expectShows(100, 80);
  editor().Picture(nullptr);
  expectShowsNothing();
}

TEST_P(EditingReadOuts, FollowTheSizeOfTheView) {
  open(kWidth, kHeight);
  view().move(0, 0, position(20, 15));
  suite().showDockWindow("dkwMaterials", false);
  suite().showDockWindow("dkwZoom", false);
  const auto pixel = view().PointerPixel();
  if (pixel) {
    expectShows(pixel->X, pixel->Y);
  } else {
    expectShowsNothing();
  }
  EXPECT_NE(pixel, (Point{20, 15})) << "the picture is centered in a wider view";
}

// -- The context menu by the keyboard ---------------------------------------------------------------------

TEST_P(EditingReadOuts, TheContextMenuIsThatOfTheSelectionOrOfThePicture) {
  const auto opened = [this] {
    std::string menus;
    const auto before = std::exchange(user().onComplaint, [&](const std::string& text) { menus += text; });
    view().ContextMenu();
    user().onComplaint = before;
    return menus;
  };
  EXPECT_EQ(opened(), "Nobody expected the popup menu mnuImageContext.");
  editor().SetSelection(10, 10, 20, 20);
  EXPECT_EQ(opened(), "Nobody expected the popup menu mnuSelectionContext.");
  editor().Picture(nullptr);
  EXPECT_EQ(opened(), "");
}

KESTREL_WITH_BOTH_PATHS(EditingReadOuts);

}  // namespace
}  // namespace kestrel
