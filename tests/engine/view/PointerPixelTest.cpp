// The pixel under a resting pointer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestView.h"

namespace kestrel::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A view of 200 by 100 with the pixels that `PointerPixelChanged` reports, "-" for none.
class ViewPointerPixel : public testing::Test {
 protected:
  void SetUp() override {
    changes = view.PointerPixelChanged.Connect([this] {
      const auto pixel = view.PointerPixel();
      pixels.push_back(pixel ? std::to_string(pixel->X) + ", " + std::to_string(pixel->Y) : "-");
    });
    view.load(1000, 1000);
    view.move({30, 40});
  }
  std::vector<std::string> take() { return std::exchange(pixels, {}); }

  TestView view{200, 100};
  std::vector<std::string> pixels;
  Connection changes;
};

TEST_F(ViewPointerPixel, IsNotReportedTwiceAfterAMove) {
  view.move({31, 40});
  view.move({31, 41});
  EXPECT_THAT(take(), IsEmpty());
}

TEST_F(ViewPointerPixel, ChangesWhenThePictureScrolls) {
  view.ScrollLeft(100);
  view.ScrollTop(50);
  view.scrollTo(0, 0);
  view.scrollBy(-5, -7);
  EXPECT_TRUE(view.keyDown(ViewKey::end, 0));
  EXPECT_THAT(take(), ElementsAre("130, 40", "130, 90", "30, 40", "35, 47", "830, 940"));
}

TEST_F(ViewPointerPixel, ChangesWithTheWheelWhichAlsoHasAPosition) {
  view.wheel(0, -1, 0, 30, 40);
  EXPECT_THAT(take(), ElementsAre("30, 50"));
  view.pointerLeave();
  take();
  view.wheel(0, 1, 0, 20, 10);
  EXPECT_THAT(take(), ElementsAre("20, 20", "20, 10"));
}

TEST_F(ViewPointerPixel, ChangesWithTheZoomUnlessItIsTheFixedOne) {
  view.Zoom(2);  // column 100 and row 50 stay in the middle
  EXPECT_THAT(take(), ElementsAre("65, 45"));
  view.Zoom(2);
  EXPECT_THAT(take(), IsEmpty());
  const Connection zooming = view.WheelZoom.Connect([this](std::int32_t) { view.Zoom(4); });
  view.wheel(0, 1, kCtrlMask, 30, 40);
  EXPECT_THAT(take(), IsEmpty());
}

TEST_F(ViewPointerPixel, IsNoneAfterTheWheelHasMadeThePictureSmallerThanTheView) {
  const Connection zooming = view.WheelZoom.Connect([this](std::int32_t) { view.Zoom(0.05); });
  view.wheel(0, -1, kCtrlMask, 30, 40);
  EXPECT_THAT(take(), ElementsAre("-"));
}

TEST_F(ViewPointerPixel, IsNoneAfterThePointerHasLeft) {
  view.pointerLeave();
  view.pointerLeave();
  view.ScrollLeft(100);
  EXPECT_THAT(take(), ElementsAre("-"));
}

TEST_F(ViewPointerPixel, IsKnownAgainWhenThePointerEnters) {
  view.pointerLeave();
  view.pointerEnter(12, 15);
  EXPECT_THAT(take(), ElementsAre("-", "12, 15"));
}

TEST_F(ViewPointerPixel, FollowsAMoveOfTheViewUnderAPointerThatIsInside) {
  view.pointerShifted(30, 20);
  view.pointerShifted(30, -5);
  view.pointerLeave();
  view.pointerShifted(30, 20);
  EXPECT_THAT(take(), ElementsAre("30, 20", "-"));
}

TEST_F(ViewPointerPixel, ChangesWithTheSizeOfTheViewAndOfThePicture) {
  view.load(100, 50);  // from (50, 25)
  view.move({60, 30});
  take();
  view.resize(210, 100);
  EXPECT_THAT(take(), ElementsAre("5, 5"));
  view.Effects().ResizeCanvas(110, 60, Colour(0), 0, 0);
  EXPECT_THAT(take(), ElementsAre("10, 10"));
  view.Undo();
  view.Redo();
  EXPECT_THAT(take(), ElementsAre("5, 5", "10, 10"));
  view.Effects().Rotate(90, nullptr, 0);  // 60 by 110, from column 75
  EXPECT_THAT(take(), ElementsAre("-"));
}

TEST_F(ViewPointerPixel, IsKeptOnTheLineRightOfAndBelowThePictureOnly) {
  view.load(100, 50);  // from (50, 25) to (149, 74)
  view.move({100, 50});
  take();
  view.move({150, 50});
  view.move({100, 75});
  EXPECT_THAT(take(), IsEmpty());
  view.move({151, 50});
  EXPECT_THAT(take(), ElementsAre("-"));
  view.move({100, 50});
  view.move({49, 50});
  EXPECT_THAT(take(), ElementsAre("-"));
}

TEST_F(ViewPointerPixel, IsNoneOutsideAPictureThatIsZoomedOut) {
  view.load(300, 160);
  view.Zoom(0.5);  // from (25, 10) to (174, 89)
  view.move({100, 50});
  take();
  view.move({180, 50});
  EXPECT_THAT(take(), ElementsAre("-"));
}

}  // namespace
}  // namespace kestrel::engine
