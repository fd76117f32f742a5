#include "engine/view/BackBuffer.h"

#include <gtest/gtest.h>

#include "TestView.h"
#include "engine/imgx/Conversions.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

TEST(BackBuffer, HoldsThePictureWhenDoubleBufferIsOn) {
  TestView view(200, 100);
  view.load(1000, 1000);
  std::int32_t raised = 0;
  const Connection connection = view.DoubleBufferPaintAfter.Connect([&](DeviceContext& context) {
    ++raised;
    EXPECT_EQ(context.Width(), 200);
    EXPECT_EQ(context.Height(), 100);
  });
  view.Refresh();
  EXPECT_EQ(raised, 0);
  view.DoubleBuffer(true);
  view.Refresh();
  EXPECT_EQ(raised, 1);
}

TEST(BackBuffer, DrawingIsAboveThePictureAndBelowTheSelection) {
  TestView view(200, 100);
  view.load(1000, 1000);
  view.DoubleBuffer(true);
  FakeClipboard clipboard;
  ImgXObject floating(clipboard);
  const Colour green(0x00FF00);
  floating.Document().NewImage(40, 30, &green);
  const Connection connection = view.DoubleBufferPaintAfter.Connect(
      [&](DeviceContext& context) { floating.Surface().DrawTo(context, 10, 20); });
  view.SetSelectionRect(10, 20, 40, 30);
  view.SelectionVisible(true);
  for (const ChannelOrder order : {ChannelOrder::rgba, ChannelOrder::bgra}) {
    const Bitmap shot = view.shot(order);
    EXPECT_EQ(shot.at(30, 35), (Pixel{0, 255, 0, 255}));
    EXPECT_NE(shot.at(30, 20), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(shot.at(60, 35),
              (order == ChannelOrder::rgba ? Pixel{10, 20, 30, 255} : Pixel{30, 20, 10, 255}));
  }
}

TEST(BackBuffer, ClipsToThePaintedArea) {
  Bitmap target = Bitmap::filled(20, 20, {1, 1, 1, 255});
  const Pixels pixels = target.writable();
  BackBuffer context({pixels.data, pixels.stride, 20, 20, ChannelOrder::bgra}, {5, 5, 10, 10});
  const Bitmap source = Bitmap::filled(100, 100, {10, 20, 30, 0});
  context.Blit(-50, -50, rowsOf(source), kSourceCopy);
  EXPECT_EQ(target.at(5, 5), (Pixel{30, 20, 10, 255}));
  EXPECT_EQ(target.at(14, 14), (Pixel{30, 20, 10, 255}));
  EXPECT_EQ(target.at(4, 5), (Pixel{1, 1, 1, 255}));
  EXPECT_EQ(target.at(15, 14), (Pixel{1, 1, 1, 255}));
  context.Blit(2000000000, 5, rowsOf(source), kSourceCopy);
  context.Blit(-2000000000, 5, rowsOf(source), kSourceCopy);
}

TEST(BackBuffer, SupportsOnlyThePlainCopy) {
  BackBuffer context({}, {});
  EXPECT_THROW(context.Blit(0, 0, {}, 0x00660046), RuntimeError);
}

}  // namespace
}  // namespace kestrel::engine
