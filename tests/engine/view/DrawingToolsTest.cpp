#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "../undo/Pictures.h"
#include "TestView.h"
#include "engine/draw/BoxShape.h"
#include "engine/draw/LineShape.h"

namespace kestrel::engine {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Not;

constexpr Pixel kBack{10, 20, 30, 255};
constexpr Pixel kRed{255, 0, 0, 255};

struct DrawingTools : ::testing::Test {
  DrawingTools() {
    view.load(1000, 1000, kBack);
    view.Draw().Color().Value(0x0000FF);
  }

  Bitmap picture() { return bitmapOf(*view.Picture()); }

  /// The blank picture with a shape painted on it.
  static Bitmap with(const Shape& shape) {
    Bitmap result = Bitmap::filled(1000, 1000, kBack);
    paint(result.writable(), {0, 0, 1000, 1000}, shape, kRed);
    return result;
  }

  /// Expects that one undo restores the blank picture and one redo the drawing.
  void expectOneStep(const std::string& name) {
    const Bitmap drawn = deepCopy(picture());
    EXPECT_EQ(view.UndoName(), name);
    view.Undo();
    EXPECT_TRUE(samePixels(picture(), Bitmap::filled(1000, 1000, kBack)));
    EXPECT_EQ(view.UndoName(), "");
    EXPECT_EQ(view.RedoName(), name);
    view.Redo();
    EXPECT_TRUE(samePixels(picture(), drawn));
  }

