#include "engine/effects/Composite.h"

#include <limits>

#include "Pictures.h"
#include "engine/effects/rows/reference/PixelRows.h"

namespace kestrel::engine {
namespace {

using namespace test;

/// Source-over in double precision, not yet rounded.
struct ExactPixel {
  double r, g, b, a;
};

ExactPixel exactOver(Pixel under, Pixel top) {
  const double ta = top.a / 255.0, ua = under.a / 255.0;
  const double alpha = ta + ua * (1 - ta);
  const auto mix = [&](int t, int u) { return alpha == 0 ? u : (t * ta + u * ua * (1 - ta)) / alpha; };
  return {mix(top.r, under.r), mix(top.g, under.g), mix(top.b, under.b), alpha * 255};
}

TEST(Blend, OverIsWithin0Point51LevelsOfExactArithmetic) {
  for (int i = 0; i < 3'000'000; ++i) {
    const auto byte = [&](int prime) { return static_cast<std::uint8_t>((i * prime) >> 3); };
    const Pixel under{byte(31), byte(37), byte(41), byte(43)}, top{byte(47), byte(53), byte(59), byte(61)};
    const Pixel a = over(under, top);
    const ExactPixel b = exactOver(under, top);
    ASSERT_NEAR(a.r, b.r, 0.51);
    ASSERT_NEAR(a.g, b.g, 0.51);
    ASSERT_NEAR(a.b, b.b, 0.51);
    ASSERT_NEAR(a.a, b.a, 0.5 + 1e-9);
  }
}

TEST(Blend, EqualColorsStayAndExtremeAlphasAreExact) {
  for (int i = 0; i < 1 << 16; ++i) {
    const auto first = static_cast<std::uint8_t>(i), second = static_cast<std::uint8_t>(i >> 8);
    const Pixel same = over({7, 130, 255, first}, {7, 130, 255, second});
    ASSERT_TRUE(same.r == 7 && same.g == 130 && same.b == 255);
    ASSERT_EQ(over({first, second, 3, 200}, {second, first, 90, 255}), (Pixel{second, first, 90, 255}));
    ASSERT_EQ(over({first, second, 3, 200}, {second, first, 90, 0}), (Pixel{first, second, 3, 200}));
    ASSERT_EQ(over({first, second, 3, 0}, {second, first, 90, 33}), (Pixel{second, first, 90, 33}));
  }
}

TEST(Composite, OpaquePixelsReplaceAndTransparentOnesChangeNothing) {
  const Bitmap under = randomPicture(40, 30, AlphaKind::Any);
  const Bitmap opaque = randomPicture(40, 30, AlphaKind::Opaque, 2);
  EXPECT_TRUE(samePicture(composite(under, opaque, 0, 0), opaque));
  EXPECT_TRUE(samePicture(composite(under, Bitmap::filled(40, 30, {255, 0, 0, 0}), 0, 0), under));
}

TEST(Composite, TransparentPixelsAddNoColor) {
  const Bitmap under = Bitmap::filled(1, 1, {255, 0, 0, 0});
  const Bitmap top = Bitmap::filled(1, 1, {0, 0, 255, 100});
  EXPECT_EQ(composite(under, top, 0, 0).at(0, 0), (Pixel{0, 0, 255, 100}));
}

TEST(Composite, EveryTargetEqualsTheReference) {
  onEachTarget([] {
    for (const AlphaKind underAlpha : {AlphaKind::Opaque, AlphaKind::Any, AlphaKind::MostlyExtreme}) {
      for (const AlphaKind topAlpha : {AlphaKind::Opaque, AlphaKind::Any, AlphaKind::MostlyExtreme}) {
        for (const Extent size : oddExtents()) {
          const Bitmap under = randomPicture(size.width, size.height, underAlpha, 3);
          const Bitmap top = randomPicture(size.width, size.height, topAlpha, 4);
          for (const int opacity : {0, 1, 100, 255}) {
            CompositeOptions options{opacity / 255.0, {}};
            if (opacity == 100) options.maskColor = top.at(size.width / 2, size.height / 2);
            Bitmap expected = under;
            const Pixels out = expected.writable();
            for (int y = 0; y < size.height; ++y) {
              reference::compositeRow(top.pixels().row(y), under.pixels().row(y), size.width,
                                      static_cast<std::uint8_t>(opacity), options.maskColor, out.row(y));
            }
            ASSERT_TRUE(samePicture(composite(under, top, 0, 0, options), expected));
          }
        }
      }
    }
  });
}

TEST(Composite, ClipsAtTheEdges) {
  const Bitmap under = randomPicture(20, 10, AlphaKind::Any);
  const Bitmap top = randomPicture(9, 7, AlphaKind::Any, 2);
  for (const int x : {-9, -8, -3, 0, 14, 19, 20, INT32_MAX, INT32_MIN}) {
    for (const int y : {-7, -6, 0, 8, 9, 10, INT32_MAX, INT32_MIN}) {
      EXPECT_TRUE(samePicture(composite(under, top, x, y),
                              madeBy(20, 10,
                                     [&](int px, int py) {
                                       const std::int64_t u = std::int64_t{px} - x, v = std::int64_t{py} - y;
                                       const Pixel p = under.at(px, py);
                                       if (u < 0 || u >= 9 || v < 0 || v >= 7) return p;
                                       return over(p, top.at(static_cast<int>(u), static_cast<int>(v)));
                                     })))
          << x << ", " << y;
    }
  }
}

TEST(Composite, TheMaskColorIsSkippedAtAnyAlpha) {
  const Bitmap under = Bitmap::filled(3, 1, {9, 9, 9, 255});
  const Bitmap top = madeBy(3, 1, [](int x, int) {
    return Pixel{200, 100, static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(x == 1 ? 255 : 254)};
  });
  const Bitmap result = composite(under, top, 0, 0, {1.0, Pixel{200, 100, 1, 0}});
  EXPECT_EQ(result.at(1, 0), (Pixel{9, 9, 9, 255}));
  EXPECT_NE(result.at(0, 0), (Pixel{9, 9, 9, 255}));
}

TEST(Composite, OpacityMultipliesTheAlpha) {
  const Bitmap under = Bitmap::filled(1, 1, {0, 0, 0, 255});
  const Bitmap top = Bitmap::filled(1, 1, {255, 255, 255, 255});
  EXPECT_EQ(composite(under, top, 0, 0, {0.5, {}}).at(0, 0).r, 128);
  EXPECT_EQ(composite(under, top, 0, 0, {-3, {}}).at(0, 0).r, 0);
  EXPECT_EQ(composite(under, top, 0, 0, {7, {}}).at(0, 0).r, 255);
  EXPECT_EQ(errorOf([&] {
              composite(under, top, 0, 0, {std::numeric_limits<double>::quiet_NaN(), {}});
            }),
            err::kInvalidCall);
}

TEST(Composite, DoesNotChangeTheCallersPicture) {
  const Bitmap under = randomPicture(20, 10, AlphaKind::Any);
  const Bitmap before = madeBy(20, 10, [&](int x, int y) { return under.at(x, y); });
  composite(under, randomPicture(20, 10, AlphaKind::Opaque, 5), 0, 0);
  EXPECT_TRUE(samePicture(under, before));
}

}  // namespace
}  // namespace kestrel::engine
