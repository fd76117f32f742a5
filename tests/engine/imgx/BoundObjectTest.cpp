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

TEST(BoundObject, EachCallGivesOneOfItsOwn) {
  TestView view;
  EXPECT_NE(view.ImgX(), view.ImgX());
}

TEST(BoundObject, ReadsTheViewsPictureAsItStandsNow) {
  TestView view;
  const auto object = view.ImgX();
  EXPECT_EQ(object->Image(), nullptr);
  view.load(30, 20);
  ASSERT_NE(object->Image(), nullptr);
  EXPECT_EQ(object->Image()->Width(), 30);
  view.Effects().Rotate(90, nullptr);
  EXPECT_EQ(object->Image()->Width(), 20);
}

TEST(BoundObject, EffectsAndDrawingAreDoneToTheView) {
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

TEST(BoundObject, ANewPictureInItLeavesTheViewAlone) {
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

TEST(BoundObject, StaysBoundWhenAPictureCannotBePutIn) {
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

TEST(BoundObject, TheViewTakesACopyOfItselfAsOneStep) {
  TestView view;
  const Bitmap before = noise(30, 20);
  view.load(before);
  view.Document().CopyFrom(*view.ImgX(), 0, "Copy");
  EXPECT_EQ(view.UndoName(), "Copy");
  EXPECT_TRUE(samePixels(pictureOf(view), before));
}

TEST(BoundObject, ACopyIsAReferenceUntilOneOfTheTwoChanges) {
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

TEST(BoundObject, ASectionIsWorkedOnAndDrawnBackAsOneStep) {
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

TEST(BoundObject, EachFaceHasItsOwnQuality) {
  TestView view;
  const auto object = view.ImgX();
  view.JPEGQuality(30);
  object->JPEGQuality(500);
  EXPECT_EQ(view.JPEGQuality(), 30);
  EXPECT_EQ(object->JPEGQuality(), 100);
  object->JPEGQuality(-4);
  EXPECT_EQ(object->JPEGQuality(), 1);
}

}  // namespace
}  // namespace kestrel::engine
