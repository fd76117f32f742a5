// Escape with any focus: one press ends a pending paste or crop.

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QPushButton>
#include <QTest>

#include "EditorBench.h"

namespace kestrel::desktop {
namespace {

class Escape : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(noise(400, 300));
    // The control gets the key first; a key that it used is 0 by now.
    typed = bench.widget().site()->KeyPress.Connect([this](std::int32_t&) { ++presses; });
  }

  void beginCrop() {
    bench.moorage().click(bench.command("btnImageCrop"));
    ASSERT_TRUE(isCropping());
  }
  void beginPaste() {
    bench.editor().Copy(false);
    bench.moorage().click(bench.command("btnEditPaste"));
    ASSERT_TRUE(isPasting());
  }
  bool isCropping() { return bench.command("btnImageCrop").Checked(); }
  bool isPasting() { return bench.command("btnEditPaste").Checked(); }

  QDockWidget& materials() { return *bench.window().findChild<QDockWidget*>(QStringLiteral("dkwMaterials")); }
  static QPushButton& swatch(const QDockWidget& dock) {
    return *dock.findChild<QPushButton*>(QStringLiteral("btnColors_0"));
  }

  EditorBench bench;
  int presses = 0;
  Connection typed;
};

TEST_F(Escape, ReachesCancelFromThePicture) {
  beginCrop();
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_FALSE(isCropping());
  EXPECT_EQ(presses, 1);
  EXPECT_TRUE(bench.window().isVisible());
}

TEST_F(Escape, ReachesCancelFromADockedToolWindow) {
  beginCrop();
  swatch(materials()).setFocus();
  ASSERT_EQ(QApplication::focusWidget(), &swatch(materials()));
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_FALSE(isCropping());
  EXPECT_EQ(presses, 1);
  EXPECT_TRUE(swatch(materials()).isVisible());
}

TEST_F(Escape, ReachesCancelFromAFloatingToolWindow) {
  beginCrop();
  materials().setFloating(true);
  settle();
  QApplication::setActiveWindow(&materials());
  swatch(materials()).setFocus();
  ASSERT_EQ(QApplication::focusWidget(), &swatch(materials()));
  pressKey(materials(), Qt::Key_Escape);
  EXPECT_FALSE(isCropping());
  EXPECT_EQ(presses, 1);
  EXPECT_TRUE(materials().isVisible());
}

TEST_F(Escape, ReachesCancelFromTheComboOfAToolBar) {
  bench.editor().Tool(ipToolZoom);  // shows the bar
  settle();
  bench.canvas().setFocus();
  bench.window().findChild<QComboBox*>(QStringLiteral("cboZoom"))->setFocus();
  const QWidget* const field = QApplication::focusWidget();
  ASSERT_NE(field, &bench.canvas());
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(QApplication::focusWidget(), &bench.canvas());
}

TEST_F(Escape, ReachesCancelFromTheNoticeThatItCloses) {
  beginCrop();
  bench.view().Notice("The picture was damaged.", "Repair");
  settle();
  bench.view().surface().notice().findChild<QPushButton*>(QStringLiteral("noticeButton"))->setFocus();
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_FALSE(bench.view().surface().notice().isVisible());
  EXPECT_FALSE(isCropping());
  EXPECT_EQ(presses, 1);
}

TEST_F(Escape, DuringADragEndsDragAndCropWithOnePress) {
  beginCrop();
  QTest::mousePress(&bench.canvas(), Qt::LeftButton, {}, QPoint(300, 200));
  QTest::mouseMove(&bench.canvas(), QPoint(340, 240));
  ASSERT_TRUE(bench.view().SelectionVisible());
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_FALSE(isCropping());
  EXPECT_FALSE(bench.view().SelectionVisible());
  EXPECT_EQ(presses, 1);
  QTest::mouseRelease(&bench.canvas(), Qt::LeftButton, {}, QPoint(340, 240));
  EXPECT_FALSE(bench.view().SelectionVisible());
  EXPECT_EQ(bench.editor().Image()->Width(), 400);
}

TEST_F(Escape, DuringADragOfAFloatingPasteDiscardsIt) {
  beginPaste();
  bench.view().Modified(false);
  // The paste floats at the top left corner of the view.
  QTest::mousePress(&bench.canvas(), Qt::LeftButton, {}, QPoint(60, 60));
  QTest::mouseMove(&bench.canvas(), QPoint(90, 90));
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_FALSE(isPasting());
  EXPECT_FALSE(bench.view().SelectionVisible());
  QTest::mouseRelease(&bench.canvas(), Qt::LeftButton, {}, QPoint(90, 90));
  EXPECT_FALSE(bench.view().Modified()) << "nothing was pasted";
}

}  // namespace
}  // namespace kestrel::desktop