  TestView view{200, 100};
};

TEST_F(DrawingTools, LineGoesFromPixelToPixel) {
  view.Tool(kViewToolLine);
  view.drag({{10, 10}, {50, 60}, {90, 40}});
  EXPECT_TRUE(samePixels(picture(), with(LineShape({10.5, 10.5}, {90.5, 40.5}))));
  EXPECT_THAT(view.take(), Contains("Changed()").Times(1));
  EXPECT_TRUE(view.Modified());
  expectOneStep("Line");
}

TEST_F(DrawingTools, TheLineIsAsWideAsThePen) {
  view.Tool(kViewToolLine);
  view.Draw().PenSetting(7);
  view.drag({{10, 10}, {90, 40}});
  EXPECT_TRUE(samePixels(picture(), with(LineShape({10.5, 10.5}, {90.5, 40.5}, 7))));
}

TEST_F(DrawingTools, ShiftSnapsALineTo45Degrees) {
  view.Tool(kViewToolLine);
  view.drag({{10, 10}, {60, 13}}, kShiftMask);
  EXPECT_EQ(picture().at(55, 10), kRed);
  view.Undo();
  view.drag({{10, 10}, {60, 55}}, kShiftMask);
  EXPECT_EQ(picture().at(40, 40), kRed);
  EXPECT_EQ(picture().at(57, 57), kRed);
}

TEST_F(DrawingTools, RectangleFillsOrOutlinesByFillMode) {
  view.Tool(kViewToolRectangle);
  view.Draw().FillMode(kFillSolid);
  view.drag({{20, 20}, {50, 40}});
  EXPECT_TRUE(samePixels(picture(), with(BoxShape::rectangle({20, 20}, {50, 40}, {}))));
  expectOneStep("Rectangle");
  view.Undo();
  view.Draw().FillMode(kFillNone);
  view.drag({{50, 40}, {20, 20}});
  EXPECT_TRUE(samePixels(picture(), with(BoxShape::rectangle({20, 20}, {50, 40}, 1))));
}

TEST_F(DrawingTools, EllipseFillsOrOutlinesByFillMode) {
  view.Tool(kViewToolEllipse);
  view.Draw().FillMode(kFillSolid);
  view.drag({{20, 20}, {80, 60}});
  EXPECT_TRUE(samePixels(picture(), with(BoxShape::ellipse({20, 20}, {80, 60}, {}))));
  expectOneStep("Ellipse");
  view.Undo();
  view.Draw().FillMode(kFillNone);
  view.Draw().PenSetting(3);
  view.drag({{20, 20}, {80, 60}});
  EXPECT_TRUE(samePixels(picture(), with(BoxShape::ellipse({20, 20}, {80, 60}, 3))));
}

TEST_F(DrawingTools, ShiftMakesASquareAndACircle) {
  view.Draw().FillMode(kFillSolid);
  view.Tool(kViewToolRectangle);
  view.drag({{20, 20}, {50, 25}}, kShiftMask);
  EXPECT_TRUE(samePixels(picture(), with(BoxShape::rectangle({20, 20}, {50, 50}, {}))));
  view.Undo();
  view.Tool(kViewToolEllipse);
  view.drag({{60, 60}, {50, 30}}, kShiftMask);
  EXPECT_TRUE(samePixels(picture(), with(BoxShape::ellipse({30, 30}, {60, 60}, {}))));
}

TEST_F(DrawingTools, ShapesUsePicturePixelsAtAnyZoomAndScroll) {
  view.Tool(kViewToolRectangle);
  view.Draw().FillMode(kFillSolid);
  view.Zoom(4);
  view.ScrollLeft(300);
  view.ScrollTop(200);
  view.drag({{40, 20}, {120, 60}});
  EXPECT_TRUE(samePixels(picture(), with(BoxShape::rectangle({310, 205}, {330, 215}, {}))));
}

TEST_F(DrawingTools, TheRubberBandIsPaintedButNotInThePicture) {
  view.Tool(kViewToolRectangle);
  view.Draw().FillMode(kFillSolid);
  view.press({20, 20});
  view.move({60, 60});
  EXPECT_EQ(view.shot().at(40, 40), kRed);
  EXPECT_EQ(view.shot(ChannelOrder::bgra).at(40, 40), (Pixel{0, 0, 255, 255}));
  EXPECT_EQ(picture().at(40, 40), kBack);
  view.invalid.clear();
  view.move({50, 50});
  // The previous, larger band is repainted, too.
  EXPECT_THAT(view.invalid, Contains(Rectangle{20, 20, 40, 40}));
  view.release({50, 50});
  EXPECT_EQ(view.shot().at(55, 55), kBack);
}

TEST_F(DrawingTools, EscapeCancelsAShape) {
  for (const std::int32_t tool : {kViewToolLine, kViewToolRectangle, kViewToolEllipse, kViewToolFreehand}) {
    view.Tool(tool);
    view.press({20, 20});
    view.move({60, 60});
    view.move({90, 30});
    EXPECT_TRUE(view.keyDown(ViewKey::escape, 0));
    view.move({100, 90});
    view.release({100, 90});
    EXPECT_TRUE(samePixels(picture(), Bitmap::filled(1000, 1000, kBack))) << tool;
    EXPECT_EQ(view.shot().at(20, 20), kBack);
    EXPECT_THAT(view.take(), Not(Contains(AnyOf("Changed()", "Click()"))));
    EXPECT_EQ(view.UndoName(), "");
    EXPECT_FALSE(view.Modified());
  }
}

TEST_F(DrawingTools, AClickDrawsNoShapeButAFreehandDot) {
  for (const std::int32_t tool : {kViewToolLine, kViewToolRectangle, kViewToolEllipse}) {
    view.Tool(tool);
    view.drag({{20, 20}});
    EXPECT_EQ(view.UndoName(), "") << tool;
  }
  view.Tool(kViewToolFreehand);
  view.Draw().PenSetting(5);
  view.drag({{20, 20}});
  EXPECT_EQ(picture().at(20, 20), kRed);
  expectOneStep("Freehand");
}

TEST_F(DrawingTools, TheRightButtonDrawsNothing) {
  view.Tool(kViewToolFreehand);
  view.press({20, 20}, 0, kRightButton);
  view.move({60, 60});
  view.release({60, 60});
  EXPECT_EQ(view.UndoName(), "");
}

TEST_F(DrawingTools, FreehandGoesThroughItsSamplesWithoutGaps) {
  view.Tool(kViewToolFreehand);
  view.Draw().PenSetting(3);
  std::vector<PointD> samples;
  for (int i = 0; i <= 12; ++i) samples.push_back({10 + 14.0 * i, 50 + 35 * std::sin(i * 0.9)});
  view.drag(samples);
  for (const PointD& at : samples) {
    EXPECT_EQ(picture().at(static_cast<std::int32_t>(at.X), static_cast<std::int32_t>(at.Y)), kRed);
  }
  // Each column between the ends is crossed.
  const Bitmap drawn = picture();
  for (std::int32_t x = 10; x < 178; ++x) {
    bool crossed = false;
    for (std::int32_t y = 0; y < 100; ++y) crossed |= drawn.at(x, y) == kRed;
    EXPECT_TRUE(crossed) << x;
  }
  EXPECT_THAT(view.take(), Contains("Changed()").Times(1));
  expectOneStep("Freehand");
}

TEST_F(DrawingTools, AThinPenDrawsWholePixels) {
  view.Tool(kViewToolFreehand);
  view.drag({{20, 20}, {30, 20}, {40, 20}});
  Bitmap expected = Bitmap::filled(1000, 1000, kBack);
  fill(expected.writable(), 20, 20, 21, 1, kRed);
  EXPECT_TRUE(samePixels(picture(), expected));
}

TEST_F(DrawingTools, FreehandIsPaintedAsItIsDrawn) {
  view.Tool(kViewToolFreehand);
  view.Draw().PenSetting(5);
  view.press({20, 50});
  view.move({50, 50});
  view.move({80, 50});
  EXPECT_EQ(view.shot().at(35, 50), kRed);
  EXPECT_THAT(view.take(), Not(Contains("Changed()")));
  view.release({80, 50});
}

TEST_F(DrawingTools, FreehandRepaintsOnlyTouchedAreas) {
  view.Tool(kViewToolFreehand);
  view.press({20, 50});
  view.move({30, 50});
  view.invalid.clear();
  view.move({40, 50});
  view.move({50, 50});
  ASSERT_FALSE(view.invalid.empty());
  for (const Rectangle& area : view.invalid) {
    EXPECT_LE(area.Width, 40);
    EXPECT_LE(area.Height, 10);
  }
}

TEST_F(DrawingTools, ATranslucentStrokeIsEvenWhereItCrossesItself) {
  view.load(1000, 1000, {255, 255, 255, 255});
  view.Tool(kViewToolFreehand);
  view.Draw().Color() = Colour(0, 128);
  view.Draw().PenSetting(9);
  view.drag({{20, 50}, {80, 50}, {100, 20}, {50, 20}, {50, 90}});
  EXPECT_EQ(picture().at(50, 50), picture().at(30, 50));
  EXPECT_NE(picture().at(30, 50), (Pixel{255, 255, 255, 255}));
}

TEST_F(DrawingTools, AnyOtherChangeEndsTheStroke) {
  view.Tool(kViewToolFreehand);
  view.press({20, 50});
  view.move({60, 50});
  view.ImgX()->Effects().Flip(0);
  view.move({80, 80});
  view.release({80, 80});
  EXPECT_TRUE(samePixels(picture(), Bitmap::filled(1000, 1000, kBack)));
  EXPECT_EQ(view.UndoName(), "");
  view.Undo();
  EXPECT_TRUE(samePixels(picture(), Bitmap::filled(1000, 1000, kBack)));
}

TEST_F(DrawingTools, AStrokeBeyondTheEdgeScrolls) {
  view.Tool(kViewToolFreehand);
  view.Draw().PenSetting(3);
  view.press({150, 50});
  view.move({190, 50});
  view.move({240, 50});
  for (int i = 0; i < 10; ++i) view.timer(ViewTimer::autoScroll);
  view.release({240, 50});
  EXPECT_EQ(view.ScrollLeft(), 400);
  for (std::int32_t x = 150; x < 638; ++x) EXPECT_EQ(picture().at(x, 50), kRed) << x;
}

TEST_F(DrawingTools, WithoutAPictureToolsDoNothing) {
  TestView empty;
  for (const std::int32_t tool : {kViewToolSelect, kViewToolPan, kViewToolLine, kViewToolRectangle,
                                  kViewToolEllipse, kViewToolFreehand}) {
    empty.Tool(tool);
    empty.drag({{10, 10}, {60, 60}});
    EXPECT_FALSE(empty.SelectionVisible());
    EXPECT_FALSE(empty.Modified());
  }
}

TEST(DrawingMemory, AStrokeAcross24MegapixelsHoldsUnder2Megabytes) {
  TestView view(1500, 1000);
  view.load(6000, 4000);
  view.Zoom(0.25);
  view.Tool(kViewToolFreehand);
  view.Draw().PenSetting(5);
  view.press({10, 10});
  for (int i = 1; i <= 1000; ++i) view.move({10 + 1.48 * i, 10 + 0.98 * i});
  view.release({1490, 990});
  EXPECT_EQ(view.UndoName(), "Freehand");
  EXPECT_GT(view.undoMemory(), 100'000U);
  EXPECT_LT(view.undoMemory(), 2'000'000U);
  view.Undo();
  EXPECT_TRUE(samePixels(bitmapOf(*view.Picture()), Bitmap::filled(6000, 4000, {10, 20, 30, 255})));
}

TEST(DrawingMemory, TheOutlineOfALargeShapeHoldsItsTilesOnly) {
  TestView view(1500, 1000);
  view.load(6000, 4000);
  view.Zoom(0.25);
  for (const std::int32_t tool : {kViewToolLine, kViewToolRectangle, kViewToolEllipse}) {
    view.Tool(tool);
    view.drag({{10, 10}, {800, 500}, {1490, 990}});
    EXPECT_GT(view.undoMemory(), 100'000U) << tool;
    EXPECT_LT(view.undoMemory(), 4'500'000U) << tool;
    view.UndoLevels(0);
    view.UndoLevels(3);
  }
}

}  // namespace
}  // namespace kestrel::engine
