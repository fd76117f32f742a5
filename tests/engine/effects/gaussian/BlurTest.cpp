#include "engine/effects/gaussian/Blur.h"

#include <limits>

#include "../Pictures.h"

namespace kestrel::engine {
namespace {

using namespace test;

/// Direct convolution with the whole Gaussian kernel in double precision.
Bitmap naiveBlur(const Bitmap& source, double sigma) {
  const auto gaussian = [&](int distance) { return std::exp(-distance * distance / (2 * sigma * sigma)); };
  struct Sum {
    double r = 0, g = 0, b = 0, a = 0, weight = 0;
    void add(const Sum& s, double w) {
      r += w * s.r;
      g += w * s.g;
      b += w * s.b;
      a += w * s.a;
      weight += w * s.weight;
    }
  };
  const int width = source.width(), height = source.height();
  std::vector<Sum> across(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const auto at = [&](int x, int y) -> Sum& { return across[static_cast<std::size_t>(y * width + x)]; };
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int u = 0; u < width; ++u) {
        const Pixel p = source.at(u, y);
        at(x, y).add(
            {double{1} * p.r * p.a, double{1} * p.g * p.a, double{1} * p.b * p.a, double{1} * p.a, 1},
            gaussian(u - x));
      }
    }
  }
  return madeBy(width, height, [&](int x, int y) {
    Sum sum;
    for (int v = 0; v < height; ++v) sum.add(at(x, v), gaussian(v - y));
    const double alpha = sum.a / sum.weight;
    if (alpha < 0.5) return Pixel{};
    const auto level = [&](double c) { return static_cast<std::uint8_t>(std::lround(c / sum.a)); };
    return Pixel{level(sum.r), level(sum.g), level(sum.b), static_cast<std::uint8_t>(std::lround(alpha))};
  });
}

TEST(Blur, IsWithinOneLevelOfDirectConvolutionAtEverySigma) {
  for (const double sigma : {0.3, 1.0, 2.5, 2.99, 3.0, 4.0, 5.0, 5.99, 6.0, 7.3, 12.0, 24.0, 40.0, 300.0}) {
    for (const AlphaKind alpha : {AlphaKind::Opaque, AlphaKind::Any}) {
      const Bitmap noise = randomPicture(90, 61, alpha);
      EXPECT_TRUE(samePicture(blur(noise, sigma), naiveBlur(noise, sigma), 1.01)) << "sigma " << sigma;
    }
    const Bitmap steps = madeBy(120, 50, [](int x, int y) {
      const auto v = static_cast<std::uint8_t>((x / 30 + y / 25) % 2 * 255);
      return Pixel{v, static_cast<std::uint8_t>(255 - v), v, static_cast<std::uint8_t>(y < 25 ? 255 : v)};
    });
    EXPECT_TRUE(samePicture(blur(steps, sigma), naiveBlur(steps, sigma), 1.01)) << "sigma " << sigma;
  }
}

TEST(Blur, StripesOfAboutTheGridStepDoNotAlias) {
  // Aliasing of a coarse grid is worst for stripes of about its step.
  for (const double sigma : {3.0, 4.0, 6.0, 12.0, 24.0}) {
    for (const double period : {2.05, 2.1, 2.2, 2.26, 2.35, 2.5, 3.0, 4.2, 4.5, 5.0, 8.3, 9.0, 17.0, 18.5}) {
      const Bitmap stripes = madeBy(230, 3, [&](int x, int) {
        const auto v = static_cast<std::uint8_t>(std::fmod(x, period) < period / 2 ? 255 : 0);
        return Pixel{v, v, v, 255};
      });
      EXPECT_TRUE(samePicture(blur(stripes, sigma), naiveBlur(stripes, sigma), 1.01))
          << "sigma " << sigma << ", period " << period;
    }
  }
}

