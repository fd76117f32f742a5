#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <cmath>

#include "EditorBench.h"
#include "imaging/contract/Image.h"

namespace kestrel::desktop {
namespace {

class ViewOnTheDesktop : public testing::Test {
 protected:
  double factor() { return bench.canvas().devicePixelRatioF(); }

  /// A grab of the canvas in device pixels.
  QImage shown() {
    const QPointF corner = QPointF(bench.canvas().mapTo(&bench.window(), QPoint())) * factor();
    const QPoint rounded(static_cast<int>(std::lround(corner.x())),
                         static_cast<int>(std::lround(corner.y())));
    return bench.grabWindow().copy(QRect(rounded, bench.canvas().deviceSize()));
  }

  void wheel(const QPointF& at, const QPoint& angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWheelEvent event(at, bench.canvas().mapToGlobal(at), QPoint(), angle, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&bench.canvas(), &event);
    settle();
  }

  void drag(Qt::MouseButton button, const QPoint& from, const QPoint& to) {
    QTest::mousePress(&bench.canvas(), button, {}, from);
    QTest::mouseMove(&bench.canvas(), (from + to) / 2);
    QMouseEvent move(QEvent::MouseMove, QPointF(to), bench.canvas().mapToGlobal(QPointF(to)), Qt::NoButton,
                     button, Qt::NoModifier);
    QApplication::sendEvent(&bench.canvas(), &move);
    QTest::mouseRelease(&bench.canvas(), button, {}, to);
  }

  EditorBench bench;
};

TEST_F(ViewOnTheDesktop, ShowsOnePicturePixelAsOneDevicePixelAtZoom1) {
  const QImage picture = noise(150, 100);
  bench.showPicture(picture);
  const QImage canvas = shown();
  const int left = -bench.view().ScrollLeft();
  const int top = -bench.view().ScrollTop();
  ASSERT_GT(left, 0);
  ASSERT_GT(top, 0);
  int wrong = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      // The border line around the picture is one pixel wide.
      if (canvas.pixelColor(left + 1 + x, top + 1 + y).rgb() != picture.pixelColor(x, y).rgb()) ++wrong;
    }
  }
  EXPECT_EQ(wrong, 0);
}

TEST_F(ViewOnTheDesktop, HasItsSizeInDevicePixels) {
  const QSize size = bench.canvas().deviceSize();
  EXPECT_NEAR(size.width(), bench.canvas().width() * factor(), 1.0);
  EXPECT_NEAR(size.height(), bench.canvas().height() * factor(), 1.0);
}

TEST_F(ViewOnTheDesktop, ShowsScrollBarsOnlyIfThePictureIsLarger) {
  qt::ImageSurface& surface = bench.view().surface();
  bench.showPicture(noise(100, 100));
  EXPECT_FALSE(surface.horizontalBar().isVisible());
  EXPECT_FALSE(surface.verticalBar().isVisible());

  bench.showPicture(noise(100, 5000));
  EXPECT_FALSE(surface.horizontalBar().isVisible());
  EXPECT_TRUE(surface.verticalBar().isVisible());

  // As high as the view without bars, but the horizontal bar takes some of it.
  const int high = static_cast<int>(surface.height() * factor()) - 4;
  bench.showPicture(noise(6000, high));
  EXPECT_TRUE(surface.horizontalBar().isVisible());
  EXPECT_TRUE(surface.verticalBar().isVisible());

  bench.showPicture(noise(100, high));
  EXPECT_FALSE(surface.horizontalBar().isVisible());
  EXPECT_FALSE(surface.verticalBar().isVisible());
}

TEST_F(ViewOnTheDesktop, TheScrollBarsScroll) {
  bench.showPicture(noise(4000, 4000));
  bench.view().surface().verticalBar().setValue(700);
  bench.view().surface().horizontalBar().setValue(300);
  EXPECT_EQ(bench.view().ScrollTop(), 700);
  EXPECT_EQ(bench.view().ScrollLeft(), 300);
  bench.view().ScrollTop(50);
  EXPECT_EQ(bench.view().surface().verticalBar().value(), 50);
}

TEST_F(ViewOnTheDesktop, TheWheelScrollsAndWithShiftSideways) {
  bench.showPicture(noise(4000, 4000));
  wheel({50, 50}, {0, -120});
  EXPECT_GT(bench.view().ScrollTop(), 0);
  EXPECT_EQ(bench.view().ScrollLeft(), 0);
  const int top = bench.view().ScrollTop();
  wheel({50, 50}, {0, -120}, Qt::ShiftModifier);
  EXPECT_EQ(bench.view().ScrollTop(), top);
  EXPECT_GT(bench.view().ScrollLeft(), 0);
}

