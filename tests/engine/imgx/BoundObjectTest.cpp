#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "../undo/Pictures.h"
#include "../view/TestView.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

Bitmap pictureOf(ImagingFace& face) { return bitmapOf(*face.Writer().ToPicture()); }

TEST(BoundObject, IsTheSameOnEachReadUntilItsPictureIsReplaced) {
  TestView view;
  view.load(30, 20);
  const auto object = view.ImgX();
  EXPECT_EQ(view.ImgX(), object);
  view.load(10, 10);
  view.Effects().Flip(0);
  EXPECT_EQ(view.ImgX(), object) << "a picture put into the view is the one it works on";
  object->Document().NewImage(8, 8, nullptr);
  const auto next = view.ImgX();
  EXPECT_NE(next, object);
  EXPECT_EQ(next->Image()->Width(), 10);
  EXPECT_EQ(object->Image()->Width(), 8);
  EXPECT_EQ(view.ImgX(), next);
}

TEST(BoundObject, SettingsPersistAndAreSharedWithTheView) {
  TestView view;
  view.load(30, 20);
  view.ImgX()->JPEGQuality(30);
  view.ImgX()->Draw().Color().Value(0x112233);
  view.ImgX()->Draw().FillMode(kFillSolid);
  view.ImgX()->Draw().PenSetting(4);
  view.ImgX()->BackColor(0x445566);
  EXPECT_EQ(view.ImgX()->JPEGQuality(), 30);
  EXPECT_EQ(view.JPEGQuality(), 30);
  EXPECT_EQ(view.Draw().Color().Value(), 0x112233);
  EXPECT_EQ(view.Draw().FillMode(), kFillSolid);
  EXPECT_EQ(view.Draw().PenSetting(), 4);
  EXPECT_EQ(view.ImgX()->BackColor(), 0x445566);
  view.Draw().Rectangle({0, 0}, {5, 5});
  EXPECT_EQ(view.Image()->GetPixel(2, 2).Value(), 0x112233);
  view.Document().NewImage(4, 4, nullptr);
  EXPECT_EQ(view.Image()->GetPixel(1, 1).Value(), 0x445566);

  view.JPEGQuality(40);
  view.Draw().Color().Value(7);
  EXPECT_EQ(view.ImgX()->JPEGQuality(), 40);
  EXPECT_EQ(view.ImgX()->Draw().Color().Value(), 7);
}

TEST(BoundObject, AnUnboundObjectCopiesTheSettingsAndKeepsItsOwn) {
  TestView view;
  view.load(30, 20);
  view.JPEGQuality(30);
  view.Draw().Color().Value(0x112233);
  const auto object = view.ImgX();
  Colour& held = object->Draw().Color();
  object->Document().NewImage(8, 8, nullptr);
  EXPECT_EQ(object->JPEGQuality(), 30);
  object->JPEGQuality(90);
  object->Draw().Color().Value(5);
  object->BackColor(9);
  EXPECT_EQ(view.JPEGQuality(), 30);
  EXPECT_EQ(view.Draw().Color().Value(), 0x112233);
  EXPECT_EQ(view.ImgX()->JPEGQuality(), 30) << "the next read has the view's settings";
  EXPECT_EQ(view.ImgX()->BackColor(), kNoColor);
  held.Value(6);
  EXPECT_EQ(view.Draw().Color().Value(), 6) << "a reference that was taken before remains the view's";
}

TEST(BoundObject, ReadsTheCurrentPictureOfTheView) {
  TestView view;
  const auto object = view.ImgX();
  EXPECT_EQ(object->Image(), nullptr);
  view.load(30, 20);
  ASSERT_NE(object->Image(), nullptr);
  EXPECT_EQ(object->Image()->Width(), 30);
  view.Effects().Rotate(90, nullptr);
  EXPECT_EQ(object->Image()->Width(), 20);
}

TEST(BoundObject, EffectsAndDrawingChangeTheView) {
  TestView view;
  const Bitmap before = noise(30, 20);
  view.load(before);
  const auto object = view.ImgX();
  object->Effects().Flip(0, "Mirror");
  EXPECT_THAT(view.take(), ElementsAre("Changed()"));
  EXPECT_TRUE(view.Modified());
  EXPECT_EQ(view.UndoName(), "Mirror");
  object->Draw().Rectangle({0, 0}, {5, 5}, 0, 0, "Box");
  EXPECT_THAT(view.take(), ElementsAre("Changed()"));
  EXPECT_EQ(view.UndoName(), "Box");
  view.Undo();
  view.Undo();
  EXPECT_TRUE(samePixels(pictureOf(view), before));
}

