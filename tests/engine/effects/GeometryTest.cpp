#include "Pictures.h"
#include "engine/effects/Canvas.h"
#include "engine/effects/Crop.h"
#include "engine/effects/Flip.h"
#include "engine/effects/QuarterTurn.h"

namespace kestrel::engine {
namespace {

using namespace test;

TEST(Crop, KeepsTheRectangle) {
  const Bitmap picture = randomPicture(37, 21, AlphaKind::Any);
  const Bitmap part = crop(picture, 5, 3, 20, 11);
  EXPECT_TRUE(samePicture(part, madeBy(20, 11, [&](int x, int y) { return picture.at(x + 5, y + 3); })));
}

TEST(Crop, ANegativeSizeFlipsTheRectangle) {
  const Bitmap picture = randomPicture(37, 21, AlphaKind::Any);
  EXPECT_TRUE(samePicture(crop(picture, 25, 14, -20, -11), crop(picture, 5, 3, 20, 11)));
}

TEST(Crop, ClipsToThePicture) {
  const Bitmap picture = randomPicture(10, 10, AlphaKind::Any);
  EXPECT_TRUE(samePicture(crop(picture, -5, -5, 8, 8), crop(picture, 0, 0, 3, 3)));
  EXPECT_TRUE(samePicture(crop(picture, 7, 8, 1000, 1000), crop(picture, 7, 8, 3, 2)));
}

TEST(Crop, TheWholePictureSharesItsPixels) {
  const Bitmap picture = randomPicture(10, 10, AlphaKind::Any);
  EXPECT_TRUE(crop(picture, -1, -1, 100, 100).sharesPixelsWith(picture));
}

TEST(Crop, AnEmptyResultIsAnError) {
  const Bitmap picture = randomPicture(10, 10, AlphaKind::Any);
  EXPECT_EQ(errorOf([&] { crop(picture, 10, 0, 5, 5); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { crop(picture, 0, 0, 0, 5); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { crop(picture, 3, 3, 5, 0); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { crop(picture, 0, 0, -5, 5); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { crop(picture, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { crop(picture, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { crop(Bitmap(), 0, 0, 1, 1); }), err::kInvalidCall);
}

TEST(Canvas, PlacesThePictureAtTheOffset) {
  const Bitmap picture = randomPicture(9, 5, AlphaKind::MostlyExtreme);
  const Pixel ground{10, 20, 30, 40};
  for (const int offsetX : {-12, -9, -4, 0, 3, 11, 12, 500}) {
    for (const int offsetY : {-7, -5, -2, 0, 2, 7, 8}) {
      const Bitmap canvas = resizeCanvas(picture, 12, 8, ground, offsetX, offsetY);
      EXPECT_TRUE(samePicture(canvas, madeBy(12, 8,
                                             [&](int x, int y) {
                                               const int u = x - offsetX, v = y - offsetY;
                                               return u >= 0 && u < 9 && v >= 0 && v < 5 ? picture.at(u, v)
                                                                                         : ground;
                                             })))
          << offsetX << ", " << offsetY;
    }
  }
  EXPECT_TRUE(
      samePicture(resizeCanvas(picture, 2, 2, ground, INT32_MIN, INT32_MAX), Bitmap::filled(2, 2, ground)));
}

TEST(Canvas, SidesBelowOneAreAnError) {
  const Bitmap picture = randomPicture(9, 5, AlphaKind::Any);
  EXPECT_EQ(errorOf([&] { resizeCanvas(picture, 0, 5, {}, 0, 0); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { resizeCanvas(picture, 5, -1, {}, 0, 0); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { resizeCanvas(picture, INT32_MAX, INT32_MAX, {}, 0, 0); }), err::kOutOfMemory);
}

TEST(Flip, MirrorsOnEveryTarget) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      const Bitmap picture = randomPicture(size.width, size.height, AlphaKind::Any);
      EXPECT_TRUE(samePicture(
          flip(picture, FlipDirection::LeftToRight),
          madeBy(size.width, size.height, [&](int x, int y) { return picture.at(size.width - 1 - x, y); })));
      EXPECT_TRUE(samePicture(
          flip(picture, FlipDirection::TopToBottom),
          madeBy(size.width, size.height, [&](int x, int y) { return picture.at(x, size.height - 1 - y); })));
    }
  });
}

TEST(Flip, OtherDirectionsAreAnError) {
  const Bitmap picture = randomPicture(3, 3, AlphaKind::Any);
  EXPECT_EQ(errorOf([&] { flip(picture, static_cast<FlipDirection>(2)); }), err::kInvalidCall);
}

TEST(QuarterTurn, TurnsClockwiseOnEveryTarget) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      const std::int32_t w = size.width, h = size.height;
      const Bitmap picture = randomPicture(w, h, AlphaKind::Any);
      EXPECT_TRUE(samePicture(quarterTurn(picture, 1),
                              madeBy(h, w, [&](int x, int y) { return picture.at(y, h - 1 - x); })));
      EXPECT_TRUE(samePicture(quarterTurn(picture, 2),
                              madeBy(w, h, [&](int x, int y) { return picture.at(w - 1 - x, h - 1 - y); })));
      EXPECT_TRUE(samePicture(quarterTurn(picture, 3),
                              madeBy(h, w, [&](int x, int y) { return picture.at(w - 1 - y, x); })));
    }
  });
}

}  // namespace
}  // namespace kestrel::engine
