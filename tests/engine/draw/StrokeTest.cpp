#include "engine/draw/Stroke.h"

#include <cmath>
#include <cstdlib>

#include "Drawing.h"

namespace kestrel::engine {
namespace {

using namespace test;

Bitmap stroked(const std::vector<PointD>& samples, Pixel color = kBlack, double width = 1,
               std::int32_t size = 200) {
  Bitmap picture = Bitmap::filled(size, size, kWhite);
  const Pixels pixels = picture.writable();
  Stroke stroke(color, width, whole(picture));
  for (const PointD& sample : samples) {
    stroke.add(sample);
    stroke.paint(pixels);
  }
  stroke.finish();
  stroke.paint(pixels);
  return picture;
}

std::vector<PointD> circle(double radius, int samples) {
  std::vector<PointD> result;
  for (int i = 0; i <= samples; ++i) {
    const double angle = 2 * 3.14159265358979 * i / samples;
    result.push_back({100 + radius * std::cos(angle), 100 + radius * std::sin(angle)});
  }
  return result;
}

TEST(Stroke, ASingleSampleIsADot) {
  const Bitmap picture = stroked({{50.5, 60.5}});
  EXPECT_EQ(picture.at(50, 60), kBlack);
  EXPECT_EQ(coveredArea(picture), 1);
}

TEST(Stroke, GoesThroughEverySample) {
  const std::vector<PointD> samples = {
      {20.5, 20.5}, {60.5, 30.5}, {70.5, 90.5}, {150.5, 100.5}, {149.5, 180.5}};
  const Bitmap picture = stroked(samples);
  for (const PointD& p : samples) {
    EXPECT_EQ(picture.at(static_cast<int>(p.X), static_cast<int>(p.Y)), kBlack) << p.X << ", " << p.Y;
  }
}

TEST(Stroke, FewSamplesOfACircleMakeACircleWithoutGapsOrCorners) {
  // Twelve samples 40 pixels apart. The curve must stay near the circle; straight lines between the samples
  // would be up to 2.7 pixels inside of it.
  const Bitmap picture = stroked(circle(80, 12));
  for (int degrees = 0; degrees < 360; ++degrees) {
    const double angle = degrees * 3.14159265358979 / 180;
    double nearest = 100;
    for (double radius = 70; radius <= 90; radius += 0.25) {
      const int x = static_cast<int>(std::floor(100 + radius * std::cos(angle)));
      const int y = static_cast<int>(std::floor(100 + radius * std::sin(angle)));
      if (picture.at(x, y).r < 170) nearest = std::min(nearest, std::abs(radius - 80));
    }
    // The first and last segment have a neighbor on one side only.
    EXPECT_LE(nearest, degrees < 30 || degrees > 330 ? 2.8 : 0.8) << degrees << " degrees";
  }
}

TEST(Stroke, PixelsOfATransparentColorAreCoveredOnlyOnce) {
  // A stroke forth, back and across itself: no pixel may get more than the color's alpha.
  const Bitmap picture =
      stroked({{20, 100}, {180, 100}, {20, 101}, {100, 20}, {100, 180}}, {0, 0, 0, 128}, 5);
  int darkest = 255;
  for (int y = 0; y < 200; ++y) {
    for (int x = 0; x < 200; ++x) darkest = std::min<int>(darkest, picture.at(x, y).r);
  }
  EXPECT_NEAR(darkest, 127, 2);
}

TEST(Stroke, IsTheSameAfterRepeatedPainting) {
  const std::vector<PointD> samples = circle(70, 40);
  const Bitmap often = stroked(samples, {0, 0, 0, 180}, 3);
  Bitmap once = Bitmap::filled(200, 200, kWhite);
  Stroke stroke({0, 0, 0, 180}, 3, whole(once));
  for (const PointD& sample : samples) stroke.add(sample);
  stroke.finish();
  stroke.paint(once.writable());
  for (int y = 0; y < 200; ++y) {
    for (int x = 0; x < 200; ++x) EXPECT_NEAR(often.at(x, y).r, once.at(x, y).r, 2) << x << ", " << y;
  }
}

TEST(Stroke, ChangesOnlyTheAnnouncedRectangles) {
  Bitmap picture = Bitmap::filled(200, 200, {10, 20, 30, 200});
  const Rectangle clip{20, 20, 150, 160};
  Stroke stroke({255, 0, 0, 255}, 4, clip);
  std::vector<PointD> samples = circle(95, 25);
  samples.push_back({-5000, 700});
  const auto check = [&](const std::vector<Rectangle>& announced) {
    const Bitmap before = picture;
    const Rectangle dirty = stroke.paint(picture.writable());
    for (int y = 0; y < 200; ++y) {
      for (int x = 0; x < 200; ++x) {
        if (picture.at(x, y) == before.at(x, y)) continue;
        ASSERT_TRUE(contains(dirty, x, y) && contains(clip, x, y)) << x << ", " << y;
        ASSERT_TRUE(std::any_of(announced.begin(), announced.end(),
                                [&](const Rectangle& r) { return contains(r, x, y); }))
            << x << ", " << y;
      }
    }
  };
  for (const PointD& sample : samples) check(stroke.add(sample));
  check(stroke.finish());
}

TEST(Stroke, RepeatedSamplesChangeNothing) {
  const Bitmap plain = stroked({{20, 20}, {90, 50}, {30, 120}});
  const Bitmap repeated = stroked({{20, 20}, {20, 20}, {90, 50}, {90, 50}, {90, 50}, {30, 120}, {30, 120}});
  for (int y = 0; y < 200; ++y) {
    for (int x = 0; x < 200; ++x) EXPECT_EQ(plain.at(x, y), repeated.at(x, y));
  }
}

TEST(Stroke, TouchesLittleOfALargePicture) {
  const Rectangle clip{0, 0, 6000, 4000};
  Stroke stroke(kBlack, 1, clip);
  std::int64_t bytes = 0;
  Bitmap picture = Bitmap::filled(6000, 4000, kWhite);
  const Pixels pixels = picture.writable();
  for (int i = 0; i < 1000; ++i) {
    for (const Rectangle& r : stroke.add({100 + i * 5.5, 2000 + 800 * std::sin(i * 0.02)})) {
      EXPECT_LE(r.Width, 32);
      EXPECT_LE(r.Height, 32);
      bytes += std::int64_t{4} * r.Width * r.Height;
    }
    stroke.paint(pixels);
  }
  EXPECT_LT(bytes, 2'000'000);
}

}  // namespace
}  // namespace kestrel::engine
