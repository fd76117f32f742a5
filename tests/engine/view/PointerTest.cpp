#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestView.h"

namespace kestrel::engine {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

TEST(ViewPointer, PositionsAreFractionsOfViewPixels) {
  TestView view;
  view.load(1000, 1000);
  view.pointerDown(kRightButton, kShiftMask | kAltMask, 10.5F, 20.25F);
  view.pointerMove(kRightButton, kCtrlMask, 11.5F, 20.25F);
  view.pointerUp(kRightButton, 0, 11.5F, 20.25F);
  EXPECT_THAT(view.take(),
              ElementsAre("MouseDown(2, 5, 10.5, 20.25)", "MouseMove(2, 2, 11.5, 20.25)",
                          "MouseMovePixel(2, 2, 11, 20)", "MouseUp(2, 0, 11.5, 20.25)", "Click()"));
}

TEST(ViewPointer, ThePixelUnderThePointerIsKnownWithoutAMove) {
  TestView view(200, 100);
  EXPECT_EQ(view.PointerPixel(), std::nullopt);
  view.load(1000, 1000);
  EXPECT_EQ(view.PointerPixel(), std::nullopt) << "the pointer has not come yet";
  view.move({31, 40});
  EXPECT_EQ(view.PointerPixel(), (Point{31, 40}));
  view.Zoom(2);
  view.ScrollLeft(100);
  view.ScrollTop(50);
  EXPECT_EQ(view.PointerPixel(), (Point{115, 70}));
  view.pointerLeave();
  EXPECT_EQ(view.PointerPixel(), std::nullopt);
  view.move({31, 40});
  view.load(10, 10);
  EXPECT_EQ(view.PointerPixel(), std::nullopt) << "the picture does not reach so far";
}

TEST(ViewPointer, MouseUpComesBeforeClick) {
  TestView view;
  view.press({5, 5});
  view.release({5, 5});
  EXPECT_THAT(view.take(), ElementsAre("MouseDown(1, 0, 5, 5)", "MouseUp(1, 0, 5, 5)", "Click()"));
}

TEST(ViewPointer, ADragThatReturnsIsNoClick) {
  TestView view;
  view.press({50, 50});
  view.move({53, 50});
  view.move({50, 50});
  view.release({50, 50});
  EXPECT_THAT(view.take(), Not(Contains("Click()")));
}

TEST(ViewPointer, AClickAllowsTwoPixelsOfMovementScaledByTheScreen) {
  TestView view;
  view.press({50, 50});
  view.move({52, 48});
  view.release({52, 48});
  EXPECT_THAT(view.take(), Contains("Click()"));
  view.deviceScale(2);
  view.press({50, 50});
  view.move({54, 50});
  view.release({54, 50});
  EXPECT_THAT(view.take(), Contains("Click()"));
}

TEST(ViewPointer, MouseMovePixelCarriesPicturePixelsAtEveryZoomAndScroll) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.Zoom(2);
  view.ScrollLeft(100);
  view.ScrollTop(50);
  view.take();
  view.move({31, 40});
  EXPECT_THAT(view.take(), ElementsAre("MouseMove(0, 0, 31, 40)", "MouseMovePixel(0, 0, 115, 70)"));
}

TEST(ViewPointer, MouseMovePixelComesOverThePictureOnly) {
  TestView view(200, 100);
  view.load(50, 20);  // from (75, 40) to (124, 59)
  for (const PointD outside : {PointD{74, 50}, PointD{125, 50}, PointD{100, 39}, PointD{100, 60}}) {
    view.move(outside);
    EXPECT_EQ(view.take().size(), 1U) << outside.X << "," << outside.Y;
  }
  view.move({75, 40});
  EXPECT_THAT(view.take(), Contains("MouseMovePixel(0, 0, 0, 0)"));
  view.move({124.9, 59.9});
  EXPECT_THAT(view.take(), Contains("MouseMovePixel(0, 0, 49, 19)"));
}

TEST(ViewPointer, WithoutAPictureThereAreNoPixels) {
  TestView view;
  view.move({100, 50});
  EXPECT_EQ(view.take().size(), 1U);
}

TEST(ViewPointer, TheMouseDownHandlerMayChangeTheTool) {
  TestView view;
  view.load(1000, 1000);
  view.Tool(kViewToolSelect);
  const Connection connection = view.MouseDown.Connect([&](auto...) { view.Tool(kViewToolNone); });
  view.drag({{10, 10}, {60, 60}});
  EXPECT_FALSE(view.SelectionVisible());
}

TEST(ViewPointer, TheReleaseCountsAtItsOwnPosition) {
  TestView view;
  view.load(1000, 1000);
  view.Tool(kViewToolSelect);
  view.press({10, 10});
  view.move({40, 40});
  view.release({60, 50});
  EXPECT_EQ(view.SelectionWidth(), 50);
  EXPECT_EQ(view.SelectionHeight(), 40);
}

