#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>
#include <QTextLine>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cmath>

#include "../Themes.h"
#include "ThumbnailBench.h"

namespace kestrel::desktop {
namespace {

/// Black and white squares of one pixel: any resampling gives gray.
QImage fineSquares(QSize size) {
  QImage picture(size, QImage::Format_RGB32);
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) picture.setPixelColor(x, y, (x + y) % 2 ? Qt::white : Qt::black);
  }
  return picture;
}

class ThumbnailLooks : public testing::Test {
 protected:
  void open(int view = kViewThumbnail) {
    bench.view().View(view);
    bench.open(folder);
    bench.waitForLoad();
    settle();
  }

  double factor() { return bench.area().devicePixelRatioF(); }
  QColor at(const QImage& image, const Rectangle& place) {
    return image.pixelColor(place.Left + place.Width / 2, place.Top + place.Height / 2);
  }
  /// How many pixels in the rectangle differ from its corner.
  static int inkIn(const QImage& image, const Rectangle& place) {
    const QRgb ground = image.pixel(place.Left, place.Top);
    int ink = 0;
    for (int y = place.Top; y < place.Top + place.Height; ++y) {
      for (int x = place.Left; x < place.Left + place.Width; ++x) ink += image.pixel(x, y) != ground;
    }
    return ink;
  }

  PictureFolder folder;
  ThumbnailBench bench;
};

TEST_F(ThumbnailLooks, SmallPictureIsShownPixelByPixel) {
  const QImage picture = fineSquares({50, 30});
  folder.add("squares.png", picture);
  open();
  const QImage shown = bench.grabPicture(0);
  ASSERT_EQ(shown.size(), picture.size()) << "device pixels, neither enlarged nor reduced";
  EXPECT_EQ(shown.convertToFormat(QImage::Format_RGB32), picture);
}

TEST_F(ThumbnailLooks, LargePictureFillsTheViewAndIsDecodedForIt) {
  // As wide as the view at most, so that its pixels are those of the screen.
  const Rectangle box = [&] {
    bench.view().View(kViewSingle);
    return bench.view().arrangement().large();
  }();
  const QImage picture = fineSquares({box.Width, box.Height / 2});
  folder.add("squares.png", picture);
  open(kViewSingle);
  bench.key(Qt::Key_Home);
  ASSERT_TRUE(eventually([&] { return bench.view().largePicture().bitmap.width() == picture.width(); }));
  settle();
  const Rectangle place = bench.view().largePicture().target;
  EXPECT_EQ(place.Width, picture.width());
  QImage shown = bench.grab().copy(place.Left, place.Top, place.Width, place.Height);
  shown.setDevicePixelRatio(1);
  EXPECT_EQ(shown.convertToFormat(QImage::Format_RGB32), picture);
}

TEST_F(ThumbnailLooks, SingleViewDoesNotEnlarge) {
  folder.add("small.png", Qt::red, {40, 30});
  open(kViewSingle);
  bench.key(Qt::Key_Home);
  ASSERT_TRUE(eventually([&] { return !bench.view().largePicture().bitmap.empty(); }));
  EXPECT_EQ(bench.view().largePicture().target.Width, 40);
  EXPECT_EQ(bench.view().largePicture().target.Height, 30);
}

TEST_F(ThumbnailLooks, FilmStripHasALargePictureAboveTheRow) {
  folder.addMany(9);
  folder.add("img2.png", Qt::blue, {1600, 1000});
  open(kViewFilmstrip);
  bench.click(1);
  ASSERT_TRUE(eventually([&] { return bench.view().largeItem() == 1; }));
  ASSERT_TRUE(eventually([&] { return bench.view().largePicture().bitmap.width() > 256; }));
  settle();
  const Rectangle large = bench.view().largePicture().target;
  EXPECT_LT(large.Top + large.Height, bench.view().placeOf(1).cell.Top);
  EXPECT_EQ(at(bench.grab(), large), QColor(Qt::blue));
  EXPECT_FALSE(bench.area().horizontalScrollBar()->isHidden());
  EXPECT_TRUE(bench.area().verticalScrollBar()->isHidden() ||
              bench.area().verticalScrollBar()->maximum() == 0);
  bench.screenshot("film-strip");
}

