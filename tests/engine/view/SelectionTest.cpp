#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "TestView.h"

namespace kestrel::engine {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

struct SelectTool : ::testing::Test {
  SelectTool() {
    view.load(1000, 1000);
    view.Tool(kViewToolSelect);
  }

  Rectangle rectangle() const {
    return {view.SelectionLeft(), view.SelectionTop(), view.SelectionWidth(), view.SelectionHeight()};
  }
  void select(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
    view.SetSelectionRect(left, top, width, height);
    view.SelectionVisible(true);
  }

  TestView view{200, 100};
};

TEST_F(SelectTool, PropertiesPlaceTheRectangleWithoutAnEvent) {
  EXPECT_FALSE(view.SelectionVisible());
  select(3, 4, 50, 60);
  EXPECT_EQ(rectangle(), (Rectangle{3, 4, 50, 60}));
  view.SelectionWidth(7);
  view.SelectionHeight(8);
  EXPECT_EQ(rectangle(), (Rectangle{3, 4, 7, 8}));
  view.SelectionWidth(0);
  view.SelectionHeight(0);
  view.SelectionVisible(false);
  EXPECT_EQ(rectangle(), (Rectangle{3, 4, 0, 0}));
  EXPECT_THAT(view.take(), IsEmpty());
}

TEST_F(SelectTool, WritingRepaintsAtOnceOnlyWithAutoRedrawSelection) {
  view.AutoRedrawSelection(false);
  view.invalid.clear();
  select(3, 4, 50, 60);
  EXPECT_EQ(view.repaints, 0);
  EXPECT_THAT(view.invalid, Not(IsEmpty()));
  view.AutoRedrawSelection(true);
  view.SelectionWidth(7);
  EXPECT_EQ(view.repaints, 1);
}

TEST_F(SelectTool, ADragDrawsTheRectangleInPicturePixels) {
  view.Zoom(2);
  view.ScrollLeft(100);
  view.ScrollTop(40);
  view.take();
  view.drag({{20, 10}, {60, 40}, {80, 50}});
  EXPECT_TRUE(view.SelectionVisible());
  EXPECT_EQ(rectangle(), (Rectangle{110, 45, 30, 20}));
  EXPECT_THAT(view.take(), ElementsAre("MouseDown(1, 0, 20, 10)", "SelectChanged(110, 45, 20, 15)",
                                       "MouseMove(1, 0, 60, 40)", "MouseMovePixel(1, 0, 130, 60)",
                                       "SelectChanged(110, 45, 30, 20)", "MouseMove(1, 0, 80, 50)",
                                       "MouseMovePixel(1, 0, 140, 65)", "Selected(110, 45, 30, 20)",
                                       "MouseUp(1, 0, 80, 50)"));
}

TEST_F(SelectTool, DraggedLeftwardsAndUpwardsTheSizesAreNegative) {
  view.drag({{60, 50}, {40, 20}});
  EXPECT_EQ(rectangle(), (Rectangle{60, 50, -20, -30}));
  EXPECT_THAT(view.take(), Contains("Selected(60, 50, -20, -30)"));
}

TEST_F(SelectTool, ShiftMakesASquare) {
  view.drag({{10, 10}, {60, 30}}, kShiftMask);
  EXPECT_EQ(rectangle(), (Rectangle{10, 10, 20, 20}));
  view.drag({{150, 80}, {110, 70}}, kShiftMask);
  EXPECT_EQ(rectangle(), (Rectangle{150, 80, -10, -10}));
}

TEST_F(SelectTool, ANewRectangleStaysInsideThePicture) {
  view.load(100, 50);  // from (50, 25) to (149, 74)
  view.drag({{10, 10}, {190, 90}});
  EXPECT_EQ(rectangle(), (Rectangle{0, 0, 100, 50}));
}

TEST_F(SelectTool, AClickOutsideDismissesTheRectangleBeforeTheEvents) {
  select(20, 20, 40, 40);
  std::vector<bool> visible;
  const Connection connection = view.Click.Connect([&] { visible.push_back(view.SelectionVisible()); });
  view.take();
  view.press({150, 80});
  EXPECT_TRUE(view.SelectionVisible());
  view.release({150, 80});
  EXPECT_THAT(visible, ElementsAre(false));
  EXPECT_THAT(view.take(), ElementsAre("MouseDown(1, 0, 150, 80)", "MouseUp(1, 0, 150, 80)", "Click()"));
}

TEST_F(SelectTool, AClickInsideAndTheRightButtonKeepIt) {
  select(20, 20, 40, 40);
  view.press({35, 45});
  view.release({35, 45});
  EXPECT_TRUE(view.SelectionVisible());
  view.press({150, 80}, 0, kRightButton);
  view.release({150, 80});
  EXPECT_TRUE(view.SelectionVisible());
}

TEST_F(SelectTool, ADragInsideMovesItAlsoBeyondThePicture) {
  select(20, 20, 40, 40);
  view.take();
  view.drag({{35, 45}, {5, 55}});
  EXPECT_EQ(rectangle(), (Rectangle{-10, 30, 40, 40}));
  EXPECT_THAT(view.take(), ElementsAre("MouseDown(1, 0, 35, 45)", "SelectChanged(-10, 30, 40, 40)",
                                       "MouseMove(1, 0, 5, 55)", "MouseMovePixel(1, 0, 5, 55)",
                                       "Selected(-10, 30, 40, 40)", "MouseUp(1, 0, 5, 55)"));
}

TEST_F(SelectTool, AMovedRectangleKeepsItsNegativeSizes) {
  select(60, 60, -40, -40);
  view.drag({{35, 45}, {45, 45}});
  EXPECT_EQ(rectangle(), (Rectangle{70, 60, -40, -40}));
}

TEST_F(SelectTool, HandlesResizeTheirSides) {
  const struct {
    PointD from, to;
    Rectangle result;
  } cases[] = {{{20, 20}, {10, 15}, {10, 15, 70, 65}}, {{50, 20}, {70, 10}, {20, 10, 60, 70}},
               {{80, 20}, {90, 30}, {20, 30, 70, 50}}, {{80, 50}, {95, 10}, {20, 20, 75, 60}},
               {{80, 80}, {60, 60}, {20, 20, 40, 40}}, {{50, 80}, {10, 90}, {20, 20, 60, 70}},
               {{20, 80}, {30, 70}, {30, 20, 50, 50}}, {{20, 50}, {25, 10}, {25, 20, 55, 60}}};
  for (const auto& [from, to, result] : cases) {
    select(20, 20, 60, 60);
    view.drag({from, to});
    EXPECT_EQ(rectangle(), result) << from.X << "," << from.Y;
  }
}

TEST_F(SelectTool, AHandleDraggedAcrossFlipsTheRectangle) {
  select(20, 20, 60, 60);
  view.drag({{80, 50}, {10, 50}});
  EXPECT_EQ(rectangle(), (Rectangle{20, 20, -10, 60}));
}

TEST_F(SelectTool, EscapeDuringADragRestoresTheRectangle) {
  select(20, 20, 60, 60);
  view.press({150, 90});
  view.move({100, 50});
  view.take();
  EXPECT_TRUE(view.keyDown(ViewKey::escape, 0));
  EXPECT_EQ(rectangle(), (Rectangle{20, 20, 60, 60}));
  view.move({120, 60});
  view.release({120, 60});
  EXPECT_EQ(rectangle(), (Rectangle{20, 20, 60, 60}));
  EXPECT_THAT(view.take(), Not(Contains("Click()")));
  EXPECT_FALSE(view.keyDown(ViewKey::escape, 0));
}

TEST_F(SelectTool, ArrowsMoveItByOneAndWithShiftByTen) {
  select(20, 20, 60, 60);
  view.take();
  EXPECT_TRUE(view.keyDown(ViewKey::right, 0));
  EXPECT_THAT(view.take(), ElementsAre("SelectChanged(21, 20, 60, 60)", "Selected(21, 20, 60, 60)"));
  view.keyDown(ViewKey::left, kShiftMask);
  view.keyDown(ViewKey::up, 0);
  view.keyDown(ViewKey::down, kShiftMask);
  EXPECT_EQ(rectangle(), (Rectangle{11, 29, 60, 60}));
  EXPECT_EQ(view.ScrollLeft(), 0);
}

TEST_F(SelectTool, OtherToolsLeaveTheRectangleAlone) {
  select(20, 20, 60, 60);
  view.Tool(kViewToolNone);
  view.drag({{40, 40}, {90, 90}});
  view.keyDown(ViewKey::right, 0);
  EXPECT_EQ(rectangle(), (Rectangle{20, 20, 60, 60}));
}

TEST_F(SelectTool, TheOutlineMarchesWhileItIsShown) {
  select(20, 20, 60, 60);
  EXPECT_TRUE(view.marching);
  const Bitmap first = view.shot();
  view.invalid.clear();
  for (int i = 0; i < 4; ++i) view.timer(ViewTimer::march);
  EXPECT_THAT(view.invalid, Not(IsEmpty()));
  for (const Rectangle& area : view.invalid) EXPECT_LT(area.Width * area.Height, 60 * 60);
  const Bitmap second = view.shot();
  // Four steps swap black and white.
  EXPECT_NE(first.at(40, 20), second.at(40, 20));
  EXPECT_EQ(first.at(41, 45), second.at(41, 45));
  view.SelectionVisible(false);
  EXPECT_FALSE(view.marching);
}

TEST_F(SelectTool, TheOutlineIsDrawnAroundItsPixelsAtEveryZoom) {
  const Pixel back{10, 20, 30, 255};
  for (const double zoom : {1.0, 3.0}) {
    view.Zoom(zoom);
    view.ScrollLeft(0);
    view.ScrollTop(0);
    view.Tool(kViewToolNone);  // without handles
    select(10, 5, 12, 9);
    const Bitmap shot = view.shot();
    const auto z = static_cast<std::int32_t>(zoom);
    EXPECT_EQ(shot.at(10 * z - 1, 7 * z), back);
    EXPECT_NE(shot.at(10 * z, 7 * z), back);
    EXPECT_EQ(shot.at(10 * z + 1, 7 * z), back);
    EXPECT_NE(shot.at(22 * z - 1, 7 * z), back);
    EXPECT_EQ(shot.at(22 * z, 7 * z), back);
    EXPECT_NE(shot.at(15 * z, 14 * z - 1), back);
    EXPECT_EQ(shot.at(15 * z, 14 * z), back);
  }
}

TEST_F(SelectTool, CallsKeepAny32BitNumber) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
  select(kMost, kLeast, kLeast, kMost);
  EXPECT_EQ(rectangle(), (Rectangle{kMost, kLeast, kLeast, kMost}));
  view.SelectionWidth(kMost);
  view.SelectionHeight(kLeast);
  EXPECT_EQ(rectangle(), (Rectangle{kMost, kLeast, kMost, kLeast}));
  select(1'500'000'000, -1'500'000'000, 7, 8);
  EXPECT_EQ(rectangle(), (Rectangle{1'500'000'000, -1'500'000'000, 7, 8}));
}

