#include "engine/effects/DropShadow.h"

#include <limits>

#include "Pictures.h"
#include "engine/effects/rows/Blend.h"

namespace kestrel::engine {
namespace {

using namespace test;

constexpr Pixel kShadow{10, 20, 30, 75};

/// The shadow by its definition in double precision, on a canvas grown by these margins.
Bitmap naiveShadow(const Bitmap& source, int offsetX, int offsetY, Pixel color, double blur, int left,
                   int top, int right, int bottom) {
  const double sigma = shadowSigma(blur);
  const auto gaussian = [&](int distance) {
    if (sigma == 0) return distance == 0 ? 1.0 : 0.0;
    return std::exp(-distance * distance / (2 * sigma * sigma));
  };
  double total = 0;
  for (int d = -200; d <= 200; ++d) total += gaussian(d);
  return madeBy(left + source.width() + right, top + source.height() + bottom, [&](int x, int y) {
    double alpha = 0;
    for (int v = 0; v < source.height(); ++v) {
      for (int u = 0; u < source.width(); ++u) {
        alpha += source.at(u, v).a * gaussian(x - left - offsetX - u) * gaussian(y - top - offsetY - v);
      }
    }
    alpha *= color.a / 255.0 / (total * total);
    const Pixel shadow{color.r, color.g, color.b,
                       static_cast<std::uint8_t>(std::lround(std::min(255.0, alpha)))};
    const int u = x - left, v = y - top;
    if (u < 0 || u >= source.width() || v < 0 || v >= source.height()) return shadow;
    return over(shadow, source.at(u, v));
  });
}

TEST(DropShadow, Blur128IsAStandardDeviationOf4Pixels) {
  EXPECT_EQ(shadowSigma(0), 0);
  EXPECT_EQ(shadowSigma(128), 4);
  EXPECT_EQ(shadowSigma(10'000), shadowSigma(255));
}

TEST(DropShadow, GrowsOnlyWhereTheShadowFalls) {
  const Bitmap picture = randomPicture(30, 20, AlphaKind::Opaque);
  struct Case {
    int x, y;
    double blur;
    int width, height;
  };
  // Blur 128 is a standard deviation of 4 pixels, a reach of 12.
  for (const Case& c : {Case{5, 5, 0, 35, 25}, Case{-5, 5, 0, 35, 25}, Case{0, 0, 0, 30, 20},
                        Case{5, 5, 128, 30 + 7 + 17, 20 + 7 + 17}, Case{-20, 0, 128, 30 + 32, 20 + 24},
                        Case{12, -12, 128, 30 + 24, 20 + 24}, Case{40, 0, 0, 70, 20}}) {
    const Bitmap result = dropShadow(picture, c.x, c.y, kShadow, c.blur);
    EXPECT_EQ(result.width(), c.width) << c.x << ", " << c.y;
    EXPECT_EQ(result.height(), c.height) << c.x << ", " << c.y;
  }
}

TEST(DropShadow, AHardShadowIsTheMovedAlphaUnderThePicture) {
  onEachTarget([] {
    for (const AlphaKind alpha : {AlphaKind::Opaque, AlphaKind::Any, AlphaKind::MostlyExtreme}) {
      Bitmap picture = randomPicture(23, 17, alpha);
      // Visible corners, so that the visible part is the whole picture.
      picture.writable().row(0)[3] = picture.writable().row(16)[4 * 22 + 3] = 200;
      for (const int x : {-6, 0, 4}) {
        for (const int y : {-3, 0, 40}) {
          EXPECT_TRUE(samePicture(dropShadow(picture, x, y, kShadow, 0),
                                  naiveShadow(picture, x, y, kShadow, 0, std::max(0, -x), std::max(0, -y),
                                              std::max(0, x), std::max(0, y)),
                                  1.01))
              << x << ", " << y;
        }
      }
    }
  });
}

TEST(DropShadow, SoftShadowIsAGaussianWithinOneLevel) {
  onEachTarget([] {
    const Bitmap picture = madeBy(41, 30, [](int x, int y) {
      const bool inside = x > 8 && x < 30 && y > 5 && y < 26;
      return Pixel{200, 100, 50, static_cast<std::uint8_t>(x * y == 0 || inside ? 255 : (x + y) % 3 * 20)};
    });
    for (const double blur : {20.0, 64.0, 128.0, 255.0}) {
      const int reach = static_cast<int>(std::ceil(3 * shadowSigma(blur)));
      const Pixel color{255, 0, 128, 200};
      EXPECT_TRUE(samePicture(dropShadow(picture, 5, -4, color, blur),
                              naiveShadow(picture, 5, -4, color, blur, std::max(0, reach - 5), reach + 4,
                                          reach + 5, std::max(0, reach - 4)),
                              1.5))
          << "blur " << blur;
    }
  });
}

TEST(DropShadow, OpaquePictureCastsTheSameGaussian) {
  onEachTarget([] {
    const Bitmap picture = randomPicture(37, 20, AlphaKind::Opaque);
    for (const double blur : {0.0, 50.0, 128.0, 255.0}) {
      const int reach = static_cast<int>(std::ceil(3 * shadowSigma(blur)));
      const Pixel color{255, 0, 128, 230};
      EXPECT_TRUE(samePicture(dropShadow(picture, -6, 9, color, blur),
                              naiveShadow(picture, -6, 9, color, blur, reach + 6, std::max(0, reach - 9),
                                          std::max(0, reach - 6), reach + 9),
                              1.01))
          << "blur " << blur;
    }
  });
}

TEST(DropShadow, APictureLargerThanTheCachesHasTheSameShadow) {
  const auto value = [](int x, int y) {
    return Pixel{200, 100, 50, static_cast<std::uint8_t>((x * y) % 256)};
  };
  for (const double blur : {0.0, 128.0, 255.0}) {
    const int reach = static_cast<int>(std::ceil(3 * shadowSigma(blur))), grown = std::max(0, reach - 5);
    for (const bool opaque : {false, true}) {
      const auto made = [&](int width, int height) {
        return madeBy(width, height, [&](int x, int y) {
          const Pixel p = value(x, y);
          return opaque || x == 0 || y == 0 ? Pixel{p.r, p.g, p.b, 255} : p;
        });
      };
      const Bitmap large = dropShadow(made(2200, 2000), 5, 5, kShadow, blur);
      const Bitmap small = dropShadow(made(300, 150), 5, 5, kShadow, blur);
      // Only rows out of reach of the rows that the smaller picture lacks.
      for (int y = 0; y < grown + 150 - reach - 40; ++y) {
        for (int x = 0; x < grown + 300 - reach - 40; ++x) {
          ASSERT_LE(visibleDifference(large.at(x, y), small.at(x, y)), 1.01) << x << ", " << y;
        }
      }
    }
  }
}

TEST(DropShadow, DefaultsLookSoftAndKeepThePicture) {
  const Bitmap picture = Bitmap::filled(200, 150, {250, 240, 230, 255});
  const Bitmap result = dropShadow(picture, 5, 5, {0, 0, 0, 75}, 128);
  const int left = 12 - 5;
  EXPECT_EQ(result.at(left, left), (Pixel{250, 240, 230, 255}));
  // From the right edge outwards the shadow fades from most of its opacity to 0.
  int before = 75;
  for (int x = left + 200; x < result.width(); ++x) {
    const int alpha = result.at(x, 80).a;
    EXPECT_LE(alpha, before);
    before = alpha;
  }
  EXPECT_GT(result.at(left + 200, 80).a, 60);
  EXPECT_EQ(before, 0);
}

TEST(DropShadow, GrowsByTheVisiblePartOnly) {
  const Bitmap picture = madeBy(60, 60, [](int x, int y) {
    return x >= 25 && x < 35 && y >= 25 && y < 35 ? Pixel{9, 9, 9, 255} : Pixel{};
  });
  const Bitmap inside = dropShadow(picture, 5, 5, kShadow, 128);
  EXPECT_EQ(inside.width(), 60);
  EXPECT_EQ(inside.height(), 60);
  EXPECT_GT(inside.at(37, 37).a, 20);
  EXPECT_EQ(dropShadow(picture, 30, 0, kShadow, 0).width(), 65);
}

TEST(DropShadow, WithoutGrowingTheShadowIsClipped) {
  const Bitmap picture = madeBy(40, 30, [](int x, int) {
    return Pixel{1, 2, 3, static_cast<std::uint8_t>(x > 25 ? 255 : 0)};
  });
  for (const double blur : {0.0, 128.0}) {
    const Bitmap grown = dropShadow(picture, -3, 2, kShadow, blur);
    const int top = (grown.height() - 30) - (blur == 0 ? 2 : 14);
    const Bitmap cut = dropShadow(picture, -3, 2, kShadow, blur, false);
    EXPECT_TRUE(samePicture(cut, madeBy(40, 30, [&](int x, int y) { return grown.at(x, y + top); }), 1.01));
  }
  EXPECT_TRUE(samePicture(dropShadow(picture, INT32_MIN, INT32_MAX, kShadow, 200, false), picture, 0.5));
}

TEST(DropShadow, ATransparentPictureIsUnchanged) {
  const Bitmap picture = Bitmap::filled(10, 10, {255, 255, 255, 0});
  EXPECT_TRUE(dropShadow(picture, 5, 5, kShadow, 128).sharesPixelsWith(picture));
}

TEST(DropShadow, OpacityZeroIsATransparentShadow) {
  const Bitmap result = dropShadow(Bitmap::filled(10, 10, {1, 2, 3, 255}), 5, 5, {0, 0, 0, 0}, 0);
  EXPECT_EQ(result.width(), 15);
  EXPECT_EQ(result.at(12, 12).a, 0);
}

TEST(DropShadow, InvalidArgumentsAreErrors) {
  const Bitmap picture = Bitmap::filled(10, 10, {1, 2, 3, 255});
  EXPECT_EQ(errorOf([&] { dropShadow(picture, 5, 5, kShadow, -1); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { dropShadow(picture, 5, 5, kShadow, std::numeric_limits<double>::quiet_NaN()); }),
            err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { dropShadow(picture, INT32_MIN, INT32_MAX, kShadow, 255); }), err::kOutOfMemory);
}

}  // namespace
}  // namespace kestrel::engine
