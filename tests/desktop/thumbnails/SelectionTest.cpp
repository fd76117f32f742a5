#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>

#include "ThumbnailBench.h"

namespace kestrel::desktop {
namespace {

/// 12 pictures in a window with several columns and rows, more than it shows.
class ThumbnailSelection : public testing::Test {
 protected:
  ThumbnailSelection() {
    folder.addMany(12);
    bench.open(folder);
  }

  std::int32_t columns() { return bench.view().arrangement().columns(); }
  /// A point in the gap to the left of an item and above it.
  QPoint before(std::int32_t item) {
    const Rectangle cell = bench.view().placeOf(item).cell;
    return bench.inWindow({cell.Left - 4, cell.Top - 4, 2, 2});
  }
  /// Just behind the lower right corner of an item.
  QPoint behind(std::int32_t item) {
    const Rectangle cell = bench.view().placeOf(item).cell;
    return bench.inWindow({cell.Left + cell.Width + 2, cell.Top + cell.Height + 2, 2, 2});
  }

  PictureFolder folder;
  ThumbnailBench bench;
};

TEST_F(ThumbnailSelection, HasItsOrderByNumbersInTheNames) {
  EXPECT_EQ(bench.names().substr(0, 26), "img1.png img2.png img3.png");
  EXPECT_TRUE(bench.names().ends_with("img9.png img10.png img11.png img12.png"));
  ASSERT_GE(columns(), 3);
}

TEST_F(ThumbnailSelection, ClickSelectsOneItem) {
  bench.click(1);
  EXPECT_EQ(bench.selection(), "1");
  bench.click(3);
  EXPECT_EQ(bench.selection(), "3");
  EXPECT_EQ(bench.view().focusItem(), 3);
  EXPECT_EQ(bench.view().SelectedItems().Count(), 1);
  EXPECT_TRUE(bench.view().SelectedItems().Item(1).Filename().ends_with("img4.png"));
}

TEST_F(ThumbnailSelection, CtrlClickAddsAndTakesAway) {
  bench.click(0);
  bench.click(2, Qt::ControlModifier);
  EXPECT_EQ(bench.selection(), "0 2");
  bench.click(0, Qt::ControlModifier);
  EXPECT_EQ(bench.selection(), "2");
}

TEST_F(ThumbnailSelection, ShiftClickSelectsTheRangeFromTheAnchor) {
  bench.click(1);
  bench.click(4, Qt::ShiftModifier);
  EXPECT_EQ(bench.selection(), "1 2 3 4");
  bench.click(0, Qt::ShiftModifier);
  EXPECT_EQ(bench.selection(), "0 1");
}

TEST_F(ThumbnailSelection, ClickOnTheGroundClears) {
  bench.click(1);
  const QPoint ground = before(0);
  bench.press(ground);
  bench.release(ground);
  EXPECT_EQ(bench.selection(), "");
}

TEST_F(ThumbnailSelection, RubberBandSelectsWhatItTouches) {
  bench.press(before(0));
  bench.move(bench.middleOf(1));
  EXPECT_EQ(bench.selection(), "0 1");
  EXPECT_GT(bench.view().rubberBand().Width, 0);
  bench.screenshot("rubber-band");
  bench.move(bench.middleOf(columns() + 1));
  bench.release(bench.middleOf(columns() + 1));
  EXPECT_EQ(bench.view().rubberBand(), Rectangle{});
  const std::int32_t below = columns();
  EXPECT_EQ(bench.selection(), "0 1 " + std::to_string(below) + " " + std::to_string(below + 1));
}

TEST_F(ThumbnailSelection, RubberBandIsVisibleWhileItIsDragged) {
  const QImage without = bench.grab();
  bench.press(before(0));
  bench.move(before(0) + QPoint(3, 40));
  bench.move(behind(0));
  const Rectangle band = bench.view().rubberBand();
  const QImage with = bench.grab();
  const QPoint corner(band.Left, band.Top + band.Height / 2);
  EXPECT_NE(with.pixel(corner), without.pixel(corner));
  bench.release(behind(0));
  const QPoint besides(band.Left, band.Top);
  EXPECT_EQ(bench.grab().pixel(besides), without.pixel(besides));
}

TEST_F(ThumbnailSelection, RubberBandBeyondTheEdgeScrolls) {
  bench.window().resize(bench.window().width(), 260);
  settle();
  ASSERT_GT(bench.view().arrangement().scrollRange(), 0);
  bench.press(before(0));
  const QPoint below(bench.window().width() - 30, bench.window().height() + 60);
  bench.move(bench.middleOf(1));
  bench.move(below);
  EXPECT_TRUE(eventually([&] {
    return bench.view().scroll() == bench.view().arrangement().scrollRange() && bench.view().isSelected(11);
  }));
  bench.release(below);
  EXPECT_EQ(bench.view().SelectedItems().Count(), 12);
  const std::int64_t reached = bench.view().scroll();
  bench.view().scrollTo(0);
  settle();
  EXPECT_EQ(bench.view().scroll(), 0) << "scrolling has ended with the band";
  EXPECT_GT(reached, 0);
}

TEST_F(ThumbnailSelection, EscapeTakesTheRubberBandBack) {
  bench.click(2);
  bench.press(before(0));
  bench.move(bench.middleOf(1));
  ASSERT_EQ(bench.selection(), "0 1");
  bench.key(Qt::Key_Escape);
  EXPECT_EQ(bench.view().rubberBand(), Rectangle{});
  EXPECT_EQ(bench.selection(), "2");
  bench.release(bench.middleOf(1));
  EXPECT_EQ(bench.selection(), "2");
}

TEST_F(ThumbnailSelection, ArrowsMoveAndShiftExtends) {
  bench.key(Qt::Key_Home);
  EXPECT_EQ(bench.selection(), "0");
  bench.key(Qt::Key_Right);
  EXPECT_EQ(bench.selection(), "1");
  bench.key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(bench.selection(), "1 2");
  bench.key(Qt::Key_Down);
  EXPECT_EQ(bench.selection(), std::to_string(2 + columns()));
  bench.key(Qt::Key_Up);
  EXPECT_EQ(bench.selection(), "2");
}

TEST_F(ThumbnailSelection, ControlWithArrowsAndSpaceSelectsSingly) {
  bench.key(Qt::Key_Home);
  bench.key(Qt::Key_Right, Qt::ControlModifier);
  bench.key(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(bench.selection(), "0");
  EXPECT_EQ(bench.view().focusItem(), 2);
  bench.key(Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(bench.selection(), "0 2");
}

TEST_F(ThumbnailSelection, EndAndPageKeysScrollToTheItem) {
  bench.window().resize(bench.window().width(), 260);
  settle();
  bench.key(Qt::Key_End);
  EXPECT_EQ(bench.selection(), "11");
  EXPECT_EQ(bench.view().scroll(), bench.view().arrangement().scrollRange());
  bench.key(Qt::Key_PageUp);
  EXPECT_EQ(bench.view().focusItem(), 11 - columns());
  bench.key(Qt::Key_Home);
  EXPECT_EQ(bench.view().scroll(), 0);
}

TEST_F(ThumbnailSelection, CtrlASelectsAll) {
  bench.key(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(bench.view().SelectedItems().Count(), 12);
}

TEST_F(ThumbnailSelection, TypingFindsTheName) {
  bench.type("img11");
  EXPECT_EQ(bench.selection(), "10");
}

TEST_F(ThumbnailSelection, EnterOpensAndDeleteAsks) {
  std::string opened;
  int deletes = 0;
  const Connection open =
      bench.view().ThumbnailOpen.Connect([&](Thumbnail& item) { opened = item.Filename(); });
  const Connection remove = bench.view().DeletePressed.Connect([&] { ++deletes; });
  bench.click(1);
  bench.key(Qt::Key_Return);
  EXPECT_TRUE(opened.ends_with("img2.png"));
  bench.key(Qt::Key_Delete);
  EXPECT_EQ(deletes, 1);
  EXPECT_TRUE(folder.has("img2.png")) << "the command deletes, not the view";
}

/// The view of a container that deletes the selected files at once.
class ThumbnailDeletion : public ThumbnailSelection {
 protected:
  std::string deleteByKey() {
    std::string deleted;
    const Connection remove = bench.view().DeletePressed.Connect([&] {
      Thumbnails& selected = bench.view().SelectedItems();
      for (std::int32_t i = 1; i <= selected.Count(); ++i) {
        const std::string file = selected.Item(i).Filename();
        const std::string name = file.substr(file.rfind('/') + 1);
        folder.remove(name);
        deleted += (deleted.empty() ? "" : " ") + name;
      }
      bench.view().Refresh();
    });
    bench.key(Qt::Key_Delete);
    EXPECT_TRUE(eventually([&] { return bench.view().settled(); }));
    return deleted;
  }
};

TEST_F(ThumbnailDeletion, SelectsTheNextPictureInTheGrid) {
  bench.click(1);
  EXPECT_EQ(deleteByKey(), "img2.png");
  EXPECT_EQ(bench.selection(), "1");
  EXPECT_EQ(deleteByKey(), "img3.png") << "the key deletes one after the other";
  bench.key(Qt::Key_End);
  EXPECT_EQ(deleteByKey(), "img12.png");
  EXPECT_EQ(bench.selection(), std::to_string(bench.view().itemCount() - 1)) << "the last one";
}

TEST_F(ThumbnailDeletion, MeansThePictureShownInTheSingleView) {
  bench.click(1);
  bench.key(Qt::Key_A, Qt::ControlModifier);
  ASSERT_EQ(bench.view().SelectedItems().Count(), 12);
  bench.view().View(kViewSingle);
  settle();
  bench.key(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(deleteByKey(), "img2.png");
  EXPECT_EQ(bench.view().itemCount(), 11);
  EXPECT_EQ(bench.view().largeItem(), 1);
  EXPECT_EQ(deleteByKey(), "img3.png");
}

TEST_F(ThumbnailSelection, DoubleClickReportsTheItem) {
  std::string clicked;
  const Connection connection =
      bench.view().ThumbnailDblClick.Connect([&](Thumbnail& item) { clicked = item.Filename(); });
  bench.doubleClick(2);
  EXPECT_TRUE(clicked.ends_with("img3.png"));
}

TEST_F(ThumbnailSelection, ContextClickSelectsAndReportsTheItem) {
  std::string clicked;
  const Connection connection =
      bench.view().ThumbnailContextClick.Connect([&](Thumbnail& item) { clicked += item.Filename() + ";"; });
  bench.click(0);
  bench.rightClick(bench.middleOf(2));
  EXPECT_TRUE(clicked.ends_with("img3.png;"));
  EXPECT_EQ(bench.selection(), "2");
  clicked.clear();
  bench.rightClick(before(0));
  EXPECT_EQ(clicked, "");
  EXPECT_EQ(bench.selection(), "");
}

TEST_F(ThumbnailSelection, MenuKeyReportsTheFocusItem) {
  std::string clicked;
  const Connection connection =
      bench.view().ThumbnailContextClick.Connect([&](Thumbnail& item) { clicked += item.Filename() + ";"; });
  bench.click(1);
  bench.key(Qt::Key_Menu);
  EXPECT_TRUE(clicked.ends_with("img2.png;"));
  clicked.clear();
  bench.key(Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_TRUE(clicked.ends_with("img2.png;"));
}

TEST_F(ThumbnailSelection, KeysOfACommandGoToTheContainer) {
  EXPECT_FALSE([&] {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, QString());
    QApplication::sendEvent(&bench.area(), &event);
    return event.isAccepted();
  }());
}

}  // namespace
}  // namespace kestrel::desktop
