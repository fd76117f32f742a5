#include "engine/view/View.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../undo/Pictures.h"
#include "TestView.h"

namespace kestrel::engine {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(View, StartsWithItsStoredValues) {
  TestView view;
  EXPECT_EQ(view.UndoLevels(), 3);
  EXPECT_EQ(view.Zoom(), 1.0);
  EXPECT_EQ(view.Tool(), kViewToolNone);
  EXPECT_EQ(view.MousePointer(), kPointerDefault);
  EXPECT_FALSE(view.SelectionVisible());
  EXPECT_FALSE(view.Modified());
  EXPECT_EQ(view.Image(), nullptr);
  EXPECT_EQ(view.Picture(), nullptr);
}

TEST(View, APictureThatIsWrittenIsShownAndReadBack) {
  TestView view;
  const Bitmap bitmap = noise(30, 20);
  view.Picture(std::make_shared<PictureObject>(bitmap));
  EXPECT_THAT(view.take(), IsEmpty()) << "a load is no edit";
  EXPECT_TRUE(view.Modified());
  EXPECT_FALSE(view.CanUndo());
  EXPECT_TRUE(samePixels(bitmapOf(*view.Picture()), bitmap));
  ASSERT_NE(view.Image(), nullptr);
  EXPECT_EQ(view.Image()->Width(), 30);
  view.Picture(nullptr);
  EXPECT_EQ(view.Image(), nullptr);
  EXPECT_THAT(view.take(), IsEmpty());
}

TEST(View, ALoadIsShownAtOnceAndIsNoChange) {
  TestView view(200, 100);
  view.load(30, 20);
  view.ranges = 0;
  view.invalid.clear();
  int loads = 0;
  const Connection connection = view.Loaded.Connect([&] { ++loads; });
  view.Document().FromPicture(PictureObject(noise(400, 300)), kNoUndo);
  EXPECT_THAT(view.take(), IsEmpty());
  EXPECT_EQ(loads, 1);
  EXPECT_EQ(view.ranges, 1) << "the scroll bars follow";
  EXPECT_THAT(view.invalid, Contains(Rectangle{0, 0, 200, 100}));
  EXPECT_EQ(view.Image()->Width(), 400);
  view.Document().FromPicture(PictureObject(noise(40, 30)), "");
  EXPECT_THAT(view.take(), ElementsAre("Changed()"));
  EXPECT_EQ(loads, 1);
}

TEST(View, CanUndoAndCanRedoCountUnnamedSteps) {
  TestView view;
  view.load(noise(30, 20));
  int calls = 0;
  const Connection connection = view.UndoStepsChanged.Connect([&] { ++calls; });
  EXPECT_FALSE(view.CanUndo());
  view.Effects().Flip(0, "");
  EXPECT_TRUE(view.CanUndo());
  EXPECT_FALSE(view.CanRedo());
  view.Undo();
  EXPECT_FALSE(view.CanUndo());
  EXPECT_TRUE(view.CanRedo());
  EXPECT_EQ(calls, 0) << "these raise Changed";
  view.UndoLevels(0);
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(view.CanRedo());
  view.UndoLevels(2);
  view.CreateUndoPoint("Point");
  EXPECT_EQ(calls, 3);
  EXPECT_TRUE(view.CanUndo());
}

TEST(View, AnUndoPointMayBeTakenBackAndMayOutliveTheView) {
  std::unique_ptr<UndoPoint> point;
  {
    TestView view;
    view.load(noise(30, 20));
    point = view.CreateUndoPoint("Point");
    view.Effects().Flip(0, kNoUndo);
    view.take();
    point->TakeBack();
    EXPECT_THAT(view.take(), ElementsAre("Changed()"));
    EXPECT_FALSE(view.CanUndo());
    EXPECT_FALSE(view.Modified());
    EXPECT_TRUE(samePixels(bitmapOf(*view.Picture()), noise(30, 20)));
    point->TakeBack();
    EXPECT_THAT(view.take(), IsEmpty()) << "once";
    point = view.CreateUndoPoint("Another");
  }
  EXPECT_NO_THROW(point->TakeBack());
}

TEST(View, EveryChangeRaisesChangedUndoAndRedoIncluded) {
  TestView view;
  view.load(noise(30, 20));
  view.Effects().Flip(0);
  EXPECT_THAT(view.take(), ElementsAre("Changed()"));
  EXPECT_TRUE(view.Modified());
  view.Modified(false);
  view.Undo();
  EXPECT_THAT(view.take(), ElementsAre("Changed()"));
  EXPECT_TRUE(view.Modified());
  view.Redo();
  EXPECT_THAT(view.take(), ElementsAre("Changed()"));
  view.Redo();
  EXPECT_THAT(view.take(), IsEmpty());
}

TEST(View, UndoLevels0EmptiesTheStack) {
  TestView view;
  view.load(noise(30, 20));
  view.Effects().Flip(0, "Mirror");
  view.UndoLevels(0);
  EXPECT_EQ(view.UndoName(), "");
  view.take();
  view.Undo();
  EXPECT_THAT(view.take(), IsEmpty());
  view.Effects().Flip(0, "Mirror");
  EXPECT_EQ(view.UndoName(), "");
}

TEST(View, OneUndoRevertsTheWorkAfterAnUndoPoint) {
  TestView view;
  const Bitmap before = noise(30, 20);
  view.load(before);
  view.CreateUndoPoint("Contoured Drop Shadow");
  EXPECT_THAT(view.take(), IsEmpty());
  view.Effects().Flip(0, kNoUndo);
  view.Effects().DropShadow(2, 2, Colour(0), 32, true, kNoUndo);
  EXPECT_EQ(view.UndoName(), "Contoured Drop Shadow");
  view.Undo();
  EXPECT_TRUE(samePixels(bitmapOf(*view.Picture()), before));
}

TEST(View, UndoOfEachOperationRestoresEveryPixel) {
  using Operation = void (*)(TestView&);
  const std::pair<const char*, Operation> operations[] = {
      {"Crop", [](TestView& v) { v.Effects().Crop(3, 4, 20, 10, "Step"); }},
      {"Flip", [](TestView& v) { v.Effects().Flip(1, "Step"); }},
      {"Resize", [](TestView& v) { v.Effects().Resize(17, 0, kResampleLanczos, "Step"); }},
      {"ResizeCanvas", [](TestView& v) { v.Effects().ResizeCanvas(90, 20, Colour(255), -5, 5, "Step"); }},
      {"Rotate 90", [](TestView& v) { v.Effects().Rotate(90, nullptr, 0, "Step"); }},
      {"Rotate 33", [](TestView& v) { v.Effects().Rotate(33, nullptr, 0, "Step"); }},
      {"DropShadow", [](TestView& v) { v.Effects().DropShadow(5, 5, Colour(0, 75), 128, true, "Step"); }},
      {"ReplaceColor",
       [](TestView& v) { v.Effects().ReplaceColor(v.Image()->GetPixel(1, 1), Colour(0), 1, 0, "Step"); }},
      {"ApplyPalette", [](TestView& v) { v.Effects().ApplyPalette({}, true, "Step"); }},
      {"Flatten", [](TestView& v) { v.Alpha().Flatten(Colour(0xFF00FF), "Step"); }},
      {"Rectangle",
       [](TestView& v) {
         v.Draw().Rectangle({1, 1}, {40, 30}, 0, 0, "Step");
       }},
      {"Image", [](TestView& v) { v.Draw().Image(*v.Image(), 7, 9, nullptr, 0.5F, true, "Step"); }},
      {"ImageWithAlpha", [](TestView& v) { v.Draw().ImageWithAlpha(*v.Image(), -7, 9, "Step"); }},
      {"NewImage", [](TestView& v) { v.Document().NewImage(5, 5, nullptr, kPixelFormatRgba, "Step"); }},
      {"Paste", [](TestView& v) { v.Document().Paste("Step"); }},
      {"FromPicture", [](TestView& v) { v.Document().FromPicture(PictureObject(noise(3, 3)), "Step"); }}};
  for (const auto& [name, operation] : operations) {
    TestView view;
    view.clipboard().bitmap = noise(12, 12, 5);
    const Bitmap before = noise(60, 40);
    view.load(deepCopy(before));
    operation(view);
    EXPECT_THAT(view.take(), ElementsAre("Changed()")) << name;
    EXPECT_EQ(view.UndoName(), "Step") << name;
    const Bitmap after = deepCopy(bitmapOf(*view.Picture()));
    EXPECT_FALSE(samePixels(after, before)) << name;
    view.Undo();
    EXPECT_TRUE(samePixels(bitmapOf(*view.Picture()), before)) << name;
    EXPECT_EQ(view.RedoName(), "Step") << name;
    view.Redo();
    EXPECT_TRUE(samePixels(bitmapOf(*view.Picture()), after)) << name;
  }
}

TEST(View, AFailedCallChangesNothing) {
  TestView view;
  const Bitmap before = noise(60, 40);
  view.load(before);
  view.Effects().Flip(0, "Kept");
  view.Undo();
  view.Modified(false);
  view.take();
  using Operation = void (*)(TestView&);
  const std::pair<std::int32_t, Operation> failing[] = {
      {5, [](TestView& v) { v.Effects().Crop(100, 100, 5, 5); }},
      {5, [](TestView& v) { v.Effects().Flip(2); }},
      {5, [](TestView& v) { v.Effects().Resize(0, 5, 1); }},
      {5, [](TestView& v) { v.Effects().Resize(5, 5, 99); }},
      {7, [](TestView& v) { v.Effects().Resize(2000000000, 5, 1); }},
      {53, [](TestView& v) { v.Document().FromFile("/no/such/file.png"); }},
      {521, [](TestView& v) { v.Document().Paste(); }},
      {5, [](TestView& v) { v.Document().NewImage(0, 5, nullptr); }},
      {5, [](TestView& v) { v.Image()->GetPixel(60, 0); }},
      {5, [](TestView& v) { v.Image()->GetPixel(0, -1); }}};
  for (const auto& [number, operation] : failing) {
    try {
      operation(view);
      ADD_FAILURE() << "no error " << number;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), number);
      EXPECT_EQ(error.Description().back(), '.') << error.Description();
    }
    EXPECT_TRUE(samePixels(bitmapOf(*view.Picture()), before));
    EXPECT_EQ(view.RedoName(), "Kept");
    EXPECT_FALSE(view.Modified());
    EXPECT_THAT(view.take(), IsEmpty());
  }
}

