// The zoom field after a click into it: a text field.

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QEnterEvent>
#include <QLineEdit>
#include <QTest>
#include <QWindow>
#include <vector>

#include "EditorBench.h"
#include "imaging/contract/Image.h"
#include "platform/qt/docking/PanelField.h"

namespace kestrel::desktop {
namespace {

class ClickedZoomField : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(noise(400, 300));
    bench.editor().Tool(ipToolZoom);
    settle();
    combo = bench.window().findChild<QComboBox*>(QStringLiteral("cboZoom"));
    clicks =
        bench.moorage().CommandClick.Connect([this](Command& command) { clicked += command.Name() + ' '; });
    QLineEdit& edit = *combo->lineEdit();
    QTest::mouseClick(bench.window().windowHandle(), Qt::LeftButton, {},
                      edit.mapTo(&bench.window(), edit.rect().center()));
    settle();
  }

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    pressKey(bench.window(), key, modifiers);
    settle();
  }
  void type(const QString& text) {
    for (const QChar character : text) QTest::keyClick(bench.window().windowHandle(), character.toLatin1());
    settle();
  }

  /// Opens the list by the key, and presses a key in it.
  void pressInList(const std::vector<Qt::Key>& keys) {
    press(Qt::Key_Down, Qt::AltModifier);
    for (const Qt::Key key : keys) {
      ASSERT_NE(QApplication::activePopupWidget(), nullptr);
      QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), key);
      settle();
    }
  }

  EditorBench bench;
  QComboBox* combo = nullptr;
  std::string clicked;
  Connection clicks;
};

TEST_F(ClickedZoomField, KeepsItsEditingKeys) {
  press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(combo->lineEdit()->selectedText(), "1:1");
  press(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(combo->currentText(), "");
  EXPECT_EQ(QApplication::clipboard()->text(), "1:1");
  type(QStringLiteral("slr"));
  EXPECT_EQ(combo->currentText(), "slr");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_NE(combo->currentText(), "slr");
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(combo->currentText(), "1:1");
  press(Qt::Key_C, Qt::ControlModifier);
  press(Qt::Key_Backspace);
  EXPECT_EQ(combo->currentText(), "1:");
  EXPECT_EQ(clicked, "");
  EXPECT_EQ(bench.editor().Tool(), ipToolZoom);
  EXPECT_EQ(bench.view().Zoom(), 1.0);
  EXPECT_EQ(bench.view().Image()->Width(), 400);
}

TEST_F(ClickedZoomField, ConfirmsALevelThatIsNotInTheList) {
  press(Qt::Key_A, Qt::ControlModifier);
  type(QStringLiteral("3.3:1"));
  bench.screenshot("zoom-field");
  press(Qt::Key_Return);
  EXPECT_FLOAT_EQ(static_cast<float>(bench.view().Zoom()), 3.3F);
  EXPECT_EQ(QApplication::focusWidget(), &bench.canvas());
}

TEST_F(ClickedZoomField, ConfirmsALevelBelowOneWithEitherEnterKey) {
  press(Qt::Key_A, Qt::ControlModifier);
  type(QStringLiteral(".5:1"));
  press(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(bench.view().Zoom(), 0.5);
  EXPECT_EQ(combo->currentText(), ".5:1");
}

TEST_F(ClickedZoomField, GivesTheFocusBackAfterAChoiceInItsList) {
  pressInList({Qt::Key_Down, Qt::Key_Return});
  EXPECT_EQ(bench.view().Zoom(), 2.0);
  EXPECT_EQ(QApplication::focusWidget(), &bench.canvas());
}

TEST_F(ClickedZoomField, HasNoHintAfterItsListWasClosedWithThePointerOverThePicture) {
  const auto* const hint = bench.window().findChild<qt::PanelField*>(QStringLiteral("pnlStatus"));
  const QPointF middle = combo->rect().center();
  QEnterEvent enter(middle, combo->mapTo(&bench.window(), middle), combo->mapToGlobal(middle));
  QApplication::sendEvent(combo, &enter);
  ASSERT_EQ(hint->text(), "Allows you to set a zoom level") << "the pointer is over the field";
  QCursor::setPos(bench.canvas().mapToGlobal(bench.canvas().rect().center()));
  pressInList({Qt::Key_Escape});
  EXPECT_EQ(hint->text(), "");
}

}  // namespace
}  // namespace kestrel::desktop
