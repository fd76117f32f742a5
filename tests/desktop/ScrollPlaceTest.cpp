// The scroll position after undo and redo.

#include <gtest/gtest.h>

#include "EditorBench.h"

namespace kestrel::desktop {
namespace {

TEST(ScrollPlace, OfARotationComesBackWithUndoAndRedo) {
  EditorBench bench;
  bench.showPicture(noise(3000, 2000));
  bench.canvas().setFocus();
  const auto scroll = [&](int x, int y) {
    bench.view().surface().horizontalBar().setValue(x);
    bench.view().surface().verticalBar().setValue(y);
    settle();
  };
  const auto expectPlace = [&](int x, int y) {
    settle();
    EXPECT_EQ(bench.view().ScrollLeft(), x);
    EXPECT_EQ(bench.view().ScrollTop(), y);
    EXPECT_EQ(bench.view().surface().horizontalBar().value(), x);
    EXPECT_EQ(bench.view().surface().verticalBar().value(), y);
  };
  scroll(900, 400);
  const QImage before = bench.canvas().grab().toImage();
  bench.moorage().click(bench.command("btnRotateRight"));
  scroll(120, 700);
  pressKey(bench.window(), Qt::Key_Z, Qt::ControlModifier);
  expectPlace(900, 400);
  EXPECT_EQ(bench.canvas().grab().toImage(), before);
  bench.screenshot("scroll-place-undone");
  bench.moorage().click(bench.command("btnEditRedo"));
  expectPlace(120, 700);
}

TEST(ScrollPlace, ComesBackWhenTheScrollBarsAppearAgain) {
  EditorBench bench;
  bench.showPicture(noise(3000, 2000));
  bench.view().surface().horizontalBar().setValue(900);
  bench.view().surface().verticalBar().setValue(400);
  settle();
  const int left = bench.view().ScrollLeft(), top = bench.view().ScrollTop();
  bench.editor().SetSelection(1000, 500, 100, 80);
  bench.editor().CropToSelection();
  settle();
  ASSERT_FALSE(bench.view().surface().horizontalBar().isVisible());
  bench.canvas().setFocus();
  pressKey(bench.window(), Qt::Key_Z, Qt::ControlModifier);
  settle();
  EXPECT_EQ(bench.view().ScrollLeft(), left);
  EXPECT_EQ(bench.view().ScrollTop(), top);
}

}  // namespace
}  // namespace kestrel::desktop