TEST_F(ThumbnailLooks, TransparentPictureIsOnCheckers) {
  folder.add("clear.png", QColor(0, 0, 0, 0), {64, 64});
  open();
  const QImage shown = bench.grabPicture(0);
  const int side = static_cast<int>(std::lround(8 * factor()));
  const QColor one = shown.pixelColor(side / 2, side / 2);
  const QColor other = shown.pixelColor(side + side / 2, side / 2);
  EXPECT_NE(one, other);
  EXPECT_EQ(shown.pixelColor(side + side / 2, side + side / 2), one);
  EXPECT_EQ(shown.pixelColor(2 * side + side / 2, side / 2), one);
}

TEST_F(ThumbnailLooks, LongNameIsElidedInItsMiddle) {
  const std::string middle(120, 'm');
  folder.add("III" + middle + "LLL.png", Qt::gray);
  folder.add("III" + middle + "WWW.png", Qt::gray);
  folder.add("LLL" + middle + "WWW.png", Qt::gray);
  folder.add("x.png", Qt::gray);
  open();
  const Rectangle name = bench.view().placeOf(0).name;
  const QImage shown = bench.grab();
  const auto nameOf = [&](std::int32_t item) {
    const Rectangle place = bench.view().placeOf(item).name;
    return shown.copy(place.Left, place.Top, place.Width, place.Height);
  };
  EXPECT_NE(nameOf(0), nameOf(1)) << "they differ in their ends";
  EXPECT_NE(nameOf(1), nameOf(2)) << "they differ in their begins";
  const Rectangle cell = bench.view().placeOf(0).cell;
  const int outside = cell.Left + cell.Width;
  EXPECT_EQ(inkIn(shown, {outside, name.Top, 2, name.Height}), 0) << "no text beyond the cell";
}

TEST_F(ThumbnailLooks, NameIsAsWideAsItsCell) {
  folder.add(std::string(120, 'i') + ".png", Qt::gray);
  folder.add("x.png", Qt::gray);
  open();
  const thumbnails::ItemPlace place = bench.view().placeOf(0);
  const QImage shown = bench.grab();
  int first = place.cell.Width, last = 0;
  for (int x = 0; x < place.cell.Width; ++x) {
    if (inkIn(shown, {place.cell.Left + x, place.name.Top, 1, place.name.Height}) == 0) continue;
    first = std::min(first, x);
    last = x;
  }
  // 4 pixels are left free at each end.
  EXPECT_GT(last - first, place.picture.Width - static_cast<int>(8 * factor()));
  EXPECT_LT(last, place.cell.Width);
}

TEST_F(ThumbnailLooks, NameInTallerFontsIsShownAsAWhole) {
  const QString name = QStringLiteral("\u6F22\u5B57gjp.png");
  folder.add("a.png", Qt::gray);
  folder.add(name.toStdString(), Qt::gray);
  const double scale = factor();
  QFont font = bench.area().font();
  font.setPixelSize(20);
  bench.area().setFont(font);
  open();
  settle();
  font.setPixelSize(static_cast<int>(std::lround(20 * scale)));
  QTextLayout layout(name, font);
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();

  const Rectangle place = bench.view().placeOf(1).name;
  EXPECT_GE(place.Height, std::ceil(line.ascent()) + std::ceil(line.descent()));
  // The same rows have ink as where nothing limits them.
  QImage free(place.Width, 4 * place.Height, QImage::Format_RGB32);
  free.fill(bench.area().palette().color(QPalette::Base));
  {
    QPainter painter(&free);
    painter.setPen(bench.area().palette().color(QPalette::Text));
    layout.draw(&painter, QPointF(4, 2 * place.Height - line.ascent()));
  }
  const auto rowsWithInk = [](const QImage& image, const Rectangle& area) {
    int rows = 0;
    for (int y = area.Top; y < area.Top + area.Height; ++y) {
      rows += inkIn(image, {area.Left, y, area.Width, 1}) > 0;
    }
    return rows;
  };
  EXPECT_EQ(rowsWithInk(bench.grab(), place), rowsWithInk(free, {0, 0, free.width(), free.height()}));
  bench.screenshot("taller-names");
}

