#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "TestView.h"

namespace kestrel::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ViewZoom, StartsAtOneToOne) { EXPECT_EQ(TestView().Zoom(), 1.0); }

TEST(ViewZoom, BeforeZoomChangedComesFirstForAnyValue) {
  TestView view;
  view.load(1000, 1000);
  std::vector<double> shown;
  const Connection connection = view.BeforeZoomChanged.Connect([&](double) { shown.push_back(view.Zoom()); });
  view.Zoom(2);
  view.Zoom(2);
  view.Zoom(500);
  EXPECT_THAT(shown, ElementsAre(1, 2, 2));
  EXPECT_THAT(view.take(),
              ElementsAre("BeforeZoomChanged(2)", "BeforeZoomChanged(2)", "BeforeZoomChanged(500)"));
  EXPECT_EQ(view.Zoom(), 64);
}

TEST(ViewZoom, RefusesNaN) {
  TestView view;
  try {
    view.Zoom(NAN);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kInvalidPropertyValue);
  }
  EXPECT_EQ(view.Zoom(), 1);
  EXPECT_THAT(view.take(), IsEmpty());
}

TEST(ViewZoom, AWriteKeepsTheMiddleOfTheViewInPlace) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(400);
  view.ScrollTop(500);
  view.Zoom(4);  // column 500 and row 550 stay in the middle
  EXPECT_EQ(view.ScrollLeft(), 475);
  EXPECT_EQ(view.ScrollTop(), 537);
}

TEST(ViewZoom, CtrlWheelAsksOncePerNotchAndDoesNotScroll) {
  TestView view;
  view.load(1000, 1000);
  view.wheel(0, 1, kCtrlMask, 50, 50);
  view.wheel(0, -2, kCtrlMask, 50, 50);
  EXPECT_THAT(view.take(), ElementsAre("WheelZoom(1)", "WheelZoom(-1)", "WheelZoom(-1)"));
  EXPECT_EQ(view.ScrollTop(), 0);
}

TEST(ViewZoom, PartsOfANotchAddUp) {
  TestView view;
  view.wheel(0, 0.4F, kCtrlMask, 50, 50);
  view.wheel(0, 0.4F, kCtrlMask, 50, 50);
  EXPECT_THAT(view.take(), IsEmpty());
  view.wheel(0, 0.4F, kCtrlMask, 50, 50);
  EXPECT_THAT(view.take(), ElementsAre("WheelZoom(1)"));
}

TEST(ViewZoom, ThePixelUnderThePointerStaysPutThroughWheelZoom) {
  TestView view(200, 100);
  view.ImageBorder(true);
  view.load(4000, 4000);
  view.ScrollLeft(1500);
  view.ScrollTop(1700);
  const Connection connection = view.WheelZoom.Connect(
      [&](std::int32_t direction) { view.Zoom(view.Zoom() * (direction > 0 ? 1.7 : 0.6)); });
  view.take();
  view.move({163, 21});
  const std::vector<std::string> before = view.take();
  for (const float notches : {1.0F, 1.0F, 1.0F, -1.0F, -1.0F, -1.0F, -1.0F}) {
    view.wheel(0, notches, kCtrlMask, 163, 21);
    view.take();
    view.move({163, 21});
    EXPECT_EQ(view.take(), before) << view.Zoom();
  }
}

TEST(ViewZoom, AnErrorInTheHandlerEndsTheAnchoring) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.ScrollLeft(400);
  {
    const Connection connection = view.WheelZoom.Connect([](std::int32_t) { throw RuntimeError(5, "No."); });
    EXPECT_THROW(view.wheel(0, 1, kCtrlMask, 199, 0), RuntimeError);
  }
  view.Zoom(4);
  EXPECT_EQ(view.ScrollLeft(), 475);  // the middle again
}

TEST(ViewFitZoom, IsTheLargestWithoutScrollBars) {
  for (const bool border : {false, true}) {
    TestView view(200, 100);
    view.ImageBorder(border);
    for (const Size size : {Size{7, 3}, Size{199, 99}, Size{200, 100}, Size{333, 77}, Size{4000, 3000}}) {
      view.load(size.Width, size.Height);
      const double fit = view.FitZoom();
      view.Zoom(fit);
      EXPECT_EQ(view.horizontalScroll().maximum, 0) << size.Width;
      EXPECT_EQ(view.verticalScroll().maximum, 0) << size.Width;
      view.Zoom(fit * 1.01);
      EXPECT_GT(view.horizontalScroll().maximum + view.verticalScroll().maximum, 0) << size.Width;
    }
  }
}

TEST(ViewFitZoom, IsWithinTheBoundsOfTheZoom) {
  TestView view(200, 100);
  EXPECT_EQ(view.FitZoom(), 1.0) << "without a picture";
  view.load(1, 1);
  EXPECT_EQ(view.FitZoom(), 64);
  view.load(30000, 10);
  EXPECT_EQ(view.FitZoom(), 0.01);
}

}  // namespace
}  // namespace kestrel::engine
