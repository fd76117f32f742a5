#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>

#include "EditorBench.h"

namespace kestrel::desktop {
namespace {

class HotKeys : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(noise(400, 300));
    bench.canvas().setFocus();
    clicks =
        bench.moorage().CommandClick.Connect([this](Command& command) { clicked += command.Name() + ' '; });
  }

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { pressKey(bench.window(), key, modifiers); }
  /// A key on the numeric pad.
  void pressNumeric(Qt::Key key) {
    pressKey(bench.window(), key, Qt::KeypadModifier,
             key == Qt::Key_Plus ? QStringLiteral("+") : QStringLiteral("-"));
  }
  /// The text of the zoom combo, which gets the focus.
  QLineEdit& zoomField() {
    bench.editor().Tool(ipToolZoom);  // shows the bar
    settle();
    auto* const combo = bench.window().findChild<QComboBox*>(QStringLiteral("cboZoom"));
    combo->setFocus();
    return *combo->lineEdit();
  }

  EditorBench bench;
  std::string clicked;
  Connection clicks;
};

TEST_F(HotKeys, RunTheirCommands) {
  press(Qt::Key_I, Qt::ControlModifier);
  press(Qt::Key_L);
  EXPECT_EQ(clicked, "btnImageFlip btnDrawLine ");
  EXPECT_EQ(bench.editor().Tool(), ipToolLine);
}

TEST_F(HotKeys, OfTheNumericPadZoom) {
  pressNumeric(Qt::Key_Plus);
  EXPECT_EQ(bench.view().Zoom(), 2.0);
  pressNumeric(Qt::Key_Minus);
  EXPECT_EQ(bench.view().Zoom(), 1.0);
}

TEST_F(HotKeys, DoNothingForADisabledCommand) {
  bench.command("btnImageFlip").Enabled(false);
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked, "");
}

TEST_F(HotKeys, WithoutCtrlOrAltStayOffUntilAllowed) {
  bench.moorage().Commands().HotKeyOptions().AllowUnmodified(0);
  press(Qt::Key_L);
  EXPECT_EQ(clicked, "");
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked, "btnImageFlip ");
}

TEST_F(HotKeys, LeaveTypingKeysToATextField) {
  QLineEdit& field = zoomField();
  field.clear();
  for (const Qt::Key key : {Qt::Key_Z, Qt::Key_L, Qt::Key_B}) press(key);
  pressNumeric(Qt::Key_Plus);
  EXPECT_EQ(field.text(), "zlb+");
  press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(field.selectedText(), "zlb+");
  EXPECT_EQ(clicked, "");
}

TEST_F(HotKeys, ThatTypeNothingWorkInATextFieldToo) {
  zoomField();
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked, "btnImageFlip ");
}

TEST_F(HotKeys, RaiseTheirEventOnceWhenCanceled) {
  int asked = 0;
  const Connection connection =
      bench.moorage().CommandHotKeyPress.Connect([&](Command&, HotKey&, CancelValue& cancel) {
        ++asked;
        cancel.Value = true;
      });
  press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(clicked, "");
}

}  // namespace
}  // namespace kestrel::desktop
