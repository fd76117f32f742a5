#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QTest>
#include <cmath>

#include "EditorBench.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/controls/Label.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

/// The magnifier with the real view. The tests read the pixels of its window.
class MagnifierOnTheDesktop : public testing::Test {
 protected:
  frmZoom& magnifier() { return *bench.editor().ZoomWindow(); }
  qt::FormWindow& window() { return static_cast<qt::QtForm&>(magnifier().Form()).window(); }
  double factor() { return bench.canvas().devicePixelRatioF(); }

  void movePointerTo(const QPointF& at) {
    QMouseEvent move(QEvent::MouseMove, at, bench.canvas().mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&bench.canvas(), &move);
  }
  /// The position of a picture pixel on the canvas.
  QPoint positionOf(int x, int y) {
    const double column = (x - bench.view().ScrollLeft() + 1) / factor();
    const double row = (y - bench.view().ScrollTop() + 1) / factor();
    return {static_cast<int>(std::ceil(column)), static_cast<int>(std::ceil(row))};
  }
  /// The color of the magnifier at a position in its own pixels.
  QColor face(int x, int y) {
    const auto device = [this](int position) { return static_cast<int>((position + 0.5) * factor()); };
    return window().face().pixelColor(device(x), device(y));
  }
  bool isGround(const QColor& color) {
    const auto options = modProcessing::GetOptions();
    return color.alpha() == 255 && (color.rgb() == rgbOf(options->BackgroundGridColor1()) ||
                                    color.rgb() == rgbOf(options->BackgroundGridColor2()));
  }
  static QRgb rgbOf(OLE_COLOR color) { return qRgb(color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF); }

  /// The center of the cell next to the marked one, and the picture pixel that it shows.
  struct Cell {
    int x, y;
    int pixelX, pixelY;
  };
  Cell cellRightOfTheMark(Point pixel) {
    const int level = magnifier().ZoomLevel();
    const int wide = window().width() / level, high = window().height() / level;
    const auto middleOf = [level](int cell, int cells) {
      return static_cast<int>((cell + 0.5) * (cells + 1) * level / cells);
    };
    return {middleOf(wide / 2 + 1, wide), middleOf(high / 2, high), pixel.X + 1, pixel.Y};
  }
  void expectShows(const QImage& picture, Point pixel) {
    const Cell cell = cellRightOfTheMark(pixel);
    EXPECT_EQ(face(cell.x, cell.y).rgb(), picture.pixelColor(cell.pixelX, cell.pixelY).rgb())
        << "around " << pixel.X << ", " << pixel.Y;
  }
  /// The corner of the mark's box.
  QPoint mark() {
    const int level = magnifier().ZoomLevel();
    const auto corner = [level](int size) {
      return static_cast<int>(std::nearbyint(size / level / 2 * level - level / 2.0));
    };
    return {corner(window().width()), corner(window().height())};
  }

  EditorBench bench;
};

TEST_F(MagnifierOnTheDesktop, ShowsThePixelUnderThePointer) {
  const QImage picture = noise(4000, 4000);
  bench.showPicture(picture);
  movePointerTo({60, 50});
  const auto pixel = bench.view().PointerPixel();
  ASSERT_TRUE(pixel.has_value());
  EXPECT_NEAR(pixel->X, 60 * factor(), 1.5);
  expectShows(picture, *pixel);
}

TEST_F(MagnifierOnTheDesktop, RedrawnAtThePointerItFindsTheSamePixel) {
  const QImage picture = noise(4000, 4000);
  bench.showPicture(picture);
  const QPoint at(80, 70);
  QCursor::setPos(bench.canvas().mapToGlobal(at));
  movePointerTo(at);
  magnifier().ClearZoomWindow();
  magnifier().ZoomLevel(12);
  // View positions include the border line around the picture.
  const QPoint place = bench.canvas().toView(QPointF(at)).toPoint();
  expectShows(picture, {place.x(), place.y()});
}

