#include <utility>
#include <vector>

#include "MetafileBuilders.h"

// Surfaces that are drawn piece by piece: no background shows between the pieces.

namespace kestrel::engine {
namespace {

using namespace test;

Emf& polygon(Emf& emf, std::initializer_list<std::pair<int, int>> points) {
  Builder b = Builder().fill(16).le32(static_cast<std::uint32_t>(points.size()));
  for (const auto& [x, y] : points) b.le32(number(x)).le32(number(y));
  return emf.record(3, b);
}

/// The pixels along the middle part of a line.
std::vector<Pixel> along(const Bitmap& bitmap, double x1, double y1, double x2, double y2) {
  std::vector<Pixel> pixels;
  for (double t = 0.1; t < 0.9; t += 0.01)
    pixels.push_back(bitmap.at(static_cast<std::int32_t>(x1 + t * (x2 - x1)),
                               static_cast<std::int32_t>(y1 + t * (y2 - y1))));
  return pixels;
}

TEST(MetafileSurfaces, PolygonsWithoutOutlinesMeetWithoutASeam) {
  // Two triangles with the edge from 36, 3 to 4, 27 in common, the second in either order of corners.
  for (const bool turned : {false, true}) {
    Emf emf;
    emf.noPen().brush(kRedColor);
    polygon(emf, {{2, 2}, {36, 3}, {4, 27}});
    turned ? polygon(emf, {{36, 3}, {38, 28}, {4, 27}}) : polygon(emf, {{36, 3}, {4, 27}, {38, 28}});
    // A pixel that both cover by half would be opaque by three quarters, 191.
    for (const Pixel& pixel : along(emf.play(), 36, 3, 4, 27)) EXPECT_GE(pixel.a, 240) << turned;
  }
}

TEST(MetafileSurfaces, PolygonsGrowOnlyOverTheEdgesTheyShare) {
  const auto drawn = [](bool twice, bool pen) {
    Emf emf;
    if (!pen) emf.noPen();
    emf.brush(kRedColor);
    if (twice) polygon(emf, {{2, 2}, {36, 3}, {4, 27}});
    emf.brush(kBlueColor);
    return polygon(emf, {{36, 3}, {38, 28}, {4, 27}}).play();
  };
  const Bitmap alone = drawn(false, false), both = drawn(true, false);
  for (const auto& [x, y] : {std::pair{37, 15}, {38, 20}, {20, 27}, {30, 28}})
    EXPECT_EQ(both.at(x, y), alone.at(x, y)) << x << ' ' << y;
  // One that is drawn over another of the same shape has no neighbour on the other side.
  Emf again;
  polygon(again.noPen().brush(kRedColor), {{36, 3}, {38, 28}, {4, 27}});
  polygon(again.brush(kBlueColor), {{36, 3}, {38, 28}, {4, 27}});
  int grown = 0;
  const Bitmap over = again.play();
  for (std::int32_t y = 0; y < 30; ++y) {
    for (std::int32_t x = 0; x < 40; ++x) grown += over.at(x, y).a > 0 && alone.at(x, y).a == 0 ? 1 : 0;
  }
  EXPECT_EQ(grown, 0);
}

TEST(MetafileSurfaces, OpaqueBoxesOfTextsAreOfWholePixels) {
  // Boxes of a text without letters side by side in a window of 100 x 100 units: the border at 33 units is at
  // 13.2 pixels, so that the pixel from 13 to 14 belongs to the right one.
  Emf emf;
  emf.record(17, {8}).record(9, {100, 100}).record(11, {40, 30});
  const auto box = [&](std::uint32_t color, int left, int right) {
    constexpr std::uint32_t kOpaque = 2;
    Builder b = Builder().fill(16).le32(1).le32(0).le32(0).le32(0).le32(0).le32(0).le32(76).le32(kOpaque);
    b.le32(number(left)).le32(0).le32(number(right)).le32(100).le32(0);
    emf.record(25, {color}).record(84, b);
  };
  box(kRedColor, 0, 33);
  box(kBlueColor, 33, 100);
  const Bitmap bitmap = emf.play();
  for (std::int32_t x = 0; x < 40; ++x) EXPECT_EQ(bitmap.at(x, 15), x < 13 ? kRed : kBlue) << x;
}

}  // namespace
}  // namespace kestrel::engine