TEST(Blur, LargePicturesHaveNoSeamsBetweenBlocks) {
  // Wide, tall, and larger than the caches; the values change along one axis only.
  for (const Extent size : {Extent{5000, 9}, {5000, 900}, {9, 3000}}) {
    const bool wide = size.width > size.height;
    const auto value = [=](int x, int y) {
      const int along = wide ? x : y;
      return Pixel{static_cast<std::uint8_t>(along % 256), static_cast<std::uint8_t>(along * 7 % 256),
                   static_cast<std::uint8_t>(along / 31 % 2 * 255),
                   static_cast<std::uint8_t>(255 - along % 100)};
    };
    const Bitmap whole = madeBy(size.width, size.height, value);
    for (const double sigma : {2.0, 5.0, 11.0, 40.0}) {
      const Bitmap blurred = blur(whole, sigma);
      // Far enough from its ends a part is blurred as within the whole.
      const int margin = static_cast<int>(4.5 * sigma) + 2, first = 1984, length = 2 * margin + 200;
      const Bitmap part =
          blur(madeBy(wide ? length : 1, wide ? 1 : length,
                      [&](int x, int y) { return value(x + (wide ? first : 0), y + (wide ? 0 : first)); }),
               sigma);
      const int others = wide ? size.height : size.width;
      for (int i = margin; i < length - margin; ++i) {
        for (const int j : {0, others / 3, others - 1}) {
          const Pixel a = wide ? part.at(i, 0) : part.at(0, i);
          const Pixel b = wide ? blurred.at(first + i, j) : blurred.at(j, first + i);
          ASSERT_LE(visibleDifference(a, b), 1) << sigma << " at " << i << ", " << j;
        }
      }
    }
  }
}

TEST(Blur, EveryTargetIsWithinOneLevelOfDirectConvolution) {
  for (const Extent size : oddExtents()) {
    for (const double sigma : {1.5, 6.0}) {
      const Bitmap picture = randomPicture(size.width, size.height, AlphaKind::Any);
      const Bitmap expected = naiveBlur(picture, sigma);
      onEachTarget([&] { EXPECT_TRUE(samePicture(blur(picture, sigma), expected, 1.01)) << sigma; });
    }
  }
}

TEST(Blur, AConstantPictureStaysConstantUpToTheEdge) {
  const Bitmap picture = Bitmap::filled(50, 40, {12, 200, 255, 90});
  for (const double sigma : {1.0, 5.0, 1000.0}) EXPECT_TRUE(samePicture(blur(picture, sigma), picture));
}

TEST(Blur, VeryLongPicturesKeepTheirValues) {
  const Pixel value{12, 200, 255, 90};
  for (const double sigma : {3.0, 50.0, 1e5}) {
    const Bitmap line = Bitmap::filled(200'000, 1, value);
    EXPECT_TRUE(samePicture(blur(line, sigma), line)) << sigma;
    const Bitmap column = Bitmap::filled(1, 200'000, value);
    EXPECT_TRUE(samePicture(blur(column, sigma), column)) << sigma;
  }
}

TEST(Blur, TransparentPixelsAddNoColor) {
  const Bitmap picture = madeBy(60, 60, [](int x, int) {
    return x < 30 ? Pixel{255, 0, 0, 255} : Pixel{0, 255, 0, 0};
  });
  const Bitmap result = blur(picture, 6);
  for (int x = 0; x < 60; ++x) {
    const Pixel p = result.at(x, 30);
    EXPECT_TRUE(p.a == 0 || (p.r == 255 && p.g == 0)) << x;
  }
  EXPECT_NEAR(result.at(30, 30).a, 119, 3);
}

TEST(Blur, SigmaZeroChangesNothingAndANegativeOneIsAnError) {
  const Bitmap picture = randomPicture(8, 9, AlphaKind::Any);
  EXPECT_TRUE(blur(picture, 0).sharesPixelsWith(picture));
  EXPECT_EQ(errorOf([&] { blur(picture, -1); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { blur(picture, std::numeric_limits<double>::infinity()); }), err::kInvalidCall);
}

}  // namespace
}  // namespace kestrel::engine
