#include <cmath>

#include "EditingTest.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "platform/headless/controls/ColorPicker.h"
#include "platform/headless/controls/CommandButton.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditingMaterialsWindow : public EditingTest {
 protected:
  Form& window() { return editor().MaterialsWindow()->Form(); }
  headless::CommandButton& swatch(std::int32_t index) {
    return Bind<headless::CommandButton>(window(), "btnColors", index);
  }
  headless::CommandButton& pixel() { return Bind<headless::CommandButton>(window(), "btnPixel"); }
  headless::ColorPicker& picker() { return Bind<headless::ColorPicker>(window(), "cpkMaterials"); }
  std::vector<std::string> readOuts() {
    std::vector<std::string> result;
    for (std::int32_t i = 0; i < 3; ++i) result.push_back(Bind<Label>(window(), "lblData", i).Caption());
    return result;
  }
  OLE_COLOR face() { return window().BackColor(); }
};

TEST_P(EditingMaterialsWindow, IsInItsDockWindowAndShowsTheEditorsColors) {
  EXPECT_EQ(suite().attached("dkwMaterials"), &window());
  EXPECT_EQ(editor().MaterialsWindow()->Application(), &editor());
  EXPECT_EQ(swatch(0).BackColor(), editor().ForeColor());
  EXPECT_EQ(swatch(1).BackColor(), editor().BackColor() == -1 ? face() : editor().BackColor());
  EXPECT_EQ(Bind<Frame>(window(), "fraPixel").Caption(), "Pixel");
}

TEST_P(EditingMaterialsWindow, IsShownAndHiddenByItsCommand) {
  DockWindow& dock = suite().DockWindows()("dkwMaterials");
  ASSERT_TRUE(dock.Visible());
  click("btnViewMaterialsWindow");
  EXPECT_FALSE(dock.Visible());
  EXPECT_FALSE(pressed("btnViewMaterialsWindow"));
  click("btnViewMaterialsWindow");
  EXPECT_TRUE(dock.Visible());
}

TEST_P(EditingMaterialsWindow, FollowsTheHostsColorsAtOnce) {
  editor().ForeColor(0x112233);
  EXPECT_EQ(swatch(0).BackColor(), 0x112233);
  editor().BackColor(0x445566);
  EXPECT_EQ(swatch(1).BackColor(), 0x445566);
  editor().BackColor(-1);
  EXPECT_EQ(swatch(1).BackColor(), face()) << "no background shows as the window's own color";
}

TEST_P(EditingMaterialsWindow, AClickOpensThePickerOverTheSwatchWithItsColor) {
  editor().ForeColor(0x112233);
  swatch(0).Press();
  EXPECT_TRUE(picker().isOpen());
  EXPECT_EQ(picker().place(), swatch(0).place());
  EXPECT_EQ(picker().Value(), 0x112233);
  EXPECT_FALSE(picker().EnhancedVisible()) << "a foreground can't be none";
  EXPECT_FALSE(picker().EnhancedIsSelected());
  picker().pick(0x0A0B0C);
  EXPECT_EQ(editor().ForeColor(), 0x0A0B0C);
  EXPECT_EQ(swatch(0).BackColor(), 0x0A0B0C);
}

TEST_P(EditingMaterialsWindow, TheBackgroundsPickerHasTheExtraButton) {
  editor().BackColor(0x112233);
  const OLE_COLOR foreground = editor().ForeColor();
  swatch(1).Press();
  EXPECT_EQ(picker().place(), swatch(1).place());
  EXPECT_TRUE(picker().EnhancedVisible());
  EXPECT_FALSE(picker().EnhancedIsSelected());
  picker().pick(0x0A0B0C);
  EXPECT_EQ(editor().BackColor(), 0x0A0B0C);
  swatch(1).Press();
  picker().pressEnhanced();
  EXPECT_EQ(editor().BackColor(), -1);
  EXPECT_EQ(editor().ForeColor(), foreground);
}

TEST_P(EditingMaterialsWindow, OpeningForNoBackgroundSetsNoColor) {
  editor().BackColor(0x112233);
  editor().BackColor(-1);
  swatch(1).Press();
  EXPECT_TRUE(picker().EnhancedIsSelected());
  picker().pick(0x0A0B0C);
  editor().BackColor(0x223344);
  swatch(1).Press();
  EXPECT_FALSE(picker().EnhancedIsSelected());
}

