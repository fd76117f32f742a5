#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestView.h"

namespace kestrel::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ViewScroll, AWriteThatMovesRaisesScrollAndScrollChanged) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(30);
  EXPECT_THAT(view.take(), ElementsAre("Scroll()", "ScrollChanged()"));
  view.ScrollLeft(30);
  EXPECT_THAT(view.take(), IsEmpty());
  view.ScrollTop(40);
  EXPECT_THAT(view.take(), ElementsAre("Scroll()", "ScrollChanged()"));
  EXPECT_EQ(view.ScrollLeft(), 30);
  EXPECT_EQ(view.ScrollTop(), 40);
}

TEST(ViewScroll, ReachesToTheEndOfThePicture) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(99999);
  view.ScrollTop(99999);
  EXPECT_EQ(view.ScrollLeft(), 800);
  EXPECT_EQ(view.ScrollTop(), 900);
  view.ScrollLeft(-99999);
  EXPECT_EQ(view.ScrollLeft(), 0);
}

TEST(ViewScroll, ASmallerPictureStaysCentered) {
  TestView view(200, 100);
  view.load(50, 20);
  view.ScrollLeft(10);
  view.ScrollTop(10);
  EXPECT_EQ(view.ScrollLeft(), -75);
  EXPECT_EQ(view.ScrollTop(), -40);
  EXPECT_THAT(view.take(), IsEmpty());
}

TEST(ViewScroll, TheWheelScrollsATenthOfTheViewWithShiftSideways) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.wheel(0, -1, 0, 50, 50);
  EXPECT_EQ(view.ScrollTop(), 10);
  EXPECT_THAT(view.take(), ElementsAre("Scroll()", "ScrollChanged()"));
  view.wheel(0, -2, kShiftMask, 50, 50);
  EXPECT_EQ(view.ScrollLeft(), 40);
  EXPECT_EQ(view.ScrollTop(), 10);
  view.wheel(1, 0, 0, 50, 50);
  EXPECT_EQ(view.ScrollLeft(), 20);
  view.take();
  view.wheel(0, 5, 0, 50, 50);
  EXPECT_EQ(view.ScrollTop(), 0);
  view.take();
  view.wheel(0, 5, 0, 50, 50);
  EXPECT_THAT(view.take(), IsEmpty());
}

TEST(ViewScroll, ATouchpadMovesThePictureWithTheFingers) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.scrollBy(-12, -34);
  EXPECT_EQ(view.ScrollLeft(), 12);
  EXPECT_EQ(view.ScrollTop(), 34);
  EXPECT_THAT(view.take(), ElementsAre("Scroll()", "ScrollChanged()"));
}

TEST(ViewScroll, TheScrollBarsMatchThePosition) {
  TestView view(200, 100);
  view.load(1000, 600);
  view.Zoom(2);
  view.scrollTo(321, 57);
  EXPECT_EQ(view.horizontalScroll().position, 321);
  EXPECT_EQ(view.horizontalScroll().maximum, 1800);
  EXPECT_EQ(view.horizontalScroll().page, 200);
  EXPECT_EQ(view.verticalScroll().position, 57);
  EXPECT_EQ(view.verticalScroll().maximum, 1100);
  EXPECT_EQ(view.ScrollLeft(), 160);
  view.take();
  view.scrollTo(321, 57);
  EXPECT_THAT(view.take(), IsEmpty());
}

TEST(ViewScroll, ThePlatformIsNotifiedOfChangedRanges) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ranges = 0;
  view.Zoom(2);
  EXPECT_EQ(view.ranges, 1);
  view.resize(300, 100);
  EXPECT_EQ(view.ranges, 2);
  view.ScrollLeft(3);
  EXPECT_EQ(view.ranges, 3);
}

TEST(ViewScroll, ArrowsAndPageKeysScrollWhereThereIsNothingToMove) {
  TestView view(200, 100);
  view.load(1000, 1000);
  EXPECT_TRUE(view.keyDown(ViewKey::right, 0));
  EXPECT_EQ(view.ScrollLeft(), 20);
  EXPECT_TRUE(view.keyDown(ViewKey::down, 0));
  EXPECT_EQ(view.ScrollTop(), 10);
  EXPECT_TRUE(view.keyDown(ViewKey::pageDown, 0));
  EXPECT_EQ(view.ScrollTop(), 110);
  EXPECT_TRUE(view.keyDown(ViewKey::pageUp, 0));
  EXPECT_TRUE(view.keyDown(ViewKey::up, 0));
  EXPECT_TRUE(view.keyDown(ViewKey::left, 0));
  EXPECT_EQ(view.ScrollLeft(), 0);
  EXPECT_EQ(view.ScrollTop(), 0);
  EXPECT_TRUE(view.keyDown(ViewKey::end, 0));
  EXPECT_EQ(view.ScrollLeft(), 800);
  EXPECT_EQ(view.ScrollTop(), 900);
  EXPECT_TRUE(view.keyDown(ViewKey::home, 0));
  EXPECT_EQ(view.ScrollLeft(), 0);
}

