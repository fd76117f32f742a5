#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "../undo/Pictures.h"
#include "TestView.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

constexpr Pixel kWhite{255, 255, 255, 255};

/// Expected view pixel: the mean of the picture over white in the pixel's area.
std::array<double, 3> expectedAt(const TestView& view, const Bitmap& picture, double left, double top,
                                 double side) {
  std::array<double, 3> sum{};
  double weight = 0;
  for (auto y = static_cast<std::int32_t>(std::floor(top)); y < top + side; ++y) {
    for (auto x = static_cast<std::int32_t>(std::floor(left)); x < left + side; ++x) {
      if (x < 0 || y < 0 || x >= picture.width() || y >= picture.height()) continue;
      const double overlap = (std::min(x + 1.0, left + side) - std::max<double>(x, left)) *
                             (std::min(y + 1.0, top + side) - std::max<double>(y, top));
      if (overlap <= 0) continue;
      const Pixel p = picture.at(x, y);
      const double a = p.a / 255.0;
      sum[0] += overlap * (p.r * a + 255 * (1 - a));
      sum[1] += overlap * (p.g * a + 255 * (1 - a));
      sum[2] += overlap * (p.b * a + 255 * (1 - a));
      weight += overlap;
    }
  }
  EXPECT_GT(weight, 0) << view.Zoom();
  for (double& value : sum) value /= weight;
  return sum;
}

/// A smooth picture, so that means of means are near the mean.
Bitmap waves(std::int32_t width, std::int32_t height, bool transparent) {
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      const auto wave = [](double v) {
        return static_cast<std::uint8_t>(std::lround(127 + 120 * std::sin(v)));
      };
      const Pixel value{wave(x * 0.05), wave(y * 0.04), wave((x + y) * 0.03),
                        transparent ? wave((x - y) * 0.02) : std::uint8_t{255}};
      std::memcpy(pixels.row(y) + 4 * x, &value, 4);
    }
  }
  return bitmap;
}

TEST(ViewPainting, AtZoom1EachPixelIsAPixelOfThePicture) {
  TestView view(64, 48);
  Bitmap picture = waves(300, 200, false);
  view.load(picture);
  view.ScrollLeft(70);
  view.ScrollTop(30);
  const Bitmap shot = view.shot();
  for (std::int32_t y = 0; y < 48; ++y) {
    for (std::int32_t x = 0; x < 64; ++x) ASSERT_EQ(shot.at(x, y), picture.at(x + 70, y + 30));
  }
}

TEST(ViewPainting, ZoomedInPixelsAreSharp) {
  for (const double zoom : {2.0, 3.0, 1.5, 7.3, 64.0}) {
    TestView view(97, 83);
    const Bitmap picture = waves(300, 200, false);
    view.load(picture);
    view.Zoom(zoom);
    view.ScrollLeft(41);
    view.ScrollTop(27);
    const Bitmap shot = view.shot();
    for (std::int32_t y = 0; y < 83; ++y) {
      for (std::int32_t x = 0; x < 97; ++x) {
        const auto column = static_cast<std::int32_t>(41 + (x + 0.5) / zoom);
        const auto row = static_cast<std::int32_t>(27 + (y + 0.5) / zoom);
        ASSERT_EQ(shot.at(x, y), picture.at(column, row)) << zoom;
      }
    }
  }
}

TEST(ViewPainting, ZoomedOutPixelsAreTheMeanOfTheAreaTheyCover) {
  for (const bool transparent : {false, true}) {
    const Bitmap picture = waves(1111, 777, transparent);
    for (const double zoom : {0.99, 0.75, 0.5, 0.37, 0.25, 0.21, 0.125}) {
      TestView view(90, 70);
      view.load(picture);
      view.Zoom(zoom);
      view.ScrollLeft(100);
      view.ScrollTop(60);
      const Bitmap shot = view.shot();
      // Below 0.5 it is a mean of pyramid pixels, whose edges need not match the area.
      const double tolerance = zoom > 0.5 ? 2 : 5;
      for (std::int32_t y = 0; y < 70; y += 3) {
        for (std::int32_t x = 0; x < 90; x += 3) {
          const auto expected = expectedAt(view, picture, 100 + x / zoom, 60 + y / zoom, 1 / zoom);
          const Pixel p = shot.at(x, y);
          ASSERT_NEAR(p.r, expected[0], tolerance) << zoom << " at " << x << "," << y;
          ASSERT_NEAR(p.g, expected[1], tolerance) << zoom << " at " << x << "," << y;
          ASSERT_NEAR(p.b, expected[2], tolerance) << zoom << " at " << x << "," << y;
          ASSERT_EQ(p.a, 255);
        }
      }
    }
  }
}

TEST(ViewPainting, APartIsPaintedLikeTheWholeAndNothingOutsideIt) {
  const Bitmap picture = waves(1111, 777, true);
  for (const double zoom : {0.3, 0.7, 1.0, 2.6}) {
    TestView view(160, 120);
    view.ImageBorder(true);
    view.load(picture);
    view.Zoom(zoom);
    const Bitmap whole = view.shot(ChannelOrder::bgra);
    Bitmap part = Bitmap::filled(160, 120, {9, 9, 9, 9});
    const Pixels pixels = part.writable();
    const Rectangle area{37, 0, 61, 53};
    view.paint({pixels.data, pixels.stride, 160, 120, ChannelOrder::bgra}, area);
    for (std::int32_t y = 0; y < 120; ++y) {
      for (std::int32_t x = 0; x < 160; ++x) {
        const bool inside = x >= 37 && x < 98 && y < 53;
        ASSERT_EQ(part.at(x, y), inside ? whole.at(x, y) : (Pixel{9, 9, 9, 9})) << zoom;
      }
    }
  }
}

