// Position, pixel color and magnifier under a pointer that rests while the picture moves.

#include <gtest/gtest.h>

#include <QMouseEvent>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <cmath>

#include "EditorBench.h"
#include "imaging/contract/controls/Label.h"
#include "platform/qt/docking/PanelField.h"

namespace kestrel::desktop {
namespace {

class ReadOuts : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(noise(3000, 2500));
    bench.canvas().setFocus();
    pointAt({150, 120});
    expectTruth();
  }

  /// Moves the pointer as the window system reports it to the window.
  void pointAt(const QPoint& onCanvas) { pointInWindow(bench.canvas().mapTo(&bench.window(), onCanvas)); }
  void pointInWindow(const QPoint& at) {
    // A move to the same position of the screen is none, even in another window.
    for (const QPoint& place : {at + QPoint(1, 1), at}) {
      QTest::mouseMove(bench.window().windowHandle(), place);
    }
    pointer = at;
    settle();
  }
  void turnWheel(int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QPointF at = bench.canvas().mapFrom(&bench.window(), pointer);
    QWheelEvent event(at, bench.canvas().mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&bench.canvas(), &event);
    settle();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    pressKey(bench.window(), key, modifiers);
    settle();
  }

  QString position() {
    return bench.window().findChild<qt::PanelField*>(QStringLiteral("pnlPosition"))->text().trimmed();
  }
  QString size() { return bench.window().findChild<qt::PanelField*>(QStringLiteral("pnlSize"))->text(); }
  std::string color() {
    std::string result;
    for (int i = 0; i < 3; ++i) {
      result += Bind<Label>(bench.editor().MaterialsWindow()->Form(), "lblData", i).Caption() + ' ';
    }
    return result;
  }
  /// The color at the corner of the magnifier; transparent while it is clear.
  QColor magnified() {
    auto& form = static_cast<qt::QtForm&>(bench.editor().ZoomWindow()->Form());
    return form.window().face().pixelColor(1, 1);
  }
  /// The color that the screen shows under the pointer.
  QColor seen() {
    const QPointF corner =
        QPointF(bench.canvas().mapTo(&bench.window(), QPoint())) * bench.canvas().devicePixelRatioF();
    const QPointF at = bench.canvas().toView(bench.canvas().mapFrom(&bench.window(), QPointF(pointer)));
    return bench.grabWindow().pixelColor(
        static_cast<int>(std::lround(corner.x()) + std::lround(std::floor(at.x()))),
        static_cast<int>(std::lround(corner.y()) + std::lround(std::floor(at.y()))));
  }

  /// All read-outs are about the pixel that is visible under the pointer.
  void expectTruth() {
    const auto pixel = bench.view().PointerPixel();
    ASSERT_TRUE(pixel.has_value());
    EXPECT_EQ(position(), QStringLiteral("%1, %2").arg(pixel->X).arg(pixel->Y));
    const QColor shown = seen();
    EXPECT_EQ(color(), std::to_string(shown.red()) + ' ' + std::to_string(shown.green()) + ' ' +
                           std::to_string(shown.blue()) + ' ');
    EXPECT_EQ(magnified().alpha(), 255);
  }
  void expectNothing() {
    EXPECT_EQ(position(), "");
    EXPECT_EQ(color(), "   ");
    EXPECT_EQ(magnified().alpha(), 0);
  }

  EditorBench bench;
  QPoint pointer;
};

TEST_F(ReadOuts, FollowTheWheelTheKeysAndTheScrollBars) {
  turnWheel(-1);
  EXPECT_GT(bench.view().ScrollTop(), 0);
  expectTruth();
  press(Qt::Key_End);
  expectTruth();
  bench.view().surface().horizontalBar().setValue(77);
  settle();
  expectTruth();
}

TEST_F(ReadOuts, FollowTheZoomByWheelAndByKeys) {
  pressKey(bench.window(), Qt::Key_Plus, Qt::KeypadModifier, QStringLiteral("+"));
  settle();
  ASSERT_EQ(bench.view().Zoom(), 2.0);
  expectTruth();
  bench.screenshot("read-outs-zoomed");
  turnWheel(1, Qt::ControlModifier);
  ASSERT_EQ(bench.view().Zoom(), 3.0);
  expectTruth();
  press(Qt::Key_A, Qt::ControlModifier);
  ASSERT_EQ(bench.view().Zoom(), 1.0);
  expectTruth();
}

TEST_F(ReadOuts, AreEmptyWhenTheZoomTakesThePictureAwayOrThePointerLeavesIt) {
  bench.showPicture(noise(500, 400));
  const QPoint middle = bench.canvas().rect().center();
  const int reach = static_cast<int>(200 / bench.canvas().devicePixelRatioF());
  pointAt(middle - QPoint(reach, 0));
  expectTruth();
  for (int i = 0; i < 5; ++i) {
    pressKey(bench.window(), Qt::Key_Minus, Qt::KeypadModifier, QStringLiteral("-"));
  }
  settle();
  ASSERT_NEAR(bench.view().Zoom(), 0.5, 1e-6);
  expectNothing();
  pointAt(middle);
  EXPECT_NE(position(), "");
  pointAt(middle + QPoint(reach, 0));
  expectNothing();
}

TEST_F(ReadOuts, AreEmptyWhileThePointerIsOverABar) {
  auto* const bar = bench.window().findChild<QStatusBar*>();
  pointInWindow(bar->mapTo(&bench.window(), bar->rect().center()));
  expectNothing();
  press(Qt::Key_End);
  expectNothing();
  pointAt({150, 120});
  expectTruth();
}

TEST_F(ReadOuts, FollowRotationUndoAndRedo) {
  bench.moorage().click(bench.command("btnRotateRight"));
  settle();
  EXPECT_EQ(size(), "2500, 3000");
  expectTruth();
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(size(), "3000, 2500");
  expectTruth();
  bench.editor().Redo();
  settle();
  EXPECT_EQ(size(), "2500, 3000");
  expectTruth();
}

TEST_F(ReadOuts, FollowAnotherPicture) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("other.png"));
  noise(2000, 1800).mirrored(true, false).save(file);
  ASSERT_TRUE(bench.editor().OpenImage(file.toStdString()));
  settle();
  EXPECT_EQ(size(), "2000, 1800");
  expectTruth();
  bench.showPicture(noise(20, 20));
  expectNothing();
}

TEST_F(ReadOuts, FollowThePictureThatAStripOrABarMoves) {
  bench.view().Notice("A notice above the picture.", {});
  settle();
  expectTruth();
  bench.screenshot("read-outs-notice");
  bench.view().Notice({}, {});
  settle();
  expectTruth();
  bench.moorage().CommandBars()("Standard").Visible(false);
  bench.moorage().CommandBars()("Picture").Visible(false);
  settle();
  expectTruth();
}

TEST_F(ReadOuts, TheSizeIsThatOfTheSelectionWhileThereIsOne) {
  EXPECT_EQ(size(), "3000, 2500");
  bench.editor().SetSelection(10, 10, 40, 30);
  EXPECT_EQ(size(), "40, 30");
  bench.moorage().click(bench.command("btnRotateRight"));
  settle();
  EXPECT_EQ(size(), "3000, 2500") << "the rotated selection is removed";
}

}  // namespace
}  // namespace kestrel::desktop
