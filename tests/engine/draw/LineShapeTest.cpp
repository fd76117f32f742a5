#include "engine/draw/LineShape.h"

#include <cmath>

#include "Drawing.h"

namespace kestrel::engine {
namespace {

using namespace test;

TEST(LineShape, AHorizontalLineIsThePixelsBetweenItsEnds) {
  const Bitmap picture = drawn(LineShape({2.5, 3.5}, {7.5, 3.5}), 10, 8);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 10; ++x) EXPECT_EQ(picture.at(x, y), y == 3 && x >= 2 && x <= 7 ? kBlack : kWhite);
  }
}

TEST(LineShape, AVerticalLineIsThePixelsBetweenItsEnds) {
  const Bitmap picture = drawn(LineShape({3.5, 6.5}, {3.5, 1.5}), 8, 10);
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 8; ++x) EXPECT_EQ(picture.at(x, y), x == 3 && y >= 1 && y <= 6 ? kBlack : kWhite);
  }
}

TEST(LineShape, ToItsOwnStartIsADot) {
  const Bitmap picture = drawn(LineShape({4.5, 4.5}, {4.5, 4.5}), 9, 9);
  EXPECT_EQ(picture.at(4, 4), kBlack);
  EXPECT_EQ(coveredArea(picture), 1);
}

TEST(LineShape, CoversAboutItsLengthTimesItsWidthAtEveryAngle) {
  for (int degrees = 0; degrees < 180; degrees += 7) {
    for (const double width : {1.0, 2.0, 5.0}) {
      const double dx = 80 * std::cos(degrees * 0.0174533), dy = 80 * std::sin(degrees * 0.0174533);
      const double area =
          coveredArea(drawn(LineShape({100 - dx, 100 - dy}, {100 + dx, 100 + dy}, width), 200, 200));
      EXPECT_NEAR(area / (160 * width), 1, 0.07) << degrees << " degrees, width " << width;
    }
  }
}

TEST(LineShape, HasNoGapAtAnyAngle) {
  for (int degrees = 0; degrees < 180; degrees += 5) {
    const double dx = std::cos(degrees * 0.0174533), dy = std::sin(degrees * 0.0174533);
    const Bitmap picture =
        drawn(LineShape({50 - 40 * dx, 50 - 40 * dy}, {50 + 40 * dx, 50 + 40 * dy}), 100, 100);
    for (double along = -40; along <= 40; along += 0.25) {
      const int x = static_cast<int>(std::floor(50 + along * dx)),
                y = static_cast<int>(std::floor(50 + along * dy));
      // A pixel's center is at most 0.71 from a point inside it, and then 0.29 of the pixel is covered.
      EXPECT_LE(picture.at(x, y).r, 181) << degrees << " degrees at " << along;
    }
  }
}

TEST(LineShape, ChangesOnlyTheTouchedRectangles) {
  const Bitmap before = Bitmap::filled(150, 120, {1, 2, 3, 128});
  for (const double width : {1.0, 4.0, 21.0}) {
    for (const Rectangle& clip : {Rectangle{0, 0, 150, 120}, Rectangle{30, 20, 50, 60}}) {
      expectChangesInside(LineShape({10, 10}, {140, 110}, width), before, clip);
      expectChangesInside(LineShape({-1e9, 300}, {1e9, -200}, width), before, clip);
      expectChangesInside(LineShape({20.3, 60.7}, {90.1, 60.9}, width), before, clip);
    }
  }
}

TEST(LineShape, EveryCoveredPixelIsInItsRun) {
  // Pixels outside of the runs are not drawn, even where cover() is above 0.
  for (int i = 0; i < 200; ++i) {
    const LineShape line({i * 37 % 101 * 0.77, i * 53 % 97 * 0.71}, {i * 71 % 89 * 0.83, i * 29 % 103 * 0.67},
                         1 + i % 5);
    for (int y = -5; y < 85; ++y) {
      std::vector<std::uint8_t> coverage(100);
      line.cover(y, {-10, 90}, coverage.data());
      const PixelRun run = line.runs(y, {-10, 90})[0];
      for (int x = -10; x < 90; ++x) {
        if (coverage[static_cast<std::size_t>(x + 10)] > 0) {
          ASSERT_TRUE(x >= run.first && x < run.last) << x << ", " << y;
        }
      }
    }
  }
}

TEST(LineShape, ALongDiagonalTouchesLittle) {
  std::int64_t pixels = 0;
  for (const Rectangle& r : touchedBy(LineShape({0, 0}, {6000, 4000}), {0, 0, 6000, 4000})) {
    pixels += std::int64_t{r.Width} * r.Height;
  }
  EXPECT_LT(pixels * 4, 2'000'000);
}

}  // namespace
}  // namespace kestrel::engine
