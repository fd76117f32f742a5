// Two editors and the host's own widgets in one window: which of them gets a key.

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QHBoxLayout>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include "HostBench.h"

namespace kestrel::desktop {
namespace {

class SideBySide : public testing::Test {
 protected:
  SideBySide() {
    for (QWidget* const widget : std::initializer_list<QWidget*>{line, list, number, choice, notes, tick}) {
      bench.add(*widget);
    }
    list->addItems({QStringLiteral("Lion"), QStringLiteral("Seal")});
    choice->setEditable(true);
    bench.show();
  }

  void focus(QWidget& widget) {
    widget.setFocus();
    ASSERT_TRUE(QApplication::focusWidget() == &widget || widget.isAncestorOf(QApplication::focusWidget()));
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { pressKey(bench.window(), key, modifiers); }
  /// The clicked commands of both editors, the left one's first.
  std::string clicked() { return left.takeClicked() + "| " + right.takeClicked(); }

  HostBench bench;
  HostedEditor& left = bench.addEditor();
  HostedEditor& right = bench.addEditor();
  QLineEdit* const line = new QLineEdit;
  QListWidget* const list = new QListWidget;
  QSpinBox* const number = new QSpinBox;
  QComboBox* const choice = new QComboBox;
  QPlainTextEdit* const notes = new QPlainTextEdit;
  QCheckBox* const tick = new QCheckBox;
};

TEST_F(SideBySide, AHotKeyReachesTheEditorThatHasTheFocusAndNoOther) {
  focus(left.canvas());
  press(Qt::Key_I, Qt::ControlModifier);
  press(Qt::Key_L);
  EXPECT_EQ(clicked(), "btnImageFlip btnDrawLine | ");
  focus(right.canvas());
  press(Qt::Key_M, Qt::ControlModifier);
  press(Qt::Key_B);
  EXPECT_EQ(clicked(), "| btnImageMirror btnDrawFreehand ");
  EXPECT_EQ(left.control().Tool(), ipToolLine);
  EXPECT_EQ(right.control().Tool(), ipToolFreehand);
}

TEST_F(SideBySide, NoHotKeyReachesAnEditorWhileAWidgetOfTheHostHasTheFocus) {
  for (QWidget* const widget : std::initializer_list<QWidget*>{line, list, number, choice, notes, tick}) {
    focus(*widget);
    press(Qt::Key_S, Qt::ControlModifier);
    press(Qt::Key_I, Qt::ControlModifier);
    press(Qt::Key_F9);
    press(Qt::Key_L);
    EXPECT_EQ(clicked(), "| ") << widget->metaObject()->className();
  }
  EXPECT_EQ(line->text(), "l");
  EXPECT_EQ(notes->toPlainText(), "l");
  EXPECT_EQ(choice->currentText(), "l");
  EXPECT_EQ(list->currentItem()->text(), "Lion");
}

TEST_F(SideBySide, ADisabledEditorGetsNoHotKey) {
  focus(left.canvas());
  left.widget().setEnabled(false);
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked(), "| ");
  left.widget().setEnabled(true);
  focus(left.canvas());
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked(), "btnImageFlip | ");
}

TEST_F(SideBySide, AFloatingDockWindowsKeysReachItsOwnEditor) {
  for (HostedEditor* const editor : {&left, &right}) {
    auto* const dock = editor->widget().findChild<QDockWidget*>(QStringLiteral("dkwMaterials"));
    dock->setFloating(true);
    settle();
    QApplication::setActiveWindow(dock);
    focus(*dock->findChild<QPushButton*>(QStringLiteral("btnColors_0")));
    pressKey(*dock, Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(clicked(), editor == &left ? "btnImageFlip | " : "| btnImageFlip ");
  }
}

TEST_F(SideBySide, KeysOfAWindowWithoutAFocusReachNoEditor) {
  focus(left.canvas());
  left.canvas().clearFocus();
  ASSERT_EQ(QApplication::focusWidget(), nullptr);
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked(), "| ");
}

TEST_F(SideBySide, TheEditorWithTheFocusComesBeforeTheShortcutsOfTheHost) {
  int triggered = 0;
  QAction save;
  save.setShortcut(Qt::CTRL | Qt::Key_I);
  QObject::connect(&save, &QAction::triggered, &save, [&] { ++triggered; });
  bench.window().addAction(&save);

  focus(left.canvas());
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked(), "btnImageFlip | ");
  EXPECT_EQ(triggered, 0);
  focus(*list);
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(triggered, 1);
  // A key that the editor does not use goes to the host.
  left.moorage().Commands().Item("btnImageFlip").Enabled(false);
  focus(left.canvas());
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(triggered, 2);
  EXPECT_EQ(clicked(), "| ");
}

