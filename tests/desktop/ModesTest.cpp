#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "EditorBench.h"
#include "imaging/contract/Image.h"

namespace kestrel::desktop {
namespace {

/// Keys during a floating paste or a pending crop.
class ModesOnTheDesktop : public testing::Test {
 protected:
  ModesOnTheDesktop() {
    bench.showPicture(noise(400, 300));
    bench.canvas().setFocus();
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    settle();
  }
  QColor shownAt(const QPoint& device) {
    const double factor = bench.canvas().devicePixelRatioF();
    const QPointF origin = QPointF(bench.canvas().mapTo(&bench.window(), QPoint())) * factor;
    return bench.grabWindow().pixelColor(origin.toPoint() + device);
  }
  OLE_COLOR corner() { return bench.view().Image()->GetPixel(0, 0).Value(); }

  EditorBench bench;
};

TEST_F(ModesOnTheDesktop, AFloatingPasteDisablesFlipUntilEscape) {
  bench.editor().Copy(false);
  key(Qt::Key_V, Qt::ControlModifier);
  ASSERT_TRUE(bench.command("btnEditPaste").Checked());
  const OLE_COLOR before = corner();
  key(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(corner(), before);
  key(Qt::Key_Escape);
  EXPECT_FALSE(bench.command("btnEditPaste").Checked());
  key(Qt::Key_I, Qt::ControlModifier);
  EXPECT_NE(corner(), before);
}

TEST_F(ModesOnTheDesktop, TheFloatingImageFollowsTheDrag) {
  QImage red(400, 300, QImage::Format_RGBA8888);
  red.fill(Qt::red);
  bench.showPicture(red);
  bench.editor().Copy(false);
  bench.showPicture(noise(4000, 3000));
  key(Qt::Key_V, Qt::ControlModifier);
  ASSERT_TRUE(bench.command("btnEditPaste").Checked());
  const double factor = bench.canvas().devicePixelRatioF();
  const QPoint left((QPointF(20, 15) * factor).toPoint());
  const QPoint reached(QPoint(400, 150) + (QPointF(20, 30) * factor).toPoint());
  ASSERT_EQ(shownAt(left), QColor(Qt::red));
  ASSERT_NE(shownAt(reached), QColor(Qt::red));

  const QPoint from(60, 60), to(100, 90);
  QTest::mousePress(&bench.canvas(), Qt::LeftButton, {}, from);
  QTest::mouseMove(&bench.canvas(), (from + to) / 2);
  QTest::mouseMove(&bench.canvas(), to);
  EXPECT_NE(shownAt(left), QColor(Qt::red)) << "the old position shows the picture again";
  EXPECT_EQ(shownAt(reached), QColor(Qt::red));
  QTest::mouseRelease(&bench.canvas(), Qt::LeftButton, {}, to);
}

TEST_F(ModesOnTheDesktop, APendingCropDisablesFlipUntilTheRectangleIsDrawn) {
  bench.moorage().CommandClick(bench.command("btnImageCrop"));
  ASSERT_TRUE(bench.command("btnImageCrop").Checked());
  const OLE_COLOR before = corner();
  key(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(corner(), before);
  const QPoint middle = bench.canvas().rect().center();
  QTest::mousePress(&bench.canvas(), Qt::LeftButton, {}, middle);
  QTest::mouseMove(&bench.canvas(), middle + QPoint(20, 10));
  QTest::mouseMove(&bench.canvas(), middle + QPoint(40, 30));
  QTest::mouseRelease(&bench.canvas(), Qt::LeftButton, {}, middle + QPoint(40, 30));
  settle();
  EXPECT_FALSE(bench.command("btnImageCrop").Checked());
  EXPECT_LT(bench.view().Image()->Width(), 200);
  EXPECT_TRUE(bench.command("btnImageFlip").Enabled());
  const std::string size = bench.moorage().StatusPanel("pnlSize").Caption();
  EXPECT_EQ(size, std::to_string(bench.view().Image()->Width()) + ", " +
                      std::to_string(bench.view().Image()->Height()));
}

}  // namespace
}  // namespace kestrel::desktop