TEST_F(ThumbnailLooks, LowFilmStripHasSmallThumbnailsUnderALargePicture) {
  folder.addMany(1);
  folder.add("img2.png", Qt::blue, {1600, 1000});
  open(kViewFilmstrip);
  bench.click(1);
  bench.window().resize(700, 220);
  settle();
  ASSERT_TRUE(eventually([&] { return bench.view().largePicture().bitmap.width() > 128; }));
  const Rectangle large = bench.view().largePicture().target;
  EXPECT_GT(large.Height, 2 * bench.view().placeOf(1).picture.Height);
  EXPECT_EQ(at(bench.grab(), large), QColor(Qt::blue));
  EXPECT_EQ(at(bench.grab(), bench.view().placeOf(1).picture), QColor(Qt::blue)) << "in the row, too";
  bench.screenshot("low-film-strip");
}

TEST_F(ThumbnailLooks, BrokenFileHasASign) {
  folder.addBroken("broken.png");
  folder.add("good.png", Qt::red);
  open();
  ASSERT_EQ(bench.view().factsOf(0).state, thumbnails::ItemState::kBroken);
  const Rectangle box = bench.view().placeOf(0).picture;
  EXPECT_GT(inkIn(bench.grab(), box), 50);
  const Rectangle corner{box.Left, box.Top, box.Width / 8, box.Height / 8};
  EXPECT_EQ(inkIn(bench.grab(), corner), 0) << "a sign in the middle, not a picture";
}

TEST_F(ThumbnailLooks, SelectionHoverAndFocusAreVisible) {
  folder.addMany(3);
  open();
  bench.click(2);
  const auto edgeOf = [&](std::int32_t item) {
    const Rectangle cell = bench.view().placeOf(item).cell;
    return bench.grab().pixelColor(cell.Left + static_cast<int>(4 * factor()), cell.Top + cell.Height / 2);
  };
  const QPalette palette = bench.area().palette();
  const QColor base = palette.color(QPalette::Base);
  const QColor plain = edgeOf(1);
  EXPECT_EQ(plain, base);
  EXPECT_NE(edgeOf(2), base);
  const Rectangle name = bench.view().placeOf(2).name;
  const QImage shown = bench.grab();
  int highlighted = 0;
  for (int x = name.Left; x < name.Left + name.Width; ++x) {
    highlighted += shown.pixelColor(x, name.Top + name.Height / 2) == palette.color(QPalette::Highlight);
  }
  EXPECT_GT(highlighted, 10) << "around the name";

  bench.area().viewport()->setAttribute(Qt::WA_UnderMouse);
  QMouseEvent move(QEvent::MouseMove, QPointF(bench.middleOf(1)),
                   bench.window().mapToGlobal(QPointF(bench.middleOf(1))), Qt::NoButton, Qt::NoButton, {});
  QApplication::sendEvent(bench.window().windowHandle(), &move);
  EXPECT_EQ(bench.area().hoveredItem(), 1);
  EXPECT_NE(edgeOf(1), base);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(bench.area().viewport(), &leave);
  EXPECT_EQ(edgeOf(1), base);

  bench.key(Qt::Key_Left, Qt::ControlModifier);
  const Rectangle cell = bench.view().placeOf(1).cell;
  const QColor line = bench.grab().pixelColor(cell.Left + cell.Width / 2, cell.Top + 1);
  EXPECT_EQ(line, palette.color(QPalette::Highlight)) << "the frame of the focus";
}

