// Memory runs out during a user's action, at each allocation in turn. A separate program, since it replaces
// the allocator.

#include "EditorTest.h"
#include "FailingAllocator.h"

namespace kestrel {
namespace {

/// Only blocks from this size on fail: pixel memory. Smaller ones always succeed.
constexpr std::size_t kLarge = 2048;

using testing::SizeIs;
using testing::StartsWith;

class EditorWithoutMemory : public EditorTest {
 protected:
  /// An open, changed picture of different rows, with a selection and steps to undo and redo.
  void SetUp() override {
    EditorTest::SetUp();
    start();
    ASSERT_TRUE(editor().OpenImage(makePicture("open.png", 2, 80, 60)));
    view().Draw().FillMode(kFillSolid);
    for (std::int32_t y = 0; y < 60; ++y) {
      view().Draw().Color().Value(0x030201 * (y + 1));
      view().Draw().Rectangle({0, y}, {60, y + 1}, 0, 0, kNoUndo);
    }
    view().CreateUndoPoint("Rows");
    editor().FlipHorizontally();
    editor().FlipVertically();
    editor().Undo();
    editor().SetSelection(5, 6, 40, 30);
  }
  void TearDown() override {
    test::failAllocationsAfter(-1);
    EditorTest::TearDown();
  }

  std::string pixels() {
    const PixelRows rows = editor().Image()->Pixels();
    std::string all = std::to_string(rows.Width) + "x" + std::to_string(rows.Height) + ":";
    for (std::int32_t y = 0; y < rows.Height; ++y) {
      all.append(reinterpret_cast<const char*>(rows.Data + static_cast<std::size_t>(y) * rows.Stride),
                 static_cast<std::size_t>(rows.Width) * 4);
    }
    return all;
  }
  std::string history() {
    return view().UndoName() + "|" + view().RedoName() + "|" + boolean(view().Modified()) + "|" +
           boolean(view().SelectionVisible()) + "|" + std::to_string(view().SelectionWidth());
  }

  /// Runs `work` with memory for 0, 1, 2... large blocks until it succeeds; `check` runs after each failure.
  template <typename Work, typename Check>
  void everywhere(const Work& work, const Check& check) {
    long blocks = 0;
    for (; blocks < 1000; ++blocks) {
      test::failAllocationsAfter(blocks, kLarge);
      const bool done = work();
      test::failAllocationsAfter(-1);
      if (done) break;
      check();
      if (HasFatalFailure()) return;
    }
    EXPECT_GT(blocks, 0) << "it needed no memory";
    EXPECT_LT(blocks, 1000);
  }
};

TEST_P(EditorWithoutMemory, AnOperationRaisesAndChangesNothing) {
  const std::function<void(ImageProcessingCtl&)> operations[] = {
      [](auto& e) { e.Resize(100, 90, 1); },
      [](auto& e) { e.ResizeCanvas(100, 90, 3, 4, 0); },
      [](auto& e) { e.Rotate(90); },
      [](auto& e) { e.Rotate(33, 0x123456); },
      [](auto& e) { e.FlipHorizontally(); },
      [](auto& e) { e.FlipVertically(true); },
      [](auto& e) { e.ApplyGrayScale(); },
      [](auto& e) { e.ApplyGrayScale(true); },
      [](auto& e) { e.FlattenAlpha(0xFFFFFF); },
      [](auto& e) { e.ApplyDropShadow(4, 4, 0, 200, 60); },
      [](auto& e) { e.Rotate(33, 0x123456, true); },
      [](auto& e) { e.CropToSelection(); },
  };
  int number = 0;
  for (const auto& operation : operations) {
    SCOPED_TRACE("operation " + std::to_string(number++));
    const std::string picture = pixels();
    const std::string steps = history();
    everywhere(
        [&] {
          try {
            operation(editor());
            return true;
          } catch (const std::bad_alloc&) {
          } catch (const RuntimeError& error) {
            test::failAllocationsAfter(-1);
            EXPECT_EQ(error.Number(), 7) << error.Description();
          }
          return false;
        },
        [&] {
          ASSERT_EQ(pixels(), picture);
          ASSERT_EQ(history(), steps);
        });
    editor().Undo();
    editor().SetSelection(5, 6, 40, 30);
    ASSERT_EQ(pixels(), picture);
  }
}

TEST_P(EditorWithoutMemory, TheContouredShadowKeepsThePicturesBackground) {
  for (const bool onSelection : {false, true}) {
    if (!onSelection) editor().ResetSelection();
    const std::string picture = pixels();
    everywhere(
        [&] {
          try {
            editor().ApplyMaskedDropShadow(4, 4, 0, 200, 60, 0, true);
            return true;
          } catch (const std::bad_alloc&) {
          } catch (const RuntimeError& error) {
            test::failAllocationsAfter(-1);
            EXPECT_EQ(error.Number(), 7) << error.Description();
          }
          return false;
        },
        [&] { ASSERT_EQ(pixels(), picture); });
    editor().Undo();
    ASSERT_EQ(pixels(), picture);
    editor().SetSelection(5, 6, 40, 30);
  }
}

TEST_P(EditorWithoutMemory, AFileThatCannotBeOpenedShowsABoxAndKeepsThePicture) {
  const std::string file = makePicture("other.png", 2, 90, 70);
  const std::string picture = pixels();
  const std::string steps = history();
  user().answers(kAnswerOK);
  everywhere([&] { return editor().OpenImage(file); },
             [&] {
               ASSERT_THAT(user().boxes(), SizeIs(1));
               EXPECT_THAT(user().boxes()[0].text,
                           StartsWith("Unable to open image \"" + file + "\" due to error \""));
               EXPECT_EQ(pixels(), picture);
               EXPECT_EQ(history(), steps);
               EXPECT_EQ(editor().Filename(), path("open.png"));
               user().forget();
               user().answers(kAnswerOK);
             });
  EXPECT_EQ(editor().Image()->Width(), 90);
  platform().UserInterface().MessageBox("the answer that was left over", kBoxInformation, "", 0);
}

TEST_P(EditorWithoutMemory, ASaveThatFailsShowsABoxAndKeepsTheFile) {
  const std::string file = makePicture("open.bmp", 6, 80, 60);
  ASSERT_TRUE(editor().OpenImage(file));
  change();
  view().Draw().Rectangle({3, 3}, {30, 40}, 0, 0, "Box");
  const std::string before = contents(file);
  const std::string picture = pixels();
  user().answers(kAnswerOK);
  everywhere([&] { return editor().SaveImage(); },
             [&] {
               ASSERT_THAT(user().boxes(), SizeIs(1));
               EXPECT_THAT(user().boxes()[0].text,
                           StartsWith("Unable to save image \"" + file + "\" due to error \""));
               EXPECT_EQ(contents(file), before);
               EXPECT_EQ(pixels(), picture);
               EXPECT_TRUE(view().Modified());
               user().forget();
               user().answers(kAnswerOK);
             });
  EXPECT_NE(contents(file), before);
  platform().UserInterface().MessageBox("the answer that was left over", kBoxInformation, "", 0);
}

KESTREL_WITH_BOTH_PATHS(EditorWithoutMemory);

}  // namespace
}  // namespace kestrel
