// Keys of the desktop in the editor's own window.

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "EditorBench.h"
#include "HostBench.h"

namespace kestrel::desktop {
namespace {

/// The name of the popup menu that `open` opens; the menu is closed by Escape.
std::string menuOpenedBy(QWidget& window, const std::function<void()>& open) {
  std::string name;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    QWidget* const menu = QApplication::activePopupWidget();
    if (!menu) return;
    name = menu->objectName().toStdString();
    writeScreenshot(window, "menu-by-key");
    QTest::keyClick(menu, Qt::Key_Escape);
  });
  watch.start(5);
  open();
  for (int round = 0; round < 20 && name.empty(); ++round) settle();
  watch.stop();
  while (QWidget* const menu = QApplication::activePopupWidget()) menu->close();
  return name;
}

class WindowKeys : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(noise(400, 300));
    bench.canvas().setFocus();
    clicks =
        bench.moorage().CommandClick.Connect([this](Command& command) { clicked += command.Name() + ' '; });
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    pressKey(bench.window(), key, modifiers);
    settle();
  }
  void press(const QKeySequence& keys) { press(keys[0].key(), keys[0].keyboardModifiers()); }
  std::string takeClicked() { return std::exchange(clicked, {}); }

  EditorBench bench;
  std::string clicked;
  Connection clicks;
};

TEST_F(WindowKeys, CtrlWithPlusMinusAnd0OfTheMainKeyboardZoom) {
  press(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(bench.view().Zoom(), 2.0);
  press(Qt::Key_Equal, Qt::ControlModifier);
  EXPECT_EQ(bench.view().Zoom(), 3.0) << "the key of + without Shift";
  press(Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(bench.view().Zoom(), 4.0) << "where + needs Shift";
  press(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(bench.view().Zoom(), 3.0);
  press(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(bench.view().Zoom(), 1.0);
  EXPECT_EQ(takeClicked(), "btnZoomIn btnZoomIn btnZoomIn btnZoomOut btnZoomActualSize ");
}

TEST_F(WindowKeys, TheStandardKeysRedo) {
  const auto keys = QKeySequence::keyBindings(QKeySequence::Redo);
  ASSERT_FALSE(keys.isEmpty());
  for (const QKeySequence& key : keys) {
    bench.editor().FlipHorizontally();
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(bench.view().CanRedo());
    takeClicked();
    press(key);
    EXPECT_EQ(takeClicked(), "btnEditRedo ") << key.toString().toStdString();
    EXPECT_FALSE(bench.view().CanRedo());
  }
}

TEST_F(WindowKeys, TheMenuShowsTheKeyOfRedo) {
  const QString text = bench.moorage().actions().actionOf(bench.command("btnEditRedo")).text();
  EXPECT_EQ(text.section(u'\t', 1), QKeySequence(QKeySequence::Redo).toString(QKeySequence::NativeText));
}

TEST_F(WindowKeys, DoNothingForADisabledCommand) {
  press(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(takeClicked(), "") << "the picture has its actual size";
}

TEST_F(WindowKeys, LeaveTheEditingKeysToATextField) {
  bench.editor().Tool(ipToolZoom);
  bench.editor().FlipHorizontally();
  bench.editor().Undo();
  settle();
  bench.window().findChild<QComboBox*>(QStringLiteral("cboZoom"))->setFocus();
  press(QKeySequence(QKeySequence::Redo));
  EXPECT_EQ(takeClicked(), "");
  EXPECT_TRUE(bench.view().CanRedo());
}

TEST_F(WindowKeys, LeaveTheKeysOfTheLayoutToTheirCommands) {
  bench.moorage().useDesktopKeys({{"btnZoomIn", {QKeySequence(Qt::CTRL | Qt::Key_I)}}});
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(takeClicked(), "btnImageFlip ");
  bench.command("btnImageFlip").Enabled(false);
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(takeClicked(), "") << "also while the command is disabled";
}

TEST_F(WindowKeys, F10OpensTheMenuBar) {
  EXPECT_EQ(menuOpenedBy(bench.window(), [this] { pressKey(bench.window(), Qt::Key_F10); }), "mnuFile");
  bench.editor().ShowMenuBar(false);
  EXPECT_EQ(menuOpenedBy(bench.window(), [this] { pressKey(bench.window(), Qt::Key_F10); }), "");
}

TEST_F(WindowKeys, TheContextMenuKeyOpensTheMenuOfARightClick) {
  const auto pressed = [this] {
    return menuOpenedBy(bench.window(), [this] { pressKey(bench.window(), Qt::Key_Menu); });
  };
  EXPECT_EQ(pressed(), "mnuImageContext");
  bench.editor().SelectAll();
  EXPECT_EQ(pressed(), "mnuSelectionContext");
}

TEST_F(WindowKeys, ShiftAndF10OpenTheContextMenuToo) {
  EXPECT_EQ(
      menuOpenedBy(bench.window(), [this] { pressKey(bench.window(), Qt::Key_F10, Qt::ShiftModifier); }),
      "mnuImageContext");
}

TEST_F(WindowKeys, AMenuByKeyOpensInsideTheWindow) {
  QPoint corner;
  QCursor::setPos(bench.window().mapToGlobal(QPoint(-50, -50)));
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    if (QWidget* const menu = QApplication::activePopupWidget()) {
      corner = menu->pos();
      menu->close();
    }
  });
  watch.start(5);
  pressKey(bench.window(), Qt::Key_Menu);
  settle();
  EXPECT_TRUE(bench.canvas().rect().contains(bench.canvas().mapFromGlobal(corner)));
}

TEST(HostedKeys, OfTheDesktopBelongToTheHost) {
  HostBench bench;
  HostedEditor& editor = bench.addEditor();
  bench.show();
  editor.canvas().setFocus();
  settle();
  for (const Qt::Key key : {Qt::Key_Plus, Qt::Key_Minus, Qt::Key_0}) {
    pressKey(editor.canvas(), key, Qt::ControlModifier);
  }
  EXPECT_EQ(menuOpenedBy(editor.canvas(), [&] { pressKey(editor.canvas(), Qt::Key_F10); }), "");
  EXPECT_EQ(editor.takeClicked(), "");
  EXPECT_EQ(editor.control().ImageControl().Zoom(), 1.0);
}

}  // namespace
}  // namespace kestrel::desktop
