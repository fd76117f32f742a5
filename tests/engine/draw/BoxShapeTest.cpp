#include "engine/draw/BoxShape.h"

#include <cmath>
#include <numbers>

#include "Drawing.h"

namespace kestrel::engine {
namespace {

using namespace test;

TEST(RectangleShape, FillsFromTheStartUpToAndNotIncludingTheEnd) {
  const Bitmap picture = drawn(BoxShape::rectangle({2, 3}, {7, 6}, {}), 10, 10);
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 10; ++x) {
      EXPECT_EQ(picture.at(x, y), x >= 2 && x < 7 && y >= 3 && y < 6 ? kBlack : kWhite) << x << ", " << y;
    }
  }
}

TEST(RectangleShape, OutlineIsOnePixelInsideTheSameBox) {
  const Bitmap picture = drawn(BoxShape::rectangle({2, 3}, {7, 8}, 1), 10, 10);
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 10; ++x) {
      const bool inside = x >= 2 && x < 7 && y >= 3 && y < 8;
      const bool hole = x >= 3 && x < 6 && y >= 4 && y < 7;
      EXPECT_EQ(picture.at(x, y), inside && !hole ? kBlack : kWhite) << x << ", " << y;
    }
  }
}

TEST(RectangleShape, PointsMayComeInEitherOrder) {
  for (const auto pen : {std::optional<std::int32_t>(), std::optional<std::int32_t>(2)}) {
    const Bitmap expected = drawn(BoxShape::rectangle({1, 2}, {8, 9}, pen), 10, 10);
    const Bitmap turned = drawn(BoxShape::rectangle({8, 2}, {1, 9}, pen), 10, 10);
    for (int y = 0; y < 10; ++y) {
      for (int x = 0; x < 10; ++x) EXPECT_EQ(turned.at(x, y), expected.at(x, y));
    }
  }
}

TEST(RectangleShape, FourQuadrantsMakeACheckeredTile) {
  constexpr int kSize = 8;
  const Pixel light{192, 192, 192, 255}, dark{128, 128, 128, 255};
  Bitmap tile = Bitmap::filled(2 * kSize, 2 * kSize);
  const Pixels pixels = tile.writable();
  paint(pixels, whole(tile), BoxShape::rectangle({0, 0}, {2 * kSize, 2 * kSize}, {}), light);
  paint(pixels, whole(tile), BoxShape::rectangle({0, 0}, {kSize, kSize}, {}), dark);
  paint(pixels, whole(tile), BoxShape::rectangle({kSize, kSize}, {2 * kSize, 2 * kSize}, {}), dark);
  for (int y = 0; y < 2 * kSize; ++y) {
    for (int x = 0; x < 2 * kSize; ++x) {
      EXPECT_EQ(tile.at(x, y), (x < kSize) == (y < kSize) ? dark : light) << x << ", " << y;
    }
  }
}

TEST(RectangleShape, ABoxWithoutAreaDrawsNothing) {
  for (const auto pen : {std::optional<std::int32_t>(), std::optional<std::int32_t>(1)}) {
    EXPECT_EQ(coveredArea(drawn(BoxShape::rectangle({3, 3}, {3, 8}, pen), 10, 10)), 0);
    EXPECT_EQ(coveredArea(drawn(BoxShape::rectangle({3, 3}, {8, 3}, pen), 10, 10)), 0);
  }
}

TEST(RectangleShape, AWidePenFillsASmallBox) {
  EXPECT_EQ(coveredArea(drawn(BoxShape::rectangle({1, 1}, {6, 6}, 3), 10, 10)), 25);
}

TEST(RectangleShape, FarCoordinatesAreClipped) {
  EXPECT_EQ(
      coveredArea(drawn(BoxShape::rectangle({INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX}, {}), 10, 10)),
      100);
  EXPECT_EQ(coveredArea(drawn(BoxShape::rectangle({INT32_MIN, 4}, {INT32_MAX, 6}, 1), 10, 10)), 20);
  EXPECT_EQ(coveredArea(drawn(BoxShape::rectangle({20, 20}, {30, 30}, {}), 10, 10)), 0);
}

TEST(RectangleShape, RoundedCornersAreQuartersOfAnEllipse) {
  const double area = coveredArea(drawn(BoxShape::rectangle({5, 5}, {95, 65}, {}, 20, 10), 100, 70));
  EXPECT_NEAR(area, 90 * 60 - (4 - std::numbers::pi) * 20 * 10, 1);
}

