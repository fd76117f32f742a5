#include <limits>

#include "Pictures.h"
#include "engine/effects/Flatten.h"
#include "engine/effects/GrayScale.h"
#include "engine/effects/ReplaceColor.h"
#include "engine/effects/rows/reference/PixelRows.h"
#include "engine/pixels/Opaque.h"

namespace kestrel::engine {
namespace {

using namespace test;

TEST(GrayScale, IsRec709LumaWithinOneLevelAndKeepsAlpha) {
  const Bitmap picture = randomPicture(200, 100, AlphaKind::Any);
  const Bitmap gray = grayScale(picture);
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 200; ++x) {
      const Pixel p = picture.at(x, y);
      const Pixel g = gray.at(x, y);
      EXPECT_NEAR(g.r, 0.2126 * p.r + 0.7152 * p.g + 0.0722 * p.b, 0.52);
      EXPECT_TRUE(g.r == g.g && g.g == g.b && g.a == p.a);
    }
  }
}

TEST(GrayScale, GrayIsUnchanged) {
  const Bitmap ramp = madeBy(256, 1, [](int x, int) {
    const auto v = static_cast<std::uint8_t>(x);
    return Pixel{v, v, v, 255};
  });
  EXPECT_TRUE(samePicture(grayScale(ramp), ramp));
}

TEST(GrayScale, EveryTargetEqualsTheReference) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      const Bitmap picture = randomPicture(size.width, size.height, AlphaKind::Any);
      Bitmap expected = Bitmap::filled(size.width, size.height);
      for (int y = 0; y < size.height; ++y) {
        reference::grayRow(picture.pixels().row(y), size.width, expected.writable().row(y));
      }
      EXPECT_TRUE(samePicture(grayScale(picture), expected));
    }
  });
}

TEST(Flatten, IsTheRoundedBlendForEveryAlphaOnEveryTarget) {
  onEachTarget([] {
    for (const Pixel ground : {Pixel{255, 255, 255, 255}, Pixel{0, 1, 254, 0}}) {
      const Bitmap all = madeBy(256, 256, [](int x, int y) {
        return Pixel{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(255 - x), 77,
                     static_cast<std::uint8_t>(y)};
      });
      const auto mix = [](int c, int g, int a) {
        return static_cast<std::uint8_t>(std::lround((c * a + g * (255 - a)) / 255.0));
      };
      EXPECT_TRUE(samePicture(
          flatten(all, ground), madeBy(256, 256, [&](int x, int y) {
            const Pixel p = all.at(x, y);
            return Pixel{mix(p.r, ground.r, p.a), mix(p.g, ground.g, p.a), mix(p.b, ground.b, p.a), 255};
          })));
    }
    for (const Extent size : oddExtents()) {
      const Bitmap picture = randomPicture(size.width, size.height, AlphaKind::MostlyExtreme);
      Bitmap expected = Bitmap::filled(size.width, size.height);
      for (int y = 0; y < size.height; ++y) {
        reference::flattenRow(picture.pixels().row(y), size.width, {9, 99, 199, 5},
                              expected.writable().row(y));
      }
      EXPECT_TRUE(samePicture(flatten(picture, {9, 99, 199, 5}), expected));
    }
  });
}

TEST(Opaque, ASingleTranslucentPixelIsFoundAnywhere) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      Bitmap picture = randomPicture(size.width, size.height, AlphaKind::Opaque);
      EXPECT_TRUE(isOpaque(picture.pixels()));
      const Pixels pixels = picture.writable();
      for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
          std::uint8_t& alpha = pixels.row(y)[4 * x + 3];
          alpha = 254;
          ASSERT_FALSE(isOpaque(picture.pixels())) << x << ", " << y;
          alpha = 255;
        }
      }
    }
  });
}

TEST(ReplaceColor, ToleranceZeroReplacesTheExactColorOnly) {
  const Bitmap picture = madeBy(4, 1, [](int x, int) {
    return Pixel{static_cast<std::uint8_t>(100 + x), 50, 25, 255};
  });
  const Bitmap result = replaceColor(picture, {101, 50, 25, 255}, {}, 0.0);
  EXPECT_EQ(result.at(0, 0), (Pixel{100, 50, 25, 255}));
  EXPECT_EQ(result.at(1, 0), (Pixel{}));
  EXPECT_EQ(result.at(2, 0), (Pixel{102, 50, 25, 255}));
}

TEST(ReplaceColor, ToleranceOneAllowsOneLevelInEveryChannel) {
  const Pixel from{100, 50, 255, 255}, to{1, 2, 3, 4};
  const auto replaced = [&](Pixel p, double tolerance) {
    return replaceColor(Bitmap::filled(1, 1, p), from, to, tolerance).at(0, 0) == to;
  };
  EXPECT_TRUE(replaced({101, 49, 254, 255}, 1.0));
  EXPECT_TRUE(replaced({99, 51, 254, 254}, 1.0));
  EXPECT_FALSE(replaced({102, 50, 255, 255}, 1.0));
  EXPECT_FALSE(replaced({100, 50, 253, 255}, 1.0));
  EXPECT_FALSE(replaced({101, 50, 255, 255}, 0.99));
  EXPECT_TRUE(replaced({0, 255, 0, 0}, 255.0));
  EXPECT_TRUE(replaced({0, 255, 0, 0}, 1e300));
}

TEST(ReplaceColor, TheColorOfTransparentPixelsDoesNotCount) {
  const Bitmap hidden = Bitmap::filled(1, 1, {9, 8, 7, 0});
  EXPECT_EQ(replaceColor(hidden, {9, 8, 7, 255}, {1, 1, 1, 1}, 1.0).at(0, 0), (Pixel{9, 8, 7, 0}));
  EXPECT_EQ(replaceColor(hidden, {200, 200, 200, 0}, {1, 1, 1, 1}, 0.0).at(0, 0), (Pixel{1, 1, 1, 1}));
}

TEST(ReplaceColor, EveryTargetEqualsTheReference) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      for (const int tolerance : {0, 1, 40, 128, 255}) {
        for (const std::uint8_t alpha : {std::uint8_t{255}, std::uint8_t{0}}) {
          const Pixel from{120, 130, 140, alpha}, to{0, 0, 0, 0};
          const Bitmap picture = randomPicture(size.width, size.height, AlphaKind::MostlyExtreme);
          Bitmap expected = Bitmap::filled(size.width, size.height);
          for (int y = 0; y < size.height; ++y) {
            reference::replaceRow(picture.pixels().row(y), size.width, from, to,
                                  static_cast<std::uint8_t>(tolerance), expected.writable().row(y));
          }
          EXPECT_TRUE(samePicture(replaceColor(picture, from, to, tolerance), expected));
        }
      }
    }
  });
}

TEST(ReplaceColor, NegativeToleranceIsAnError) {
  const Bitmap picture = Bitmap::filled(1, 1);
  EXPECT_EQ(errorOf([&] { replaceColor(picture, {}, {}, -0.5); }), err::kInvalidCall);
  EXPECT_EQ(errorOf([&] { replaceColor(picture, {}, {}, std::numeric_limits<double>::quiet_NaN()); }),
            err::kInvalidCall);
}

}  // namespace
}  // namespace kestrel::engine