TEST(ViewPointer, OtherButtonsDoNotEndAGesture) {
  TestView view;
  view.load(1000, 1000);
  view.Tool(kViewToolSelect);
  view.press({10, 10});
  view.move({40, 40});
  view.pointerDown(kRightButton, 0, 40, 40);
  view.pointerUp(kRightButton, 0, 40, 40);
  view.pointerMove(kLeftButton, 0, 60, 60);
  view.pointerUp(kLeftButton, 0, 60, 60);
  EXPECT_EQ(view.SelectionWidth(), 50);
}

TEST(ViewPointer, ALostReleaseEndsTheGestureWithoutAResult) {
  TestView view;
  view.load(1000, 1000);
  view.Tool(kViewToolRectangle);
  view.press({10, 10});
  view.move({60, 60});
  view.pointerMove(0, 0, 70, 70);
  view.pointerMove(0, 0, 90, 90);
  view.pointerUp(kLeftButton, 0, 90, 90);
  EXPECT_EQ(view.UndoName(), "");
  EXPECT_THAT(view.take(), Not(Contains("Click()")));
}

TEST(ViewPointer, WithPointerStyle2TheToolsPointerShowsOverThePictureOnly) {
  TestView view(200, 100);
  view.load(50, 50);
  view.MousePointer(kPointerCustom);
  view.move({10, 10});
  EXPECT_EQ(view.cursors.back(), ViewCursor::custom);
  view.MousePointerStyle(2);
  view.move({11, 10});
  EXPECT_EQ(view.cursors.back(), ViewCursor::arrow);
  view.move({100, 50});
  EXPECT_EQ(view.cursors.back(), ViewCursor::custom);
  view.MousePointer(kPointerDefault);
  view.Tool(kViewToolPan);
  EXPECT_EQ(view.cursors.back(), ViewCursor::hand);
  view.move({10, 10});
  EXPECT_EQ(view.cursors.back(), ViewCursor::arrow);
}

TEST(ViewPointer, CursorsShowTheEffectOfAPress) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.MousePointer(kPointerCustom);
  view.move({10, 10});
  EXPECT_EQ(view.cursors.back(), ViewCursor::custom);
  view.MousePointer(kPointerDefault);
  EXPECT_EQ(view.cursors.back(), ViewCursor::arrow);
  view.Tool(kViewToolPan);
  EXPECT_EQ(view.cursors.back(), ViewCursor::hand);
  view.press({10, 10});
  EXPECT_EQ(view.cursors.back(), ViewCursor::grabbing);
  view.release({10, 10});
  EXPECT_EQ(view.cursors.back(), ViewCursor::hand);

  view.Tool(kViewToolSelect);
  view.SetSelectionRect(20, 20, 60, 40);
  view.SelectionVisible(true);
  const std::pair<PointD, ViewCursor> parts[] = {
      {{20, 20}, ViewCursor::sizeFalling},    {{80, 60}, ViewCursor::sizeFalling},
      {{80, 20}, ViewCursor::sizeRising},     {{20, 60}, ViewCursor::sizeRising},
      {{20, 40}, ViewCursor::sizeHorizontal}, {{80, 40}, ViewCursor::sizeHorizontal},
      {{50, 20}, ViewCursor::sizeVertical},   {{50, 60}, ViewCursor::sizeVertical},
      {{40, 50}, ViewCursor::move},           {{120, 80}, ViewCursor::arrow}};
  for (const auto& [at, cursor] : parts) {
    view.move(at);
    EXPECT_EQ(view.cursors.back(), cursor) << at.X << "," << at.Y;
  }
}

TEST(ViewDoubleClick, ComesAfterTheSecondClickOfTheLeftButton) {
  TestView view(200, 100);
  view.load(1000, 1000);
  int twice = 0;
  const Connection connection = view.DblClick.Connect([&] {
    ++twice;
    EXPECT_EQ(view.take().back(), "Click()");
  });
  view.press({50, 50});
  view.release({50, 50});
  EXPECT_EQ(twice, 0);
  view.pointerDown(kLeftButton, 0, 50, 50, true);
  view.pointerUp(kLeftButton, 0, 50, 50);
  EXPECT_EQ(twice, 1);
  view.pointerDown(kRightButton, 0, 50, 50, true);
  view.pointerUp(kRightButton, 0, 50, 50);
  EXPECT_EQ(twice, 1);
  view.pointerDown(kLeftButton, 0, 50, 50, true);
  view.pointerMove(kLeftButton, 0, 60, 50);
  view.pointerUp(kLeftButton, 0, 60, 50);
  EXPECT_EQ(twice, 1) << "a drag is no click";
}

TEST(ViewDoubleClick, AZoomInItKeepsThePixelUnderThePointer) {
  TestView view(200, 100);
  view.load(1000, 1000);
  const Connection connection = view.DblClick.Connect([&] { view.Zoom(4); });
  view.press({150, 20});
  view.release({150, 20});
  const auto before = view.PointerPixel();
  view.pointerDown(kLeftButton, 0, 150, 20, true);
  view.pointerUp(kLeftButton, 0, 150, 20);
  EXPECT_EQ(view.Zoom(), 4);
  EXPECT_EQ(view.PointerPixel(), before);
}

}  // namespace
}  // namespace kestrel::engine