TEST_F(SelectTool, FarRectanglesAreDrawnWhereTheyOverlapThePicture) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
  const Bitmap without = view.shot();
  for (const auto position : {kMost, kLeast}) {
    for (const auto size : {kMost, kLeast}) {
      select(position, position, size, size);
      for (const double zoom : {64.0, 0.01, 1.0}) {
        view.Zoom(zoom);
        view.shot();
        view.move({50, 50});
        view.timer(ViewTimer::march);
      }
    }
  }
  view.ScrollLeft(0);
  view.ScrollTop(0);
  // From the farthest corner back to column 20 and row 30.
  select(kMost, kMost, 20 - kMost, 30 - kMost);
  const Bitmap reaching = view.shot();
  EXPECT_EQ(reaching.at(19, 50), without.at(19, 50));
  EXPECT_EQ(reaching.at(50, 29), without.at(50, 29));
  int black = 0;
  for (std::int32_t x = 28; x < 68; ++x) black += reaching.at(x, 30) == Pixel{0, 0, 0, 255};
  EXPECT_EQ(black, 20) << "half of the dashes next to the handle";
}

TEST_F(SelectTool, AGestureBringsAFarRectangleBackIntoRange) {
  select(std::numeric_limits<std::int32_t>::max(), 20, 40, 40);
  EXPECT_TRUE(view.keyDown(ViewKey::right, 0));
  EXPECT_EQ(rectangle(), (Rectangle{1'000'000'000, 20, 40, 40}));
}

TEST_F(SelectTool, ACanceledDragReportsThePreviousRectangle) {
  select(20, 20, 60, 60);
  view.press({150, 90});
  view.move({100, 50});
  view.take();
  view.keyDown(ViewKey::escape, 0);
  EXPECT_THAT(view.take(), ElementsAre("SelectChanged(20, 20, 60, 60)"));
  view.press({150, 90});
  view.take();
  view.keyDown(ViewKey::escape, 0);
  EXPECT_THAT(view.take(), IsEmpty()) << "nothing had changed";
}

}  // namespace
}  // namespace kestrel::engine
