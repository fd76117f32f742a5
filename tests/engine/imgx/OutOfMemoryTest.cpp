#include <gtest/gtest.h>

#include <new>

#include "../undo/Pictures.h"
#include "../view/TestView.h"
#include "FailingAllocator.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

/// Runs `work` with memory for `allocations` allocations. False if it ran out of memory.
template <typename Work>
bool succeedsWith(long allocations, const Work& work) {
  kestrel::test::failAllocationsAfter(allocations);
  try {
    work();
    kestrel::test::failAllocationsAfter(-1);
    return true;
  } catch (const std::bad_alloc&) {
    kestrel::test::failAllocationsAfter(-1);
  } catch (const RuntimeError& error) {
    kestrel::test::failAllocationsAfter(-1);
    EXPECT_EQ(error.Number(), err::kOutOfMemory) << error.Description();
  }
  return false;
}

struct Operation {
  const char* name;
  void (*run)(ImgXObject&, ImgXObject& other);
};

/// Two steps done and one undone, on a picture that came from a file.
std::shared_ptr<EditablePicture> pictureWithHistory() {
  auto picture = std::make_shared<EditablePicture>();
  picture->put({noise(70, 50), 2}, "");
  picture->undoLevels(5);
  picture->replacePixels(noise(64, 48, 2), "Whole");
  picture->paint(std::array{Rectangle{3, 3, 30, 40}}, "Drawn", [](Pixels pixels) {
    fill(pixels, 3, 3, 30, 40, {1, 2, 3, 200});
  });
  picture->replacePixels(noise(30, 30, 3), "Undone");
  picture->undo();
  picture->modified(false);
  return picture;
}

class OutOfMemory : public ::testing::TestWithParam<Operation> {};