TEST_F(SideBySide, EscapeCancelsOnlyInTheEditorThatHasTheFocus) {
  for (HostedEditor* const editor : {&left, &right}) {
    editor->moorage().click(editor->moorage().Commands().Item("btnImageCrop"));
    ASSERT_TRUE(editor->moorage().Commands().Item("btnImageCrop").Checked());
  }
  focus(right.canvas());
  press(Qt::Key_Escape);
  EXPECT_TRUE(left.moorage().Commands().Item("btnImageCrop").Checked());
  EXPECT_FALSE(right.moorage().Commands().Item("btnImageCrop").Checked());
  focus(*line);
  press(Qt::Key_Escape);
  EXPECT_TRUE(left.moorage().Commands().Item("btnImageCrop").Checked());
}

/// An editor in a dialog of a host, which Escape closes.
class InADialogOfTheHost : public testing::Test {
 protected:
  InADialogOfTheHost() {
    row.addWidget(&editor.widget());
    dialog.resize(1000, 600);
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    editor.canvas().setFocus();
    settle();
  }

  docking::CommandModel& command(const std::string& key) { return editor.moorage().Commands().Item(key); }
  void click(const std::string& key) { editor.moorage().click(command(key)); }
  void pressEscape() { pressKey(dialog, Qt::Key_Escape); }

  HostBench bench;
  QDialog dialog;
  HostedEditor editor{bench.platform(), dialog};
  QHBoxLayout row{&dialog};
};

TEST_F(InADialogOfTheHost, EscapeClosesTheDialogWhenNothingIsPending) {
  pressEscape();
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(InADialogOfTheHost, TheEscapeThatEndsACropDoesNothingElse) {
  click("btnImageCrop");
  pressEscape();
  EXPECT_FALSE(command("btnImageCrop").Checked());
  EXPECT_TRUE(dialog.isVisible());
  pressEscape();
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(InADialogOfTheHost, TheEscapeThatEndsAPasteDoesNothingElse) {
  editor.control().Copy(false);
  click("btnEditPaste");
  ASSERT_TRUE(command("btnEditPaste").Checked());
  pressEscape();
  EXPECT_FALSE(command("btnEditPaste").Checked());
  EXPECT_TRUE(dialog.isVisible());
}

TEST_F(InADialogOfTheHost, TheEscapeThatEndsADragDoesNothingElse) {
  QTest::mousePress(&editor.canvas(), Qt::LeftButton, {}, QPoint(200, 200));
  QTest::mouseMove(&editor.canvas(), QPoint(240, 240));
  pressEscape();
  EXPECT_TRUE(dialog.isVisible());
  QTest::mouseRelease(&editor.canvas(), Qt::LeftButton, {}, QPoint(240, 240));
}

TEST_F(InADialogOfTheHost, EscapeActsTheSameFromADockedToolWindow) {
  auto* const swatch = dialog.findChild<QPushButton*>(QStringLiteral("btnColors_0"));
  swatch->setFocus();
  ASSERT_EQ(QApplication::focusWidget(), swatch);
  click("btnImageCrop");
  pressEscape();
  EXPECT_FALSE(command("btnImageCrop").Checked());
  EXPECT_TRUE(dialog.isVisible());
  pressEscape();
  EXPECT_FALSE(dialog.isVisible());
}

/// An editor alone in the window of a host.
class AloneInItsWindow : public testing::Test {
 protected:
  HostBench bench;
  HostedEditor& editor = bench.addEditor();
};

TEST_F(AloneInItsWindow, GetsTheKeysOfTheWindow) {
  bench.show();
  editor.canvas().clearFocus();
  ASSERT_EQ(QApplication::focusWidget(), nullptr);
  pressKey(bench.window(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(editor.takeClicked(), "btnImageFlip ");
}

TEST_F(AloneInItsWindow, GetsNoKeysOfTheWindowWhileDisabled) {
  bench.show();
  editor.widget().setEnabled(false);
  pressKey(bench.window(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(editor.takeClicked(), "");
}

TEST_F(AloneInItsWindow, ButForAMarginItDoesNotFillTheWindow) {
  bench.window().layout()->setContentsMargins(0, 20, 0, 0);
  bench.show();
  editor.canvas().clearFocus();
  pressKey(bench.window(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(editor.takeClicked(), "");
}

}  // namespace
}  // namespace kestrel::desktop
