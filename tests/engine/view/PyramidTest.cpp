#include "engine/view/Pyramid.h"

#include <gtest/gtest.h>

#include <cmath>

#include "../undo/Pictures.h"

namespace kestrel::engine {
namespace {

/// The mean of the premultiplied pixels that a pixel of a level covers.
std::array<double, 4> meanOf(const Bitmap& picture, std::int32_t x, std::int32_t y, std::int32_t level) {
  std::array<double, 4> sum{};
  double count = 0;
  for (std::int32_t v = y << level; v < std::min((y + 1) << level, picture.height()); ++v) {
    for (std::int32_t u = x << level; u < std::min((x + 1) << level, picture.width()); ++u) {
      const Pixel p = picture.at(u, v);
      sum[0] += p.r * p.a / 255.0;
      sum[1] += p.g * p.a / 255.0;
      sum[2] += p.b * p.a / 255.0;
      sum[3] += p.a;
      ++count;
    }
  }
  for (double& value : sum) value /= count;
  return sum;
}

void expectMeans(const Bitmap& picture, const ConstPixels& level, std::int32_t number, double tolerance) {
  for (std::int32_t y = 0; y < level.height; ++y) {
    for (std::int32_t x = 0; x < level.width; ++x) {
      const std::array<double, 4> mean = meanOf(picture, x, y, number);
      for (std::size_t c = 0; c < 4; ++c) {
        ASSERT_NEAR(level.row(y)[4 * static_cast<std::size_t>(x) + c], mean[c], tolerance)
            << x << "," << y << " of level " << number;
      }
    }
  }
}

TEST(Pyramid, EachLevelHasHalfTheSidesRoundedUp) {
  const Bitmap picture = noise(130, 67);
  Pyramid pyramid;
  const ConstPixels third = pyramid.level(picture, 3, {0, 0, 130, 67});
  EXPECT_EQ(third.width, 17);
  EXPECT_EQ(third.height, 9);
}

TEST(Pyramid, EachPixelIsThePremultipliedMeanOfItsArea) {
  for (const auto& [width, height] : {std::pair{128, 128}, std::pair{192, 64}}) {
    const Bitmap picture = noise(width, height);
    Pyramid pyramid;
    for (std::int32_t level = 1; level <= Pyramid::kLevels; ++level) {
      expectMeans(picture, pyramid.level(picture, level, {0, 0, width, height}), level, 0.6 * level);
    }
  }
}

TEST(Pyramid, TheFirstLevelIsExactAtOddEdges) {
  for (const auto& [width, height] :
       {std::pair{1, 1}, std::pair{1, 9}, std::pair{65, 3}, std::pair{131, 77}}) {
    const Bitmap picture = noise(width, height);
    Pyramid pyramid;
    expectMeans(picture, pyramid.level(picture, 1, {0, 0, width, height}), 1, 0.6);
  }
}

TEST(Pyramid, UpdatesTheInvalidatedRectangle) {
  Bitmap picture = noise(300, 300);
  Pyramid pyramid;
  pyramid.level(picture, 4, {0, 0, 300, 300});
  fill(picture.writable(), 100, 120, 50, 3, {200, 100, 50, 255});
  pyramid.invalidate({100, 120, 50, 3});
  Pyramid fresh;
  for (std::int32_t level = 1; level <= 4; ++level) {
    const ConstPixels updated = pyramid.level(picture, level, {0, 0, 300, 300});
    const ConstPixels made = fresh.level(picture, level, {0, 0, 300, 300});
    for (std::int32_t y = 0; y < made.height; ++y) {
      ASSERT_EQ(std::memcmp(updated.row(y), made.row(y), 4 * static_cast<std::size_t>(made.width)), 0);
    }
  }
}

TEST(Pyramid, RebuildsAfterReset) {
  Pyramid pyramid;
  const Bitmap first = noise(100, 100), second = noise(50, 200, 2);
  pyramid.level(first, 2, {0, 0, 100, 100});
  pyramid.reset();
  expectMeans(second, pyramid.level(second, 1, {0, 0, 50, 200}), 1, 0.6);
}

}  // namespace
}  // namespace kestrel::engine