TEST(View, WithoutAPictureOperationsRaise91) {
  TestView view;
  using Operation = void (*)(TestView&);
  const Operation operations[] = {[](TestView& v) { v.Effects().Flip(0); },
                                  [](TestView& v) { v.Alpha().Flatten(Colour(0)); },
                                  [](TestView& v) {
                                    v.Draw().Rectangle({0, 0}, {5, 5});
                                  },
                                  [](TestView& v) { v.Writer().ToClipboard(); },
                                  [](TestView& v) { v.Writer().ToPicture(); },
                                  [](TestView& v) { v.Writer().ToFile("x.png", 2); },
                                  [](TestView& v) { v.Document().CopyFrom(*v.ImgX()); }};
  for (const Operation operation : operations) {
    try {
      operation(view);
      ADD_FAILURE();
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kObjectNotSet);
    }
  }
}

TEST(View, SelectingAndScrollingAreNoChanges) {
  TestView view(20, 20);
  view.load(60, 40);
  view.Zoom(3);
  view.ScrollLeft(5);
  view.Tool(kViewToolSelect);
  view.SetSelectionRect(1, 1, 5, 5);
  view.SelectionVisible(true);
  EXPECT_FALSE(view.Modified());
  EXPECT_EQ(view.UndoName(), "");
}

TEST(View, RefusesOtherSelectionStyles) {
  TestView view;
  view.SelectionStyle(0);
  EXPECT_THROW(view.SelectionStyle(1), RuntimeError);
}

}  // namespace
}  // namespace kestrel::engine
