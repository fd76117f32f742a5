#include "engine/effects/resample/Resize.h"

#include <numbers>

#include "../Pictures.h"

namespace kestrel::engine {
namespace {

using namespace test;

double sinc(double x) { return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x); }

struct NaiveKernel {
  double radius;
  double (*weight)(double);
};

NaiveKernel naiveKernel(ResampleMethod method) {
  switch (method) {
    case ResampleMethod::Bilinear:
      return {1, [](double x) { return std::max(0.0, 1 - std::abs(x)); }};
    case ResampleMethod::Bicubic:
      return {2, [](double x) {
                x = std::abs(x);
                if (x < 1) return 1.5 * x * x * x - 2.5 * x * x + 1;
                return x < 2 ? -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2 : 0.0;
              }};
    default:
      return {3, [](double x) { return std::abs(x) < 3 ? sinc(x) * sinc(x / 3) : 0.0; }};
  }
}

/// The weight of each input for one output, summing to 1.
std::vector<double> naiveWeights(int inputs, int outputs, int output, ResampleMethod method) {
  const double step = static_cast<double>(inputs) / outputs;
  std::vector<double> weights(static_cast<std::size_t>(inputs));
  double sum = 0;
  for (int i = 0; i < inputs; ++i) {
    double& weight = weights[static_cast<std::size_t>(i)];
    if (method == ResampleMethod::Decimate) {
      weight = std::max(0.0, std::min(i + 1.0, (output + 1) * step) - std::max<double>(i, output * step));
    } else {
      const double stretch = std::max(1.0, step);
      weight = naiveKernel(method).weight((i + 0.5 - (output + 0.5) * step) / stretch);
    }
    sum += weight;
  }
  for (double& weight : weights) weight /= sum;
  return weights;
}

/// Each output pixel as a weighted sum of all input pixels, in double precision.
Bitmap naiveResize(const Bitmap& source, int width, int height, ResampleMethod method) {
  return madeBy(width, height, [&](int x, int y) {
    const auto across = naiveWeights(source.width(), width, x, method);
    const auto down = naiveWeights(source.height(), height, y, method);
    double r = 0, g = 0, b = 0, a = 0;
    for (int v = 0; v < source.height(); ++v) {
      for (int u = 0; u < source.width(); ++u) {
        const double weight = across[static_cast<std::size_t>(u)] * down[static_cast<std::size_t>(v)];
        const Pixel p = source.at(u, v);
        r += weight * p.r * p.a;
        g += weight * p.g * p.a;
        b += weight * p.b * p.a;
        a += weight * p.a;
      }
    }
    if (a < 0.5) return Pixel{};
    const auto level = [](double value) {
      return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return Pixel{level(r / a), level(g / a), level(b / a), level(a)};
  });
}

constexpr ResampleMethod kFilters[] = {ResampleMethod::Bilinear, ResampleMethod::Bicubic,
                                       ResampleMethod::Decimate, ResampleMethod::Lanczos3};

/// Compares `resize` with direct sums for each target and each kind of alpha.
void expectDirectSums(Extent from, Extent to, ResampleMethod method) {
  for (const AlphaKind alpha : {AlphaKind::Opaque, AlphaKind::Any, AlphaKind::MostlyExtreme}) {
    const Bitmap picture = randomPicture(from.width, from.height, alpha);
    const Bitmap expected = naiveResize(picture, to.width, to.height, method);
    onEachTarget([&] {
      ASSERT_TRUE(samePicture(resize(picture, to.width, to.height, method), expected, 1.01))
          << static_cast<int>(method) << ", from " << from.width << " x " << from.height;
    });
  }
}

TEST(Resize, EveryTargetIsWithinOneLevelOfDirectSums) {
  for (const ResampleMethod method : kFilters) {
    for (const Extent from : {Extent{1, 1}, {1, 9}, {9, 1}, {16, 7}, {33, 18}}) {
      for (const Extent to : {Extent{1, 1}, {3, 20}, {17, 4}, {35, 31}}) expectDirectSums(from, to, method);
    }
  }
}

TEST(Resize, SizesWithRepeatingWeightsAreWithinOneLevel) {
  for (const ResampleMethod method : kFilters) {
    expectDirectSums({48, 32}, {24, 16}, method);
    expectDirectSums({48, 32}, {12, 8}, method);
    expectDirectSums({48, 32}, {32, 48}, method);
    expectDirectSums({24, 16}, {48, 32}, method);
  }
}

TEST(Resize, PicturesOfSeveralStripsAreWithinOneLevel) {
  expectDirectSums({150, 11}, {70, 17}, ResampleMethod::Bilinear);
  expectDirectSums({129, 20}, {64, 9}, ResampleMethod::Bicubic);
  expectDirectSums({200, 9}, {33, 5}, ResampleMethod::Lanczos3);
  expectDirectSums({97, 6}, {201, 7}, ResampleMethod::Lanczos3);
}

TEST(Resize, ShapesWithTheVerticalPassLastAreWithinOneLevel) {
  for (const ResampleMethod method : kFilters) {
    expectDirectSums({300, 3}, {4, 30}, method);
    expectDirectSums({65, 2}, {1, 100}, method);
  }
}

TEST(Resize, VeryStrongShrinkingIsWithinOneLevel) {
  for (const ResampleMethod method : kFilters) {
    expectDirectSums({900, 5}, {3, 2}, method);
    expectDirectSums({5, 900}, {2, 3}, method);
  }
}

TEST(Resize, AConstantPictureStaysConstant) {
  for (const Pixel value : {Pixel{1, 128, 254, 255}, Pixel{200, 3, 77, 1}, Pixel{255, 255, 255, 128}}) {
    const Bitmap picture = Bitmap::filled(37, 23, value);
    for (const ResampleMethod method : kFilters) {
      for (const Extent to : {Extent{1, 1}, {5, 100}, {36, 24}, {150, 7}, {200, 200}}) {
        EXPECT_TRUE(samePicture(resize(picture, to.width, to.height, method),
                                Bitmap::filled(to.width, to.height, value)));
      }
    }
  }
}

TEST(Resize, TransparentPixelsAddNoColor) {
  const Bitmap picture = madeBy(40, 40, [](int x, int) {
    return x < 20 ? Pixel{255, 0, 0, 255} : Pixel{0, 255, 0, 0};
  });
  for (const ResampleMethod method : kFilters) {
    for (const Extent to : {Extent{13, 13}, {90, 90}}) {
      const Bitmap result = resize(picture, to.width, to.height, method);
      for (int x = 0; x < to.width; ++x) {
        const Pixel p = result.at(x, 5);
        EXPECT_TRUE(p.a == 0 || (p.r == 255 && p.g == 0)) << x;
      }
    }
  }
}

TEST(Resize, PixelTakesTheInputPixelUnderTheCenter) {
  const Bitmap picture = randomPicture(10, 7, AlphaKind::Any);
  for (const Extent to : {Extent{1, 1}, {5, 3}, {25, 40}, {10, 1}}) {
    EXPECT_TRUE(samePicture(resize(picture, to.width, to.height, ResampleMethod::Pixel),
                            madeBy(to.width, to.height, [&](int x, int y) {
                              return picture.at(static_cast<int>((x + 0.5) * 10 / to.width),
                                                static_cast<int>((y + 0.5) * 7 / to.height));
                            })));
  }
}

TEST(Resize, DecimateAveragesWholeBlocks) {
  const Bitmap picture = madeBy(4, 2, [](int x, int y) {
    return Pixel{static_cast<std::uint8_t>(10 * x + 100 * y), 0, 0, 255};
  });
  const Bitmap result = resize(picture, 2, 1, ResampleMethod::Decimate);
  EXPECT_EQ(result.at(0, 0).r, 55);
  EXPECT_EQ(result.at(1, 0).r, 75);
}

TEST(Resize, EveryInputPixelCountsWhenShrinking) {
  // One white pixel among black ones must be visible from any position.
  for (int at = 0; at < 64; ++at) {
    const Bitmap picture = madeBy(64, 1, [&](int x, int) {
      const auto v = static_cast<std::uint8_t>(x == at ? 255 : 0);
      return Pixel{v, v, v, 255};
    });
    for (const ResampleMethod method : kFilters) {
      const Bitmap result = resize(picture, 8, 1, method);
      int most = 0;
      for (int x = 0; x < 8; ++x) most = std::max<int>(most, result.at(x, 0).r);
      EXPECT_GE(most, 14) << "method " << static_cast<int>(method) << ", pixel " << at;
    }
  }
}

TEST(Resize, VeryLongPicturesKeepTheirValues) {
  const Pixel value{10, 20, 30, 200};
  for (const ResampleMethod method : kFilters) {
    EXPECT_TRUE(
        samePicture(resize(Bitmap::filled(300'000, 1, value), 7, 9, method), Bitmap::filled(7, 9, value)));
    EXPECT_TRUE(
        samePicture(resize(Bitmap::filled(1, 300'000, value), 9, 7, method), Bitmap::filled(9, 7, value)));
    EXPECT_EQ(resize(Bitmap::filled(2, 3, value), 1'000'000, 1, method).at(999'999, 0), value);
  }
}

TEST(Resize, HeightZeroKeepsTheAspectRatio) {
  EXPECT_EQ(resize(Bitmap::filled(400, 300), 100, 0, ResampleMethod::Bilinear).height(), 75);
  EXPECT_EQ(resize(Bitmap::filled(3, 2), 2, 0, ResampleMethod::Pixel).height(), 1);
  EXPECT_EQ(resize(Bitmap::filled(1000, 1), 10, 0, ResampleMethod::Lanczos3).height(), 1);
}

TEST(Resize, TheSameSizeSharesThePixels) {
  const Bitmap picture = randomPicture(8, 9, AlphaKind::Any);
  EXPECT_TRUE(resize(picture, 8, 9, ResampleMethod::Lanczos3).sharesPixelsWith(picture));
}

TEST(Resize, InvalidSizesAndMethodsAreErrors) {
  const Bitmap picture = randomPicture(8, 9, AlphaKind::Any);
  EXPECT_EQ(errorOf([&] { resize(picture, 0, 5, ResampleMethod::Bilinear); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { resize(picture, -3, 5, ResampleMethod::Bilinear); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { resize(picture, 3, -1, ResampleMethod::Pixel); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { resize(picture, 3, 3, static_cast<ResampleMethod>(4)); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { resize(picture, 1'000'000, 0, ResampleMethod::Bicubic); }), err::kOutOfMemory);
  EXPECT_EQ(errorOf([&] { resize(picture, INT32_MAX, 0, ResampleMethod::Bicubic); }), err::kOutOfMemory);
}

}  // namespace
}  // namespace kestrel::engine
