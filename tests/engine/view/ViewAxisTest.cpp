#include "engine/view/ViewAxis.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestrel::engine {
namespace {

TEST(ViewAxis, ASmallerPictureIsCenteredAtANegativePosition) {
  ViewAxis axis;
  axis.measure(50, 200, 0);
  EXPECT_EQ(axis.toView(0), 75);
  EXPECT_EQ(axis.scroll(), -75);
  EXPECT_EQ(axis.range().maximum, 0);
  axis.zoom(2, 0);
  EXPECT_EQ(axis.toView(0), 50);
  EXPECT_EQ(axis.scroll(), -25);
}

TEST(ViewAxis, AtZoom1APixelIsThePointPlusScrollMinusTheBorder) {
  for (const std::int32_t picture : {50, 1000}) {
    ViewAxis axis;
    axis.measure(picture, 200, 1);
    axis.scroll(17);
    for (const std::int32_t x : {0, 1, 90, 199}) {
      EXPECT_EQ(std::floor(axis.toPicture(x)), x + axis.scroll() - 1) << picture << " " << x;
    }
  }
}

TEST(ViewAxis, ScrollsFromTheFirstBorderLineToTheLast) {
  ViewAxis axis;
  axis.measure(1000, 200, 1);
  EXPECT_EQ(axis.toView(0), 1);
  EXPECT_TRUE(axis.scroll(5000));
  EXPECT_EQ(axis.toView(1000), 199);
  EXPECT_EQ(axis.scroll(), 802);
  EXPECT_FALSE(axis.scroll(5000));
  EXPECT_TRUE(axis.scroll(-5));
  EXPECT_EQ(axis.scroll(), 0);
}

TEST(ViewAxis, AWrittenScrollPositionReadsTheSameAtEveryZoom) {
  for (const double zoom : {0.05, 0.1, 0.3, 0.7, 1.0, 1.5, 3.3, 10.0, 64.0}) {
    ViewAxis axis;
    axis.measure(100000, 200, 1);
    axis.zoom(zoom, 0);
    for (const std::int32_t column : {0, 1, 7, 1234, 54321}) {
      axis.scroll(column);
      EXPECT_EQ(axis.scroll(), column) << zoom;
    }
  }
}

TEST(ViewAxis, ZoomingKeepsThePicturePointAtTheAnchor) {
  ViewAxis axis;
  axis.measure(10000, 800, 1);
  axis.scroll(4000);
  const double before = axis.toPicture(613.25);
  for (const double zoom : {2.0, 0.5, 9.0, 64.0, 1.0}) {
    axis.zoom(zoom, 613.25);
    EXPECT_NEAR(axis.toPicture(613.25), before, 1e-6) << zoom;
  }
}

TEST(ViewAxis, ZoomLiesBetweenAHundredthAnd64) {
  ViewAxis axis;
  axis.measure(100, 100, 0);
  axis.zoom(1000, 0);
  EXPECT_EQ(axis.zoom(), 64);
  axis.zoom(-3, 0);
  EXPECT_EQ(axis.zoom(), 0.01);
  axis.zoom(INFINITY, 0);
  EXPECT_EQ(axis.zoom(), 64);
}

TEST(ViewAxis, ALargerViewScrollsBackUntilItIsFull) {
  ViewAxis axis;
  axis.measure(1000, 200, 0);
  axis.scroll(800);
  axis.measure(1000, 500, 0);
  EXPECT_EQ(axis.scroll(), 500);
}

TEST(ViewAxis, TheScrollBarCountsDevicePixels) {
  ViewAxis axis;
  axis.measure(1000, 200, 1);
  axis.zoom(3, 0);
  axis.scroll(100);
  EXPECT_EQ(axis.range().position, 300);
  EXPECT_EQ(axis.range().maximum, 3000 + 2 - 200);
  EXPECT_EQ(axis.range().page, 200);
  EXPECT_EQ(axis.range().step, 20);
}

}  // namespace
}  // namespace kestrel::engine