TEST_F(ThumbnailLooks, FollowThePalette) {
  folder.addMany(2);
  open();
  bench.click(0);
  const QColor light = bench.grab().pixelColor(1, 1);
  {
    const Theme dark(darkPalette());
    settle();
    const QImage shown = bench.grab();
    EXPECT_EQ(shown.pixelColor(1, 1), darkPalette().color(QPalette::Base));
    const Rectangle name = bench.view().placeOf(1).name;
    int bright = 0;
    for (int y = name.Top; y < name.Top + name.Height; ++y) {
      for (int x = name.Left; x < name.Left + name.Width; ++x)
        bright += shown.pixelColor(x, y).lightness() > 150;
    }
    EXPECT_GT(bright, 10) << "the name is bright on dark";
    bench.screenshot("grid-dark");
  }
  settle();
  EXPECT_EQ(bench.grab().pixelColor(1, 1), light);
}

TEST_F(ThumbnailLooks, LargerFontNeedsTallerNames) {
  folder.addMany(2);
  open();
  const std::int32_t before = bench.view().placeOf(0).name.Height;
  QFont font = bench.area().font();
  font.setPointSizeF(font.pointSizeF() * 2);
  bench.area().setFont(font);
  settle();
  EXPECT_GT(bench.view().placeOf(0).name.Height, before * 3 / 2);
}

TEST_F(ThumbnailLooks, EmptyFolderShowsTheTextInSeveralLines) {
  bench.window().resize(260, 300);
  bench.view().EmptyText(
      "There are no image files to view in this location. Please select a different folder from the list to "
      "the left.");
  open();
  const QImage shown = bench.grab();
  int rows = 0;
  bool inText = false;
  for (int y = 0; y < shown.height(); ++y) {
    const bool text = inkIn(shown, {0, y, shown.width(), 1}) > 0;
    rows += text && !inText;
    inText = text;
  }
  EXPECT_GE(rows, 3);
  EXPECT_EQ(inkIn(shown, {0, 0, static_cast<int>(8 * factor()), shown.height()}), 0) << "a margin";
  bench.screenshot("empty");
}

TEST_F(ThumbnailLooks, WheelAndScrollBarMoveByPixels) {
  folder.addMany(60);
  open();
  const auto turn = [&](QPoint pixels, QPoint angle, Qt::ScrollPhase phase) {
    const QPointF at = bench.window().rect().center();
    QWheelEvent event(at, bench.window().mapToGlobal(at), pixels, angle, Qt::NoButton, Qt::NoModifier, phase,
                      false);
    QApplication::sendEvent(bench.window().windowHandle(), &event);
  };
  turn({0, -7}, {0, -28}, Qt::ScrollUpdate);
  EXPECT_EQ(bench.view().scroll(), static_cast<std::int64_t>(7 * factor()));
  settle();
  EXPECT_EQ(bench.area().verticalScrollBar()->value(), bench.view().scroll());

  bench.area().verticalScrollBar()->setValue(100);
  EXPECT_EQ(bench.view().scroll(), 100);

  turn({}, {0, -120}, Qt::NoScrollPhase);
  EXPECT_TRUE(eventually([&] { return bench.view().scroll() >= 100 + std::lround(100 * factor()); }))
      << "a notch";
  const std::int64_t one = bench.view().scroll();
  turn({}, {0, 120}, Qt::NoScrollPhase);
  EXPECT_TRUE(eventually([&] { return bench.view().scroll() < one; }));
}

TEST_F(ThumbnailLooks, ScrolledItemsAreWhereTheyWere) {
  folder.addMany(60);
  open();
  const QImage before = bench.grabPicture(bench.view().arrangement().columns());
  bench.view().scrollTo(31);
  settle();
  EXPECT_EQ(bench.grabPicture(bench.view().arrangement().columns()), before);
}

}  // namespace
}  // namespace kestrel::desktop