TEST_P(EditingMaterialsWindow, ChangesWhileThePickerIsPreparedChangeNothing) {
  editor().ForeColor(0x112233);
  editor().BackColor(0x445566);
  swatch(0).Press();
  bool raised = false;
  when(picker().Change, [&](OLE_COLOR) { raised = true; });
  // Preparing for the background sets another color in the picker, which raises a change.
  swatch(1).Press();
  EXPECT_TRUE(raised);
  EXPECT_EQ(editor().ForeColor(), 0x112233);
  EXPECT_EQ(editor().BackColor(), 0x445566);
}

TEST_P(EditingMaterialsWindow, TheExtraButtonChangesNothingForTheForeground) {
  editor().ForeColor(0x112233);
  editor().BackColor(0x445566);
  swatch(0).Press();
  picker().pressEnhanced();
  EXPECT_EQ(editor().ForeColor(), 0x112233);
  EXPECT_EQ(editor().BackColor(), 0x445566);
}

TEST_P(EditingMaterialsWindow, ShowsTheColorUnderThePointerInDecimal) {
  view().move(0, 0, position(12, 20));
  const engine::Pixel color = pixelOf(12, 20);
  EXPECT_THAT(readOuts(),
              ElementsAre(std::to_string(color.r), std::to_string(color.g), std::to_string(color.b)));
  EXPECT_EQ(pixel().BackColor(), colorOf(color));
}

TEST_P(EditingMaterialsWindow, AMoveOutOfThePictureClearsTheReadOuts) {
  view().move(0, 0, position(12, 20));
  view().move(0, 0, position(-1, 20));
  EXPECT_THAT(readOuts(), ElementsAre("", "", ""));
  EXPECT_EQ(pixel().BackColor(), face());
}

TEST_P(EditingMaterialsWindow, ThePointerLeavingTheViewClearsTheReadOuts) {
  view().move(0, 0, position(12, 20));
  platform().pointerRestsAt({5000, 5000});
  EXPECT_THAT(readOuts(), ElementsAre("", "", ""));
  EXPECT_EQ(pixel().BackColor(), face());
}

TEST_P(EditingMaterialsWindow, APointerAtRestRestartsTheTracker) {
  view().move(0, 0, position(12, 20));
  platform().pointerRestsAt(platform().desktop().pointer);
  EXPECT_NE(readOuts()[0], "");
  platform().pointerRestsAt({5000, 5000});
  EXPECT_EQ(readOuts()[0], "");
}

TEST_P(EditingMaterialsWindow, UnloadedItFollowsNothing) {
  view().move(0, 0, position(12, 20));
  const OLE_COLOR before = swatch(0).BackColor();
  const std::vector<std::string> shownBefore = readOuts();
  window().Unload();
  editor().ForeColor(before + 1);
  editor().FlipHorizontally();
  view().move(0, 0, position(13, 20));
  platform().pointerRestsAt({5000, 5000});
  EXPECT_EQ(swatch(0).BackColor(), before);
  EXPECT_EQ(readOuts(), shownBefore);
}

TEST_P(EditingMaterialsWindow, TheReadOutsFollowAChangedPictureUnderARestingPointer) {
  view().move(0, 0, position(12, 20));
  const auto readOutsOf = [](const engine::Pixel& pixel) {
    return std::vector<std::string>{std::to_string(pixel.r), std::to_string(pixel.g),
                                    std::to_string(pixel.b)};
  };
  editor().FlipHorizontally();
  EXPECT_EQ(readOuts(), readOutsOf(pixelOf(kWidth - 1 - 12, 20)));
  EXPECT_EQ(pixel().BackColor(), colorOf(pixelOf(kWidth - 1 - 12, 20)));
  editor().Undo();
  EXPECT_EQ(readOuts(), readOutsOf(pixelOf(12, 20)));
  editor().Picture(nullptr);
  EXPECT_THAT(readOuts(), ElementsAre("", "", ""));
}

TEST_P(EditingMaterialsWindow, LaysItsSwatchesOutByItsWidth) {
  const std::int32_t left = swatch(0).Left();
  window().Move(0, 0, 203, 150);
  EXPECT_EQ(swatch(0).Width(), 110) << "203 / 5 x 2.7 = 109.62";
  EXPECT_EQ(swatch(1).Width(), 110);
  EXPECT_EQ(swatch(0).Left(), left);
  EXPECT_EQ(swatch(1).Left(), left + 73) << "two thirds of the first one's width";
}