TEST(BoundObject, ANewPictureInItDoesNotChangeTheView) {
  TestView view;
  const Bitmap before = noise(30, 20);
  view.load(before);
  const auto object = view.ImgX();
  const Colour dark(0x404040), light(0xC0C0C0);
  object->Document().NewImage(8, 8, &dark);
  object->Draw().Color() = light;
  object->Draw().FillMode(kFillSolid);
  object->Draw().Rectangle({0, 0}, {4, 4});
  object->Effects().Flip(0);
  EXPECT_EQ(object->Image()->GetPixel(7, 0).Value(), 0xC0C0C0);
  EXPECT_EQ(object->Image()->GetPixel(0, 0).Value(), 0x404040);
  EXPECT_TRUE(samePixels(pictureOf(view), before));
  EXPECT_FALSE(view.Modified());
  EXPECT_THAT(view.take(), IsEmpty());
  EXPECT_EQ(view.Draw().Color().Value(), 0);
  EXPECT_EQ(view.Draw().FillMode(), kFillNone);
}

TEST(BoundObject, StaysBoundWhenReplacingThePictureFails) {
  TestView view;
  view.load(30, 20);
  const auto object = view.ImgX();
  EXPECT_THROW(object->Document().FromFile("/no/such/file.png"), RuntimeError);
  EXPECT_THROW(object->Document().Paste(), RuntimeError);
  EXPECT_EQ(object->Image()->Width(), 30);
  object->Effects().Flip(0, "Mirror");
  EXPECT_EQ(view.UndoName(), "Mirror");
}

TEST(BoundObject, OutlivesItsView) {
  std::shared_ptr<ImgX> object;
  {
    TestView view;
    view.load(30, 20);
    object = view.ImgX();
  }
  object->Effects().Rotate(90, nullptr);
  EXPECT_EQ(object->Image()->Width(), 20);
}

TEST(BoundObject, AssigningACopyToTheViewIsOneStep) {
  TestView view;
  const Bitmap before = noise(30, 20);
  view.load(before);
  view.Document().CopyFrom(*view.ImgX(), 0, "Copy");
  EXPECT_EQ(view.UndoName(), "Copy");
  EXPECT_TRUE(samePixels(pictureOf(view), before));
}

TEST(BoundObject, ACopySharesPixelsUntilEitherChanges) {
  TestView view;
  const Bitmap before = noise(30, 20);
  view.load(before);
  FakeClipboard clipboard;
  ImgXObject scratch(clipboard);
  scratch.Document().CopyFrom(*view.ImgX());
  EXPECT_EQ(scratch.Image()->Pixels().Data, view.Image()->Pixels().Data);
  scratch.Draw().Rectangle({0, 0}, {9, 9});
  EXPECT_TRUE(samePixels(pictureOf(view), before));
  EXPECT_FALSE(samePixels(pictureOf(scratch), before));
}

TEST(BoundObject, DrawingAnEditedSectionBackIsOneStep) {
  TestView view;
  const Bitmap before = noise(60, 40);
  view.load(before);
  FakeClipboard clipboard;
  ImgXObject section(clipboard);
  section.Document().CopyFrom(*view.ImgX(), 0, "");
  section.Effects().Crop(30, 30, -20, -10, "");
  EXPECT_EQ(section.Image()->Width(), 20);
  EXPECT_TRUE(samePixels(pictureOf(view), before));
  section.Alpha().Flatten(Colour(0xFFFFFF), "");
  view.Draw().ImageWithAlpha(*section.Image(), 10, 20);
  EXPECT_THAT(view.take(), ElementsAre("Changed()"));
  const Bitmap after = pictureOf(view), flat = pictureOf(section);
  for (std::int32_t y = 0; y < 40; ++y) {
    for (std::int32_t x = 0; x < 60; ++x) {
      const bool inside = x >= 10 && x < 30 && y >= 20 && y < 30;
      ASSERT_EQ(after.at(x, y), inside ? flat.at(x - 10, y - 20) : before.at(x, y));
    }
  }
  view.Undo();
  EXPECT_TRUE(samePixels(pictureOf(view), before));
}

TEST(BoundObject, AQualityOutsideItsRangeIsClamped) {
  TestView view;
  view.ImgX()->JPEGQuality(500);
  EXPECT_EQ(view.JPEGQuality(), 100);
  view.ImgX()->JPEGQuality(-4);
  EXPECT_EQ(view.JPEGQuality(), 1);
}

}  // namespace
}  // namespace kestrel::engine