TEST_P(OutOfMemory, AnywhereInAnOperationChangesNothing) {
  FakeClipboard clipboard;
  clipboard.bitmap = noise(9, 9);
  ImgXObject other(clipboard);
  other.Document().FromPicture(PictureObject(noise(20, 20, 4)));

  long failures = 0;
  for (long allocations = 0;; ++allocations) {
    const auto picture = pictureWithHistory();
    const Bitmap before = deepCopy(picture->bitmap());
    ImgXObject object(clipboard, picture, std::make_shared<ImagingSettings>());
    if (succeedsWith(allocations, [&] { GetParam().run(object, other); })) break;
    ++failures;
    ASSERT_LT(failures, 10000);
    ASSERT_TRUE(samePixels(picture->bitmap(), before)) << "after " << allocations << " allocations";
    EXPECT_FALSE(picture->modified());
    EXPECT_EQ(picture->state().format, 2);
    EXPECT_EQ(picture->history().undoName(), "Drawn");
    EXPECT_EQ(picture->history().redoName(), "Undone");
    EXPECT_EQ(picture->history().undoSteps(), 2);
    // Still bound, and the history is unchanged.
    EXPECT_EQ(object.Image()->Width(), 64);
    picture->undo();
    EXPECT_TRUE(samePixels(picture->bitmap(), noise(64, 48, 2)));
    picture->undo();
    EXPECT_TRUE(samePixels(picture->bitmap(), noise(70, 50)));
  }
  EXPECT_GT(failures, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, OutOfMemory,
    ::testing::Values(
        Operation{"Crop", [](auto& o, auto&) { o.Effects().Crop(1, 1, 20, 20, "New"); }},
        Operation{"Flip", [](auto& o, auto&) { o.Effects().Flip(0, "New"); }},
        Operation{"FlipUnrecorded", [](auto& o, auto&) { o.Effects().Flip(0, "No Undo"); }},
        Operation{"Resize", [](auto& o, auto&) { o.Effects().Resize(33, 0, kResampleBicubic, "New"); }},
        Operation{"ResizeCanvas",
                  [](auto& o, auto&) { o.Effects().ResizeCanvas(80, 80, Colour(0), 1, 1, "New"); }},
        Operation{"QuarterTurn", [](auto& o, auto&) { o.Effects().Rotate(90, nullptr, 0, "New"); }},
        Operation{"Rotate", [](auto& o, auto&) { o.Effects().Rotate(17, nullptr, 0, "New"); }},
        Operation{"DropShadow",
                  [](auto& o, auto&) { o.Effects().DropShadow(5, 5, Colour(0, 75), 128, true, "New"); }},
        Operation{"ReplaceColor",
                  [](auto& o, auto&) { o.Effects().ReplaceColor(Colour(0), Colour(1), 1, 0, "New"); }},
        Operation{"GrayScale", [](auto& o, auto&) { o.Effects().ApplyPalette({}, true, "New"); }},
        Operation{"Flatten", [](auto& o, auto&) { o.Alpha().Flatten(Colour(0), "New"); }},
        Operation{"Rectangle",
                  [](auto& o, auto&) {
                    o.Draw().Rectangle({1, 1}, {60, 40}, 3, 3, "New");
                  }},
        Operation{"RectangleUnrecorded",
                  [](auto& o, auto&) {
                    o.Draw().Rectangle({1, 1}, {60, 40}, 3, 3, "No Undo");
                  }},
        Operation{"Image",
                  [](auto& o, auto& x) { o.Draw().Image(*x.Image(), 5, 5, nullptr, 0.5F, true, "New"); }},
        Operation{"ImageOnItself", [](auto& o, auto&) { o.Draw().ImageWithAlpha(*o.Image(), 5, 5, "New"); }},
        Operation{"NewImage", [](auto& o, auto&) { o.Document().NewImage(9, 9, nullptr); }},
        Operation{"CopyFrom", [](auto& o, auto& x) { o.Document().CopyFrom(x); }},
        Operation{"ToPicture", [](auto& o, auto&) { o.Writer().ToPicture(); }}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(OutOfMemoryInAStroke, RevertsTheStroke) {
  long failures = 0;
  for (long allocations = 0;; ++allocations) {
    TestView view(100, 80, false);
    view.load(noise(100, 80));
    view.Tool(kViewToolFreehand);
    view.Draw().PenSetting(3);
    view.press({10, 10});
    view.move({30, 20});
    view.invalid.reserve(1000);
    const bool succeeded = succeedsWith(allocations, [&] { view.pointerMove(kLeftButton, 0, 60, 70); });
    if (succeeded) break;
    ++failures;
    ASSERT_LT(failures, 10000);
    view.move({90, 10});
    view.keyDown(ViewKey::escape, 0);
    ASSERT_TRUE(samePixels(bitmapOf(*view.Picture()), noise(100, 80))) << allocations;
    EXPECT_EQ(view.UndoName(), "");
    EXPECT_FALSE(view.Modified());
  }
  EXPECT_GT(failures, 0);
}

TEST(OutOfMemoryWhilePainting, StillShowsThePicture) {
  TestView view(50, 40, false);
  view.load(400, 300, {200, 100, 50, 255});
  Bitmap buffer = Bitmap::filled(50, 40);
  const Pixels pixels = buffer.writable();
  const PaintBuffer target{pixels.data, pixels.stride, 50, 40, ChannelOrder::rgba};
  view.paint(target, {0, 0, 50, 40});
  view.Zoom(0.125);  // requires the pyramid
  kestrel::test::failAllocationsAfter(0);
  view.paint(target, {0, 0, 50, 40});
  kestrel::test::failAllocationsAfter(-1);
  EXPECT_EQ(buffer.at(25, 20), (Pixel{200, 100, 50, 255}));
}

TEST(PaintingMemory, ScrollingAllocatesNothing) {
  TestView view(300, 200, false);
  view.load(noise(2000, 1500));
  view.Zoom(0.4);
  view.invalid.reserve(1000);
  Bitmap buffer = Bitmap::filled(300, 200);
  const Pixels pixels = buffer.writable();
  const PaintBuffer target{pixels.data, pixels.stride, 300, 200, ChannelOrder::bgra};
  view.paint(target, {0, 0, 300, 200});
  view.scrollBy(-250, -200);
  view.paint(target, {0, 0, 300, 200});
  view.scrollBy(250, 200);
  kestrel::test::failAllocationsAfter(0);
  for (int i = 0; i < 20; ++i) {
    view.scrollBy(-7, -5);
    view.paint(target, {0, 0, 300, 200});
  }
  kestrel::test::failAllocationsAfter(-1);
  EXPECT_GT(view.ScrollLeft(), 0);
}

}  // namespace
}  // namespace kestrel::engine