TEST_P(EditingMaterialsWindow, BoundAgainItsTrackingHasStopped) {
  view().move(0, 0, position(12, 20));
  editor().MaterialsWindow()->Application(&editor());
  EXPECT_THAT(readOuts(), ElementsAre("", "", ""));
  Bind<Label>(window(), "lblData", 0).Caption("kept");
  platform().pointerRestsAt({5000, 5000});
  EXPECT_EQ(readOuts()[0], "kept") << "a leave that is not tracked empties nothing";
}

TEST_P(EditingMaterialsWindow, WithoutItsEditorItFollowsNothing) {
  view().move(0, 0, position(12, 20));
  editor().MaterialsWindow()->Application(nullptr);
  EXPECT_EQ(readOuts()[0], "") << "the old link ends as when the pointer leaves";
  const OLE_COLOR before = swatch(0).BackColor();
  editor().ForeColor(before + 1);
  view().move(0, 0, position(12, 20));
  EXPECT_EQ(swatch(0).BackColor(), before);
  EXPECT_EQ(readOuts()[0], "");
  editor().MaterialsWindow()->Application(&editor());
  EXPECT_EQ(swatch(0).BackColor(), before + 1);
}

// -- The magnifier ----------------------------------------------------------------------------------------

class EditingZoomWindow : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    window().Form().Move(0, 0, 105, 84);
    window().ClearZoomWindow();
  }
  frmZoom& window() { return *editor().ZoomWindow(); }
  headless::Form& form() { return dynamic_cast<headless::Form&>(window().Form()); }
  const engine::Bitmap& face() { return form().face(); }
  bool empty() { return same(face(), engine::Bitmap::filled(face().width(), face().height())); }
  static engine::Pixel inverse(engine::Pixel pixel) {
    const auto turn = [](std::uint8_t value) { return static_cast<std::uint8_t>(255 - value); };
    return {turn(pixel.r), turn(pixel.g), turn(pixel.b), 255};
  }
  static engine::Pixel colorPixel(OLE_COLOR color) {
    const Colour value(color);
    return {value.Red(), value.Green(), value.Blue(), 255};
  }
  /// The expected window for a pixel: the cut scaled to a rectangle that is one cell larger, the checkerboard
  /// behind transparent pixels, and the inverted box of the mark.
  engine::Bitmap expected(std::int32_t x, std::int32_t y, std::int32_t level) {
    const std::int32_t regionWidth = form().Width() / level, regionHeight = form().Height() / level;
    const std::int32_t left = x - regionWidth / 2, top = y - regionHeight / 2;
    const std::int32_t width = (regionWidth + 1) * level, height = (regionHeight + 1) * level;
    engine::Bitmap result = engine::Bitmap::filled(form().Width(), form().Height());
    const engine::Bitmap picture = shown();
    const std::int32_t square = options().BackgroundGridSize();
    const auto ground = [&](std::int32_t column, std::int32_t row) {
      const bool second = column / square % 2 == row / square % 2;
      return colorPixel(second ? options().BackgroundGridColor2() : options().BackgroundGridColor1());
    };
    const engine::Pixels pixels = result.writable();
    const auto put = [&](std::int32_t column, std::int32_t row, engine::Pixel value) {
      if (column < 0 || row < 0 || column >= pixels.width || row >= pixels.height) return;
      reinterpret_cast<engine::Pixel*>(pixels.row(row))[column] = value;
    };
    for (std::int32_t row = 0; row < height; ++row) {
      for (std::int32_t column = 0; column < width; ++column) {
        const std::int32_t fromX = left + column * regionWidth / width;
        const std::int32_t fromY = top + row * regionHeight / height;
        const bool inside = fromX >= 0 && fromY >= 0 && fromX < picture.width() && fromY < picture.height();
        const engine::Pixel pixel = inside ? picture.at(fromX, fromY) : engine::Pixel{};
        put(column, row, pixel.a == 0 ? ground(column, row) : pixel);
      }
    }
    const auto half = [level](std::int32_t cells) {
      return static_cast<std::int32_t>(std::nearbyint(cells / 2 * level - level / 2.0));
    };
    const std::int32_t boxLeft = half(regionWidth), boxTop = half(regionHeight);
    const auto invert = [&](std::int32_t column, std::int32_t row) {
      if (column < 0 || row < 0 || column >= pixels.width || row >= pixels.height) return;
      put(column, row, inverse(result.at(column, row)));
    };
    for (std::int32_t i = 0; i <= level; ++i) {
      invert(boxLeft + i, boxTop);
      invert(boxLeft + i, boxTop + level);
      if (i == 0 || i == level) continue;
      invert(boxLeft, boxTop + i);
      invert(boxLeft + level, boxTop + i);
    }
    return result;
  }
};

