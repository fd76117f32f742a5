#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

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

  /// A key on the numeric pad.
  static void pressNumeric(QWidget& widget, Qt::Key key) {
    QTest::sendKeyEvent(QTest::Click, &widget, key,
                        key == Qt::Key_Plus ? QStringLiteral("+") : QStringLiteral("-"), Qt::KeypadModifier);
  }
  QLineEdit& zoomField() {
    bench.editor().Tool(ipToolZoom);  // shows the bar
    settle();
    auto* const combo = bench.window().findChild<QComboBox*>(QStringLiteral("cboZoom"));
    combo->lineEdit()->setFocus();
    return *combo->lineEdit();
  }

  EditorBench bench;
  std::string clicked;
  Connection clicks;
};

TEST_F(HotKeys, ChooseTheirCommands) {
  QTest::keyClick(&bench.canvas(), Qt::Key_I, Qt::ControlModifier);
  QTest::keyClick(&bench.canvas(), Qt::Key_L);
  EXPECT_EQ(clicked, "btnImageFlip btnDrawLine ");
  EXPECT_EQ(bench.editor().Tool(), ipToolLine);
}

TEST_F(HotKeys, OfTheNumericPadZoom) {
  pressNumeric(bench.canvas(), Qt::Key_Plus);
  EXPECT_EQ(bench.view().Zoom(), 2.0);
  pressNumeric(bench.canvas(), Qt::Key_Minus);
  EXPECT_EQ(bench.view().Zoom(), 1.0);
}

TEST_F(HotKeys, DoNothingForACommandThatIsDisabled) {
  bench.command("btnImageFlip").Enabled(false);
  QTest::keyClick(&bench.canvas(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked, "");
}

TEST_F(HotKeys, WithoutCtrlOrAltStayOffUntilAllowed) {
  bench.moorage().Commands().HotKeyOptions().AllowUnmodified(0);
  QTest::keyClick(&bench.canvas(), Qt::Key_L);
  EXPECT_EQ(clicked, "");
  QTest::keyClick(&bench.canvas(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked, "btnImageFlip ");
}

TEST_F(HotKeys, LeaveTheKeysThatWriteToATextField) {
  QLineEdit& field = zoomField();
  field.clear();
  QTest::keyClicks(&field, QStringLiteral("zlb"));
  pressNumeric(field, Qt::Key_Plus);
  EXPECT_EQ(field.text(), "zlb+");
  QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(field.selectedText(), "zlb+");
  EXPECT_EQ(clicked, "");
}

TEST_F(HotKeys, ThatWriteNothingWorkInATextFieldToo) {
  QTest::keyClick(&zoomField(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(clicked, "btnImageFlip ");
}

TEST_F(HotKeys, AreAskedAboutOnceWhenCancelled) {
  int asked = 0;
  const Connection connection =
      bench.moorage().CommandHotKeyPress.Connect([&](Command&, HotKey&, CancelValue& cancel) {
        ++asked;
        cancel.Value = true;
      });
  QTest::keyClick(&bench.canvas(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(clicked, "");
}

TEST_F(HotKeys, EscapeReachesTheControl) {
  std::int32_t character = 0;
  const Connection connection =
      bench.widget().site()->KeyPress.Connect([&](std::int32_t key) { character = key; });
  QTest::keyClick(&bench.canvas(), Qt::Key_Escape);
  EXPECT_EQ(character, 27);
  EXPECT_TRUE(bench.window().isVisible());
}

}  // namespace
}  // namespace kestrel::desktop