TEST(ViewScroll, KeysDoNothingIfThePictureFits) {
  TestView view(200, 100);
  view.load(50, 50);
  EXPECT_FALSE(view.keyDown(ViewKey::right, 0));
  EXPECT_FALSE(view.keyDown(ViewKey::escape, 0));
}

TEST(ViewScroll, AnotherPictureStartsAtItsTopLeftCorner) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(500);
  view.load(1000, 1000, {1, 1, 1, 255});
  EXPECT_EQ(view.ScrollLeft(), 0);
}

TEST(ViewScroll, AnEditKeepsThePositionWithinTheNewRange) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(500);
  view.Effects().Flip(0);
  EXPECT_EQ(view.ScrollLeft(), 500);
  view.Effects().Crop(0, 0, 600, 600);
  EXPECT_EQ(view.ScrollLeft(), 400);
}

TEST(ViewScroll, ThePanToolRaisesPanDuringAndPanChangedAfter) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(100);
  view.ScrollTop(100);
  view.Tool(kViewToolPan);
  view.take();
  view.press({100, 50});
  view.move({90, 45});
  EXPECT_EQ(view.ScrollLeft(), 110);
  EXPECT_EQ(view.ScrollTop(), 105);
  view.move({120, 45});
  EXPECT_EQ(view.ScrollLeft(), 80);
  view.release({120, 45});
  EXPECT_THAT(view.take(),
              ElementsAre("MouseDown(1, 0, 100, 50)", "Pan()", "MouseMove(1, 0, 90, 45)",
                          "MouseMovePixel(1, 0, 200, 150)", "Pan()", "MouseMove(1, 0, 120, 45)",
                          "MouseMovePixel(1, 0, 200, 150)", "PanChanged()", "MouseUp(1, 0, 120, 45)"));
}

TEST(ViewScroll, TheMiddleButtonPansWithAnyToolAndRaisesScroll) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(100);
  view.Tool(kViewToolSelect);
  view.take();
  view.press({100, 50}, 0, kMiddleButton);
  view.move({90, 50});
  view.release({90, 50});
  EXPECT_EQ(view.ScrollLeft(), 110);
  EXPECT_THAT(view.take(), ElementsAre("Scroll()", "MouseMove(4, 0, 90, 50)", "MouseMovePixel(4, 0, 200, 50)",
                                       "ScrollChanged()"));
}

TEST(ViewScroll, AClickOfTheMiddleButtonDoesNothing) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.Tool(kViewToolSelect);
  view.SetSelectionRect(10, 10, 50, 50);
  view.SelectionVisible(true);
  view.take();
  view.press({100, 80}, 0, kMiddleButton);
  view.release({100, 80});
  EXPECT_THAT(view.take(), ElementsAre());
  EXPECT_TRUE(view.SelectionVisible());
}

TEST(ViewScroll, TheMiddleButtonDuringALeftPressKeepsTheClick) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(100);
  view.take();
  view.pointerDown(kLeftButton, 0, 100, 50);
  view.pointerDown(kMiddleButton, 0, 100, 50);
  view.pointerUp(kMiddleButton, 0, 100, 50);
  view.pointerUp(kLeftButton, 0, 100, 50);
  EXPECT_THAT(view.take(), ElementsAre("MouseDown(1, 0, 100, 50)", "MouseUp(1, 0, 100, 50)", "Click()"));
  EXPECT_EQ(view.ScrollLeft(), 100);
}

TEST(ViewScroll, EscapeRestoresThePositionBeforeThePan) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(100);
  view.Tool(kViewToolPan);
  view.press({100, 50});
  view.move({50, 50});
  EXPECT_TRUE(view.keyDown(ViewKey::escape, 0));
  EXPECT_EQ(view.ScrollLeft(), 100);
  view.move({10, 50});
  EXPECT_EQ(view.ScrollLeft(), 100);
}

TEST(ViewScroll, ADragBeyondTheEdgeScrollsOnTheTimer) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.Tool(kViewToolSelect);
  view.press({100, 50});
  view.move({150, 50});
  EXPECT_FALSE(view.autoScrolling);
  view.move({210, 50});
  EXPECT_TRUE(view.autoScrolling);
  view.take();
  view.timer(ViewTimer::autoScroll);
  EXPECT_EQ(view.ScrollLeft(), 10);
  EXPECT_THAT(view.take(), ElementsAre("Scroll()", "ScrollChanged()", "SelectChanged(100, 50, 120, 0)"));
  view.move({150, 50});
  EXPECT_FALSE(view.autoScrolling);
  view.move({150, -1});
  EXPECT_TRUE(view.autoScrolling);
  view.release({150, -1});
  EXPECT_FALSE(view.autoScrolling);
}

TEST(ViewScroll, PanningDoesNotAutoScroll) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.Tool(kViewToolPan);
  view.press({100, 50});
  view.move({-50, 50});
  EXPECT_FALSE(view.autoScrolling);
}

}  // namespace
}  // namespace kestrel::engine
