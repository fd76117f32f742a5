#include "engine/effects/Rotate.h"

#include <limits>
#include <numbers>

#include "Pictures.h"

namespace kestrel::engine {
namespace {

using namespace test;

double cubic(double x) {
  x = std::abs(x);
  if (x < 1) return 1.5 * x * x * x - 2.5 * x * x + 1;
  return x < 2 ? -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2 : 0.0;
}

/// Bicubic interpolation from 4 x 4 pixels in double precision.
Bitmap naiveRotate(const Bitmap& source, double degrees, Pixel background, int width, int height) {
  const double radians = degrees * std::numbers::pi / 180;
  return madeBy(width, height, [&](int x, int y) {
    const double dx = x + 0.5 - width / 2.0, dy = y + 0.5 - height / 2.0;
    const double u = dx * std::cos(radians) + dy * std::sin(radians) + source.width() / 2.0 - 0.5;
    const double v = dy * std::cos(radians) - dx * std::sin(radians) + source.height() / 2.0 - 0.5;
    double sums[4] = {}, weights = 0;
    for (int row = static_cast<int>(std::floor(v)) - 1; row <= std::floor(v) + 2; ++row) {
      for (int column = static_cast<int>(std::floor(u)) - 1; column <= std::floor(u) + 2; ++column) {
        if (row < 0 || row >= source.height() || column < 0 || column >= source.width()) continue;
        const double weight = cubic(u - column) * cubic(v - row);
        const Pixel p = source.at(column, row);
        sums[0] += weight * p.r * p.a;
        sums[1] += weight * p.g * p.a;
        sums[2] += weight * p.b * p.a;
        sums[3] += weight * p.a;
        weights += weight;
      }
    }
    if (weights < 1.0 / 512) return background.a == 0 ? Pixel{} : background;
    const double coverage = std::min(1.0, weights);
    const double ground[4] = {double{1} * background.r * background.a,
                              double{1} * background.g * background.a,
                              double{1} * background.b * background.a, double{1} * background.a};
    for (int c = 0; c < 4; ++c) sums[c] = sums[c] / weights * coverage + ground[c] * (1 - coverage);
    if (sums[3] < 0.5) return Pixel{};
    const auto level = [](double value) {
      return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return Pixel{level(sums[0] / sums[3]), level(sums[1] / sums[3]), level(sums[2] / sums[3]),
                 level(sums[3])};
  });
}

TEST(Rotate, QuarterTurnsAreExactAndFourAreTheIdentity) {
  const Bitmap picture = randomPicture(33, 18, AlphaKind::Any);
  Bitmap turned = picture;
  for (int i = 0; i < 4; ++i) turned = rotate(turned, 90);
  EXPECT_TRUE(samePicture(turned, picture));
  EXPECT_TRUE(samePicture(rotate(rotate(picture, 90), 270), picture));
  EXPECT_TRUE(samePicture(rotate(rotate(picture, 180), 180), picture));
  EXPECT_TRUE(
      samePicture(rotate(picture, 90), madeBy(18, 33, [&](int x, int y) { return picture.at(y, 17 - x); })));
}

TEST(Rotate, AnglesAreModulo360AndNegativeOnesTurnBack) {
  const Bitmap picture = randomPicture(33, 18, AlphaKind::Any);
  EXPECT_TRUE(rotate(picture, 0).sharesPixelsWith(picture));
  EXPECT_TRUE(rotate(picture, -720).sharesPixelsWith(picture));
  EXPECT_TRUE(rotate(picture, -1e-300).sharesPixelsWith(picture));
  EXPECT_TRUE(samePicture(rotate(picture, -90), rotate(picture, 270)));
  EXPECT_TRUE(samePicture(rotate(picture, 450), rotate(picture, 90)));
  EXPECT_TRUE(samePicture(rotate(picture, -40), rotate(picture, 320)));
  EXPECT_TRUE(samePicture(rotate(picture, 400), rotate(picture, 40)));
}

TEST(Rotate, GrowsToHoldTheWholePicture) {
  const Bitmap picture = Bitmap::filled(300, 200, {1, 2, 3, 255});
  const Bitmap turned = rotate(picture, 30);
  EXPECT_EQ(turned.width(), static_cast<int>(std::ceil(300 * std::sqrt(0.75) + 200 * 0.5)));
  EXPECT_EQ(turned.height(), static_cast<int>(std::ceil(300 * 0.5 + 200 * std::sqrt(0.75))));
  double area = 0;
  for (int y = 0; y < turned.height(); ++y) {
    for (int x = 0; x < turned.width(); ++x) area += turned.at(x, y).a / 255.0;
  }
  EXPECT_NEAR(area, 300 * 200, 60);
}

TEST(Rotate, EveryTargetIsNearDirectInterpolation) {
  onEachTarget([] {
    for (const double angle : {0.25, 30.0, 45.0, 89.9, 137.5, 200.0, 359.0}) {
      for (const Extent size : {Extent{1, 1}, {1, 9}, {2, 2}, {3, 3}, {40, 5}, {67, 130}}) {
        // Noise has the steepest slopes: the position grid of 1/1024 pixel alone costs half a level.
        const Bitmap picture = randomPicture(size.width, size.height, AlphaKind::Opaque);
        const Pixel ground{0, 100, 200, 255};
        const Bitmap turned = rotate(picture, angle, ground);
        ASSERT_TRUE(
            samePicture(turned, naiveRotate(picture, angle, ground, turned.width(), turned.height()), 2.0))
            << angle;
        const Bitmap seen = randomPicture(size.width, size.height, AlphaKind::MostlyExtreme);
        const Bitmap clear = rotate(seen, angle);
        ASSERT_TRUE(samePicture(clear, naiveRotate(seen, angle, {}, clear.width(), clear.height()), 2.5))
            << angle;
      }
    }
  });
}

TEST(Rotate, APictureLargerThanTheCachesIsNearDirectInterpolation) {
  const Bitmap picture = randomPicture(1500, 1450, AlphaKind::MostlyExtreme);
  const Pixel ground{0, 100, 200, 255};
  const Bitmap turned = rotate(picture, 50, ground);
  EXPECT_TRUE(samePicture(turned, naiveRotate(picture, 50, ground, turned.width(), turned.height()), 2.5));
}

TEST(Rotate, AConstantPictureStaysConstantUpToItsEdge) {
  // A picture of the background's color has no visible edge.
  const Pixel value{50, 100, 150, 255};
  const Bitmap turned = rotate(Bitmap::filled(60, 40, value), 33, value);
  EXPECT_TRUE(samePicture(turned, Bitmap::filled(turned.width(), turned.height(), value)));
}

TEST(Rotate, EdgesNextToTransparentCornersAreClean) {
  const Pixel value{50, 100, 150, 255};
  const Bitmap turned = rotate(Bitmap::filled(60, 40, value), 33);
  for (int y = 0; y < turned.height(); ++y) {
    for (int x = 0; x < turned.width(); ++x) {
      const Pixel p = turned.at(x, y);
      EXPECT_TRUE(p.a == 0 || (p.r == 50 && p.g == 100 && p.b == 150));
    }
  }
  EXPECT_EQ(turned.at(0, 0), (Pixel{}));
}

TEST(Rotate, BackgroundFillsTheCornersButNotTransparentParts) {
  const Pixel ground{255, 0, 0, 255};
  const Bitmap turned = rotate(Bitmap::filled(80, 80, {0, 255, 0, 0}), 45, ground);
  EXPECT_EQ(turned.at(0, 0), ground);
  EXPECT_EQ(turned.at(turned.width() / 2, turned.height() / 2).a, 0);
}

TEST(Rotate, AVeryLongPictureStaysInPlace) {
  // The ends move by half a pixel only; positions far from the center must be exact, too.
  const Bitmap line = Bitmap::filled(100'001, 5, {9, 9, 9, 255});
  const Bitmap turned = rotate(line, 0.499 / 50'000 * 180 / std::numbers::pi);
  ASSERT_EQ(turned.height(), 6);
  EXPECT_NEAR(turned.at(5, 0).a, 255, 4);
  EXPECT_NEAR(turned.at(5, 5).a, 0, 4);
  EXPECT_NEAR(turned.at(99'995, 0).a, 0, 4);
  EXPECT_NEAR(turned.at(99'995, 5).a, 255, 4);
  EXPECT_EQ(errorOf([] { rotate(Bitmap::filled(1'000'000, 1), 45); }), err::kOutOfMemory);
}

TEST(Rotate, AnAngleMustBeANumber) {
  const Bitmap picture = Bitmap::filled(3, 3);
  EXPECT_EQ(errorOf([&] { rotate(picture, std::numeric_limits<double>::infinity()); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { rotate(picture, std::numeric_limits<double>::quiet_NaN()); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { rotate(Bitmap(), 10); }), err::kInvalidCall);
}

}  // namespace
}  // namespace kestrel::engine