TEST_F(MagnifierOnTheDesktop, RedrawnAtThePointerItFindsEachDevicePixel) {
  const QImage picture = noise(4000, 4000);
  bench.showPicture(picture);
  // The next device pixel to the right and below, which has no integer screen position at factor 2.
  const QPointF at(80 + 1 / factor(), 70 + 1 / factor());
  QCursor::setPos(bench.canvas().mapToGlobal(at).toPoint());
  settle();
  movePointerTo(at);
  magnifier().ClearZoomWindow();
  magnifier().ZoomLevel(12);
  const Point first = {bench.canvas().toView(QPointF(80, 70)).toPoint().x(),
                       bench.canvas().toView(QPointF(80, 70)).toPoint().y()};
  expectShows(picture, {first.X + 1, first.Y + 1});
}

TEST_F(MagnifierOnTheDesktop, HiddenItDrawsNothing) {
  bench.showPicture(noise(400, 300));
  bench.moorage().DockWindows()("dkwZoom").Visible(false);
  magnifier().ClearZoomWindow();
  movePointerTo(positionOf(50, 50));
  EXPECT_EQ(face(1, 1).alpha(), 0);
  bench.moorage().DockWindows()("dkwZoom").Visible(true);
  settle();
  movePointerTo(positionOf(51, 50));
  EXPECT_EQ(face(1, 1).alpha(), 255);
}

TEST_F(MagnifierOnTheDesktop, ThePointerLeavingTheViewClearsItAndTheReadOuts) {
  bench.showPicture(noise(400, 300));
  movePointerTo(positionOf(50, 50));
  EXPECT_EQ(face(1, 1).alpha(), 255);
  EXPECT_NE(Bind<Label>(bench.editor().MaterialsWindow()->Form(), "lblData", 2).Caption(), "");
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&bench.canvas(), &leave);
  EXPECT_EQ(face(1, 1).alpha(), 0);
  EXPECT_EQ(Bind<Label>(bench.editor().MaterialsWindow()->Form(), "lblData", 2).Caption(), "");
}

TEST_F(MagnifierOnTheDesktop, ShowsTheCheckerboardBehindAlphaAndBeyondTheEdge) {
  QImage picture(100, 100, QImage::Format_RGBA8888);
  picture.fill(QColor(255, 0, 0, 0));
  bench.showPicture(picture);
  movePointerTo(positionOf(50, 50));
  ASSERT_TRUE(bench.view().PointerPixel().has_value());
  const Cell cell = cellRightOfTheMark(*bench.view().PointerPixel());
  EXPECT_TRUE(isGround(face(cell.x, cell.y))) << face(cell.x, cell.y).name(QColor::HexArgb).toStdString();

  bench.showPicture(noise(100, 100));
  movePointerTo(positionOf(50, 50));
  EXPECT_FALSE(isGround(face(1, 1)));
  movePointerTo(positionOf(1, 1));
  EXPECT_TRUE(isGround(face(1, 1))) << "beyond the edge nothing of the last picture is left";
}

TEST_F(MagnifierOnTheDesktop, TheMarkShowsOnEveryMove) {
  QImage picture(100, 100, QImage::Format_RGBA8888);
  picture.fill(Qt::transparent);
  bench.showPicture(picture);
  for (int move = 0; move < 4; ++move) {
    movePointerTo(positionOf(50 + move / 2, 50));
    EXPECT_FALSE(isGround(face(mark().x(), mark().y()))) << "after move " << move;
  }
}

TEST_F(MagnifierOnTheDesktop, FollowsAChangedPictureWithItsReadOuts) {
  const QImage picture = noise(4000, 4000);
  bench.showPicture(picture);
  movePointerTo({60, 50});
  const Point pixel = *bench.view().PointerPixel();
  bench.editor().FlipHorizontally();
  expectShows(picture.mirrored(true, false), pixel);
  const auto red = Bind<Label>(bench.editor().MaterialsWindow()->Form(), "lblData", 0).Caption();
  EXPECT_EQ(red, std::to_string(picture.pixelColor(3999 - pixel.X, pixel.Y).red()));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
  settle();
  expectShows(picture, pixel);
}

}  // namespace
}  // namespace kestrel::desktop