TEST(EllipseShape, CoversItsArea) {
  for (const Point end : {Point{95, 65}, Point{15, 65}, Point{8, 8}, Point{6, 60}}) {
    const double a = (end.X - 5) / 2.0, b = (end.Y - 5) / 2.0;
    EXPECT_NEAR(coveredArea(drawn(BoxShape::ellipse({5, 5}, end, {}), 100, 70)), std::numbers::pi * a * b,
                0.2 + 0.002 * a * b);
  }
}

TEST(EllipseShape, OutlineIsTheDifferenceOfTwoEllipses) {
  const double area = coveredArea(drawn(BoxShape::ellipse({5, 5}, {95, 65}, 3), 100, 70));
  EXPECT_NEAR(area, std::numbers::pi * (45 * 30 - 42 * 27), 1.5);
}

TEST(EllipseShape, IsSymmetric) {
  for (const auto pen : {std::optional<std::int32_t>(), std::optional<std::int32_t>(1)}) {
    const Bitmap picture = drawn(BoxShape::ellipse({0, 0}, {41, 30}, pen), 41, 30);
    for (int y = 0; y < 30; ++y) {
      for (int x = 0; x < 41; ++x) {
        EXPECT_EQ(picture.at(x, y), picture.at(40 - x, y));
        EXPECT_EQ(picture.at(x, y), picture.at(x, 29 - y));
      }
    }
  }
}

TEST(BoxShape, ChangesOnlyTheTouchedRectangles) {
  const Bitmap before = Bitmap::filled(150, 120, {1, 2, 3, 128});
  for (const auto pen :
       {std::optional<std::int32_t>(), std::optional<std::int32_t>(1), std::optional<std::int32_t>(9)}) {
    for (const Rectangle& clip : {Rectangle{0, 0, 150, 120}, Rectangle{30, 20, 50, 60}}) {
      expectChangesInside(BoxShape::ellipse({-20, 10}, {130, 100}, pen), before, clip);
      expectChangesInside(BoxShape::rectangle({10, 10}, {140, 110}, pen), before, clip);
      expectChangesInside(BoxShape::rectangle({10, 10}, {140, 110}, pen, 30, 25), before, clip);
    }
  }
}

TEST(BoxShape, AnOutlineTouchesLittleOfTheInside) {
  std::int64_t pixels = 0;
  for (const Rectangle& r : touchedBy(BoxShape::ellipse({0, 0}, {4000, 3000}, 1), {0, 0, 4000, 3000})) {
    pixels += std::int64_t{r.Width} * r.Height;
    EXPECT_LE(r.Height, 32);
  }
  EXPECT_LT(pixels, 4000 * 3000 / 20);
}

TEST(Paint, BlendsATranslucentColor) {
  Bitmap picture = Bitmap::filled(3, 1, {0, 0, 0, 255});
  paint(picture.writable(), {0, 0, 3, 1}, BoxShape::rectangle({1, 0}, {2, 1}, {}), {255, 255, 255, 100});
  EXPECT_EQ(picture.at(0, 0), (Pixel{0, 0, 0, 255}));
  EXPECT_EQ(picture.at(1, 0), (Pixel{100, 100, 100, 255}));
  Bitmap clear = Bitmap::filled(1, 1, {9, 9, 9, 0});
  paint(clear.writable(), {0, 0, 1, 1}, BoxShape::rectangle({0, 0}, {1, 1}, {}), {255, 0, 0, 60});
  EXPECT_EQ(clear.at(0, 0), (Pixel{255, 0, 0, 60}));
}

TEST(Paint, ReturnsTheDirtyRectangle) {
  Bitmap picture = Bitmap::filled(50, 50, kWhite);
  EXPECT_EQ(paint(picture.writable(), whole(picture), BoxShape::rectangle({40, 40}, {60, 60}, {}), kBlack),
            (Rectangle{40, 40, 10, 10}));
  EXPECT_EQ(
      paint(picture.writable(), {0, 0, 20, 20}, BoxShape::rectangle({40, 40}, {60, 60}, {}), kBlack).Width,
      0);
}

}  // namespace
}  // namespace kestrel::engine