TEST_P(EditingZoomWindow, IsInItsDockWindowAtTheOptionsLevel) {
  EXPECT_EQ(suite().attached("dkwZoom"), &form());
  EXPECT_EQ(window().Application(), &editor());
  EXPECT_EQ(options().ZoomLevel(), 10);
  EXPECT_EQ(window().ZoomLevel(), 10);
}

TEST_P(EditingZoomWindow, IsShownAndHiddenByItsCommand) {
  DockWindow& dock = suite().DockWindows()("dkwZoom");
  ASSERT_TRUE(dock.Visible());
  click("btnViewZoomWindow");
  EXPECT_FALSE(dock.Visible());
  EXPECT_FALSE(pressed("btnViewZoomWindow"));
  click("btnViewZoomWindow");
  EXPECT_TRUE(dock.Visible());
  EXPECT_TRUE(pressed("btnViewZoomWindow"));
}

TEST_P(EditingZoomWindow, TakesItsLevelFromTheOptionsWhenItIsMade) {
  options().ZoomLevel(6);
  EXPECT_EQ(window().ZoomLevel(), 10) << "made before";
  EXPECT_EQ(frmZoom().ZoomLevel(), 6);
}

TEST_P(EditingZoomWindow, ALevelBeyondTheWindowsSizeShowsCheckerboardAndMark) {
  options().BackgroundGridColor1(0x302010);
  options().BackgroundGridColor2(0x302010);
  editor().ApplyOptions();
  window().ZoomLevel(200);
  view().move(0, 0, position(12, 20));
  // No cell fits: the mark is a box around the window's corner, from -100 to 100.
  EXPECT_EQ(face().at(0, 0), (engine::Pixel{0x10, 0x20, 0x30, 255}));
  EXPECT_EQ(face().at(100, 40), (engine::Pixel{0xEF, 0xDF, 0xCF, 255}));
}

TEST_P(EditingZoomWindow, ShowsTheCutAroundThePixelUnderThePointerWithItsMark) {
  view().move(0, 0, position(12, 20));
  EXPECT_TRUE(same(face(), expected(12, 20, 10)));
}

TEST_P(EditingZoomWindow, ShowsTheCheckerboardBeyondThePicturesEdge) {
  view().move(0, 0, position(1, 1));
  EXPECT_TRUE(same(face(), expected(1, 1, 10)));
  EXPECT_EQ(face().at(0, 0), colorPixel(options().BackgroundGridColor2()));
  view().move(0, 0, position(kWidth - 1, kHeight - 1));
  EXPECT_TRUE(same(face(), expected(kWidth - 1, kHeight - 1, 10)));
}

TEST_P(EditingZoomWindow, ShowsTheCheckerboardBehindTransparentPixels) {
  options().BackgroundGridColor1(0x0000FF);
  options().BackgroundGridColor2(0x00FF00);
  options().BackgroundGridSize(6);
  editor().ApplyOptions();
  show(engine::Bitmap::filled(kWidth, kHeight, {9, 9, 9, 0}));
  view().move(0, 0, position(12, 20));
  EXPECT_TRUE(same(face(), expected(12, 20, 10)));
  EXPECT_EQ(face().at(0, 0), (engine::Pixel{0, 255, 0, 255}));
  EXPECT_EQ(face().at(6, 0), (engine::Pixel{255, 0, 0, 255}));
}

TEST_P(EditingZoomWindow, TheMarkMovesWithoutTraces) {
  show(engine::Bitmap::filled(kWidth, kHeight, {0, 0, 0, 0}));
  for (const Point& at : {Point{12, 20}, Point{12, 20}, Point{13, 20}, Point{0, 0}, Point{0, 0}}) {
    view().move(0, 0, position(at.X, at.Y));
    EXPECT_TRUE(same(face(), expected(at.X, at.Y, 10))) << at.X << ", " << at.Y;
  }
}

TEST_P(EditingZoomWindow, FollowsAChangedPictureUnderARestingPointer) {
  view().move(0, 0, position(12, 20));
  editor().FlipHorizontally();
  EXPECT_TRUE(same(face(), expected(12, 20, 10)));
  editor().Undo();
  EXPECT_TRUE(same(face(), expected(12, 20, 10)));
  editor().Redo();
  EXPECT_TRUE(same(face(), expected(12, 20, 10)));
}

