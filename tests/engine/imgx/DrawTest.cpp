#include <gtest/gtest.h>

#include "../undo/Pictures.h"
#include "../view/TestView.h"
#include "engine/effects/Composite.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

constexpr Pixel kBlack{0, 0, 0, 255};

struct DrawTest : ::testing::Test {
  DrawTest() {
    const Colour white(0xFFFFFF);
    object.Document().NewImage(40, 30, &white);
    object.Draw().FillMode(kFillSolid);
  }

  Bitmap picture() { return bitmapOf(*object.Writer().ToPicture()); }
  std::int32_t count(Pixel value) {
    std::int32_t result = 0;
    const Bitmap bitmap = picture();
    for (std::int32_t y = 0; y < 30; ++y) {
      for (std::int32_t x = 0; x < 40; ++x) result += bitmap.at(x, y) == value;
    }
    return result;
  }

  FakeClipboard clipboard;
  ImgXObject object{clipboard};
};

TEST_F(DrawTest, AFilledRectangleStopsBeforeTheLargerCoordinates) {
  object.Draw().Rectangle({30, 20}, {10, 5});
  EXPECT_EQ(count(kBlack), 20 * 15);
  EXPECT_EQ(picture().at(10, 5), kBlack);
  EXPECT_EQ(picture().at(29, 19), kBlack);
}

TEST_F(DrawTest, AnOutlineIsAsWideAsThePenInsideTheSameBox) {
  object.Draw().FillMode(kFillNone);
  object.Draw().PenSetting(2);
  object.Draw().Rectangle({10, 5}, {30, 20});
  EXPECT_EQ(count(kBlack), 20 * 15 - 16 * 11);
  EXPECT_NE(picture().at(12, 7), kBlack);
}

TEST_F(DrawTest, RadiiRoundTheCorners) {
  object.Draw().Rectangle({0, 0}, {40, 30}, 10, 10);
  EXPECT_EQ(picture().at(0, 0), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(picture().at(20, 0), kBlack);
  EXPECT_EQ(picture().at(10, 10), kBlack);
}

TEST_F(DrawTest, ShapesAreClippedToThePicture) {
  object.Draw().Rectangle({-1000000, -5}, {3, 2000000000});
  EXPECT_EQ(count(kBlack), 3 * 30);
  object.Draw().Rectangle({100, 100}, {200, 200});
  EXPECT_EQ(count(kBlack), 3 * 30);
}

TEST_F(DrawTest, ColorIsChangedThroughItsValue) {
  object.Draw().Color().Value(0x563412);
  object.Draw().Rectangle({0, 0}, {1, 1});
  EXPECT_EQ(picture().at(0, 0), (Pixel{0x12, 0x34, 0x56, 255}));
}

TEST_F(DrawTest, RefusesUnknownFillModesAndPens) {
  for (const std::int32_t mode : {0, 5, 7, -2}) EXPECT_THROW(object.Draw().FillMode(mode), RuntimeError);
  for (const std::int32_t pen : {0, -1}) EXPECT_THROW(object.Draw().PenSetting(pen), RuntimeError);
  EXPECT_EQ(object.Draw().FillMode(), kFillSolid);
  EXPECT_EQ(object.Draw().PenSetting(), 1);
}

TEST_F(DrawTest, AnImageIsCompositedAsByTheEffect) {
  const Bitmap under = noise(40, 30), top = noise(25, 20, 2);
  ImgXObject source(clipboard);
  source.Document().FromPicture(PictureObject(top));
  for (const auto& [x, y] : {std::pair{5, 5}, std::pair{-10, 20}, std::pair{30, -7}}) {
    object.Document().FromPicture(PictureObject(under));
    object.Draw().ImageWithAlpha(*source.Image(), x, y);
    EXPECT_TRUE(samePixels(picture(), composite(under, top, x, y)));
    object.Document().FromPicture(PictureObject(under));
    object.Draw().Image(*source.Image(), x, y, nullptr, 0.4F, true);
    EXPECT_TRUE(samePixels(picture(), composite(under, top, x, y, {.opacity = 0.4, .maskColor = {}})));
  }
}

TEST_F(DrawTest, PixelsOfTheMaskColorAreSkipped) {
  const Bitmap under = noise(40, 30);
  ImgXObject source(clipboard);
  const Colour magenta(0xFF00FF), green(0x00FF00);
  source.Document().NewImage(10, 10, &magenta);
  source.Draw().Color() = green;
  source.Draw().FillMode(kFillSolid);
  source.Draw().Rectangle({0, 0}, {5, 10});
  object.Document().FromPicture(PictureObject(under));
  object.Draw().Image(*source.Image(), 3, 4, &magenta, 1.0F, true);
  EXPECT_EQ(picture().at(7, 4), (Pixel{0, 255, 0, 255}));
  EXPECT_EQ(picture().at(8, 4), under.at(8, 4));
}

TEST_F(DrawTest, WithoutBlendingTheSourceIsTreatedAsOpaque) {
  ImgXObject source(clipboard);
  source.Document().FromPicture(PictureObject(Bitmap::filled(4, 4, {9, 8, 7, 0})));
  object.Draw().Image(*source.Image(), 0, 0, nullptr, 1.0F, false);
  EXPECT_EQ(picture().at(3, 3), (Pixel{9, 8, 7, 255}));
  EXPECT_EQ(source.Image()->GetPixel(0, 0).Alpha(), 0);
}

TEST_F(DrawTest, APictureCanBeDrawnOnItself) {
  const Bitmap before = noise(40, 30);
  object.Document().FromPicture(PictureObject(before));
  object.Draw().ImageWithAlpha(*object.Image(), 1, 1);
  EXPECT_TRUE(samePixels(picture(), composite(before, before, 1, 1)));
}

TEST_F(DrawTest, RefusesOpacitiesOutside0To1) {
  const Bitmap before = picture();
  for (const float opacity : {-0.1F, 1.1F, NAN}) {
    EXPECT_THROW(object.Draw().Image(*object.Image(), 0, 0, nullptr, opacity, true), RuntimeError);
  }
  EXPECT_TRUE(samePixels(picture(), before));
}

TEST_F(DrawTest, FarAwayImagesChangeNothing) {
  const Bitmap before = picture();
  for (const std::int32_t far : {2147483647, -2147483647 - 1}) {
    object.Draw().ImageWithAlpha(*object.Image(), far, far);
  }
  EXPECT_TRUE(samePixels(picture(), before));
}

}  // namespace
}  // namespace kestrel::engine