TEST(ViewPainting, BgraSwapsBlueAndRed) {
  TestView view(120, 90);
  view.ImageBorder(true);
  view.load(waves(70, 50, true));
  const Bitmap rgba = view.shot(ChannelOrder::rgba), bgra = view.shot(ChannelOrder::bgra);
  for (std::int32_t y = 0; y < 90; ++y) {
    for (std::int32_t x = 0; x < 120; ++x) {
      const Pixel p = rgba.at(x, y);
      ASSERT_EQ(bgra.at(x, y), (Pixel{p.b, p.g, p.r, p.a}));
    }
  }
}

TEST(ViewPainting, ASmallPictureIsCenteredOnWhite) {
  TestView view(100, 60);
  view.load(40, 20);
  const Bitmap shot = view.shot();
  EXPECT_EQ(shot.at(29, 30), kWhite);
  EXPECT_EQ(shot.at(30, 30), (Pixel{10, 20, 30, 255}));
  EXPECT_EQ(shot.at(69, 30), (Pixel{10, 20, 30, 255}));
  EXPECT_EQ(shot.at(70, 30), kWhite);
  EXPECT_EQ(shot.at(50, 19), kWhite);
  EXPECT_EQ(shot.at(50, 20), (Pixel{10, 20, 30, 255}));
  EXPECT_EQ(shot.at(50, 40), kWhite);
}

TEST(ViewPainting, TheBorderIsOnePixelAroundThePicture) {
  TestView view(100, 60);
  view.ImageBorder(true);
  view.load(40, 20);
  const Bitmap shot = view.shot();
  for (std::int32_t y = 19; y <= 40; ++y) {
    EXPECT_EQ(shot.at(29, y), Painter::kBorderColor) << y;
    EXPECT_EQ(shot.at(70, y), Painter::kBorderColor) << y;
  }
  for (std::int32_t x = 29; x <= 70; ++x) {
    EXPECT_EQ(shot.at(x, 19), Painter::kBorderColor) << x;
    EXPECT_EQ(shot.at(x, 40), Painter::kBorderColor) << x;
  }
  EXPECT_EQ(shot.at(28, 30), kWhite);
  EXPECT_EQ(shot.at(30, 20), (Pixel{10, 20, 30, 255}));
}

TEST(ViewPainting, TheBackgroundTileStartsAtThePicturesCorner) {
  TestView view(100, 60);
  FakeClipboard clipboard;
  ImgXObject tile(clipboard);
  const Colour light(0xC0C0C0), dark(0x404040);
  tile.Document().NewImage(16, 16, &light);
  tile.Draw().Color() = dark;
  tile.Draw().FillMode(kFillSolid);
  tile.Draw().Rectangle({0, 0}, {8, 16});
  view.BackgroundImage(tile.Image());
  tile.Document().NewImage(1, 1, nullptr);  // it was copied
  view.load(40, 20, {255, 0, 0, 0});        // from (30, 20)
  Bitmap shot = view.shot();
  EXPECT_EQ(shot.at(30, 25), (Pixel{0x40, 0x40, 0x40, 255}));
  EXPECT_EQ(shot.at(37, 25), (Pixel{0x40, 0x40, 0x40, 255}));
  EXPECT_EQ(shot.at(38, 25), (Pixel{0xC0, 0xC0, 0xC0, 255}));
  EXPECT_EQ(shot.at(46, 25), (Pixel{0x40, 0x40, 0x40, 255}));
  EXPECT_EQ(shot.at(10, 25), kWhite);

  view.load(40, 20, {255, 0, 0, 128});
  shot = view.shot();
  EXPECT_EQ(shot.at(30, 25), (Pixel{160, 32, 32, 255}));

  view.BackgroundImage(nullptr);
  EXPECT_EQ(view.shot().at(30, 25), (Pixel{255, 127, 127, 255}));
}

TEST(ViewPainting, WithoutAPictureEverythingIsWhite) {
  TestView view(20, 10);
  const Bitmap shot = view.shot();
  for (std::int32_t y = 0; y < 10; ++y) {
    for (std::int32_t x = 0; x < 20; ++x) ASSERT_EQ(shot.at(x, y), kWhite);
  }
}

TEST(ViewPainting, TheSmallestPicturesAreVisibleAtEveryZoom) {
  for (const auto& [width, height] : {std::pair{1, 1}, std::pair{1, 70}, std::pair{3, 2}}) {
    for (const double zoom : {0.01, 0.1, 0.5, 0.9, 1.0, 13.0, 64.0}) {
      TestView view(50, 50);
      view.load(width, height);
      view.Zoom(zoom);
      const Bitmap shot = view.shot();
      std::int32_t seen = 0;
      for (std::int32_t y = 0; y < 50; ++y) {
        for (std::int32_t x = 0; x < 50; ++x) seen += shot.at(x, y) != kWhite;
      }
      EXPECT_GE(seen, 1) << width << " x " << height << " at " << zoom;
    }
  }
}

TEST(ViewPainting, FollowsAStrokeWhenZoomedOut) {
  TestView view(100, 100);
  view.load(1000, 1000, kWhite);
  view.Zoom(0.1);
  view.shot();
  view.Draw().FillMode(kFillSolid);
  view.Draw().Rectangle({480, 480}, {540, 540});
  EXPECT_EQ(view.shot().at(50, 50), (Pixel{0, 0, 0, 255}));
  view.Undo();
  EXPECT_EQ(view.shot().at(50, 50), kWhite);
}

}  // namespace
}  // namespace kestrel::engine