TEST_P(EditingZoomWindow, IsClearedWhenThePictureNoLongerReachesThePointer) {
  view().move(0, 0, position(0, 0));
  editor().SetSelection(20, 10, 4, 4);
  editor().CropToSelection();
  EXPECT_TRUE(empty());
}

TEST_P(EditingZoomWindow, StaysClearedIfThePictureChangesWithoutThePointer) {
  view().move(0, 0, position(12, 20));
  platform().pointerRestsAt({5000, 5000});
  view().leave();
  editor().FlipHorizontally();
  EXPECT_TRUE(empty());
}

TEST_P(EditingZoomWindow, Level1IsAPlainCopyWithABoxOfOnePixel) {
  window().ZoomLevel(1);
  window().ClearZoomWindow();
  view().move(0, 0, position(12, 20));
  EXPECT_TRUE(same(face(), expected(12, 20, 1)));
}

TEST_P(EditingZoomWindow, OddLevelsRoundTheMarkHalfToEven) {
  window().ZoomLevel(7);
  window().ClearZoomWindow();
  view().move(0, 0, position(12, 20));
  EXPECT_TRUE(same(face(), expected(12, 20, 7)));
}

TEST_P(EditingZoomWindow, AMoveOutOfThePictureClearsIt) {
  view().move(0, 0, position(12, 20));
  EXPECT_FALSE(empty());
  view().move(0, 0, position(-1, 20));
  EXPECT_TRUE(empty());
}

TEST_P(EditingZoomWindow, ThePointerLeavingTheViewClearsItThroughTheTracker) {
  view().move(0, 0, position(12, 20));
  platform().pointerRestsAt(platform().desktop().pointer);
  EXPECT_FALSE(empty());
  platform().pointerRestsAt({5000, 5000});
  EXPECT_TRUE(empty());
}

TEST_P(EditingZoomWindow, HiddenItNeverDraws) {
  form().Hide();
  view().move(0, 0, position(12, 20));
  EXPECT_TRUE(empty());
  window().ZoomLevel(5);
  EXPECT_TRUE(empty());
}

TEST_P(EditingZoomWindow, HiddenItStartsNoTracking) {
  platform().pointerRestsAt({5000, 5000});
  form().Hide();
  view().move(0, 0, position(12, 20));
  form().Show();
  form().Graphics().DrawBox(1, 1, 9, 9, 0x0000FF);
  platform().pointerRestsAt({5000, 5000});
  EXPECT_FALSE(empty()) << "a leave that was not tracked clears nothing";
}

TEST_P(EditingZoomWindow, ChangingTheLevelRedrawsAtThePointerWithoutScrolling) {
  open(1000, 900);
  view().ScrollLeft(100);
  view().ScrollTop(50);
  view().move(0, 0, {61, 41});
  window().ClearZoomWindow();
  window().ZoomLevel(6);
  EXPECT_TRUE(same(face(), expected(61, 41, 6))) << "view positions, no scroll offset is added";
}

TEST_P(EditingZoomWindow, SettingTheCurrentLevelDoesNothing) {
  view().move(0, 0, position(12, 20));
  window().ClearZoomWindow();
  window().ZoomLevel(10);
  EXPECT_TRUE(empty());
}

TEST_P(EditingZoomWindow, WithoutItsEditorItIsCleared) {
  view().move(0, 0, position(12, 20));
  window().Application(nullptr);
  EXPECT_TRUE(empty());
  EXPECT_EQ(window().Application(), nullptr);
  window().Application(&editor());
  EXPECT_FALSE(empty()) << "bound again it shows the pointer's surroundings";
}

TEST_P(EditingZoomWindow, UnloadedItReleasesItsEditorAndTheTracker) {
  view().move(0, 0, position(12, 20));
  form().Unload();
  EXPECT_EQ(window().Application(), nullptr);
  form().Graphics().DrawBox(1, 1, 9, 9, 0x0000FF);
  platform().pointerRestsAt({5000, 5000});
  EXPECT_FALSE(empty()) << "it received no leave of the pointer";
}

TEST_P(EditingZoomWindow, RedrawingDoesNotCopyThePicture) {
  const std::uint8_t* const before = shown().pixels().data;
  view().move(0, 0, position(12, 20));
  editor().BackColor(0x0000FF);
  editor().Tool(ipToolRectangle);
  dragSelection({2, 2}, {8, 8});
  EXPECT_EQ(shown().pixels().data, before);
}

KESTREL_WITH_BOTH_PATHS(EditingMaterialsWindow);
KESTREL_WITH_BOTH_PATHS(EditingZoomWindow);

}  // namespace
}  // namespace kestrel