TEST_F(ViewOnTheDesktop, CtrlAndWheelZoomAboutThePixelUnderThePointer) {
  bench.showPicture(noise(4000, 4000));
  bench.view().ScrollLeft(1000);
  bench.view().ScrollTop(800);
  settle();
  const QPointF pointer(200, 150);
  const auto columnUnderPointer = [&] {
    return (bench.view().ScrollLeft() * bench.view().Zoom() + pointer.x() * factor()) / bench.view().Zoom();
  };
  const auto rowUnderPointer = [&] {
    return (bench.view().ScrollTop() * bench.view().Zoom() + pointer.y() * factor()) / bench.view().Zoom();
  };
  const double column = columnUnderPointer();
  const double row = rowUnderPointer();
  wheel(pointer, {0, 120}, Qt::ControlModifier);
  EXPECT_EQ(bench.view().Zoom(), 2.0);
  EXPECT_NEAR(columnUnderPointer(), column, 1.5);
  EXPECT_NEAR(rowUnderPointer(), row, 1.5);
  wheel(pointer, {0, -120}, Qt::ControlModifier);
  EXPECT_EQ(bench.view().Zoom(), 1.0);
  EXPECT_NEAR(columnUnderPointer(), column, 2.0);
  EXPECT_NEAR(rowUnderPointer(), row, 2.0);
}

TEST_F(ViewOnTheDesktop, TheMiddleButtonPans) {
  bench.showPicture(noise(4000, 4000));
  drag(Qt::MiddleButton, {300, 200}, {220, 150});
  EXPECT_EQ(bench.view().ScrollLeft(), static_cast<int>(80 * factor()));
  EXPECT_EQ(bench.view().ScrollTop(), static_cast<int>(50 * factor()));
}

TEST_F(ViewOnTheDesktop, TheMiddleButtonPansAndDoesNothingElse) {
  bench.showPicture(noise(4000, 4000));
  bench.editor().Tool(ipToolDropper);
  const OLE_COLOR before = bench.editor().ForeColor();
  drag(Qt::MiddleButton, {300, 200}, {220, 150});
  QTest::mouseClick(&bench.canvas(), Qt::MiddleButton, {}, QPoint(90, 70));
  EXPECT_EQ(bench.editor().ForeColor(), before) << "the dropper uses the left button";

  bench.editor().Copy(false);
  bench.moorage().click(bench.command("btnEditPaste"));
  bench.view().SetSelectionRect(0, 0, 10, 10);
  drag(Qt::MiddleButton, {300, 200}, {220, 150});
  EXPECT_TRUE(bench.command("btnEditPaste").Checked()) << "the paste still floats";
}

TEST_F(ViewOnTheDesktop, ATouchpadMovesThePictureWithTheFingers) {
  bench.showPicture(noise(4000, 4000));
  QWheelEvent event(QPointF(50, 50), bench.canvas().mapToGlobal(QPointF(50, 50)), QPoint(-30, -20),
                    QPoint(-60, -40), Qt::NoButton, Qt::NoModifier, Qt::ScrollUpdate, false);
  QApplication::sendEvent(&bench.canvas(), &event);
  EXPECT_EQ(bench.view().ScrollLeft(), static_cast<int>(30 * factor()));
  EXPECT_EQ(bench.view().ScrollTop(), static_cast<int>(20 * factor()));
}

TEST_F(ViewOnTheDesktop, PositionsAreDevicePixels) {
  bench.showPicture(noise(4000, 4000));
  float x = -1;
  float y = -1;
  const Connection connection =
      bench.view().MouseDown.Connect([&](std::int32_t, std::int32_t, float atX, float atY) {
        x = atX;
        y = atY;
      });
  QTest::mouseClick(&bench.canvas(), Qt::LeftButton, {}, QPoint(100, 60));
  EXPECT_NEAR(x, 100 * factor(), 0.51);
  EXPECT_NEAR(y, 60 * factor(), 0.51);
}

TEST_F(ViewOnTheDesktop, ADragWithTheSelectToolSelects) {
  bench.showPicture(noise(4000, 4000));
  drag(Qt::LeftButton, {40, 30}, {140, 90});
  EXPECT_TRUE(bench.view().SelectionVisible());
  EXPECT_NEAR(bench.view().SelectionWidth(), 100 * factor(), 1.5);
  EXPECT_NEAR(bench.view().SelectionHeight(), 60 * factor(), 1.5);
}

TEST_F(ViewOnTheDesktop, AClickWithTheZoomToolZoomsInAndWithShiftOut) {
  bench.showPicture(noise(400, 300));
  bench.editor().Tool(ipToolZoom);
  settle();
  const auto click = [this](Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(bench.window().windowHandle(), Qt::LeftButton, modifiers,
                      bench.canvas().mapTo(&bench.window(), bench.canvas().rect().center()));
  };
  click({});
  EXPECT_EQ(bench.view().Zoom(), 2.0);
  click(Qt::ShiftModifier);
  EXPECT_EQ(bench.view().Zoom(), 1.0);
}

TEST_F(ViewOnTheDesktop, TheZoomToolHasItsOwnPointer) {
  bench.showPicture(noise(4000, 4000));
  bench.editor().Tool(ipToolZoom);
  const QPointF at(60, 60);
  QMouseEvent move(QEvent::MouseMove, at, bench.canvas().mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                   Qt::NoModifier);
  QApplication::sendEvent(&bench.canvas(), &move);
  EXPECT_EQ(bench.view().MousePointer(), kPointerCustom);
  EXPECT_EQ(bench.canvas().cursor().shape(), Qt::BitmapCursor);
}

}  // namespace
}  // namespace kestrel::desktop
