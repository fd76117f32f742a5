// Boxes for numbers with a highest number.

#include <gtest/gtest.h>

#include <QApplication>
#include <QInputMethodEvent>
#include <QTest>

#include "../EditorBench.h"
#include "DialogUser.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

class DigitBoxes : public testing::TestWithParam<const char*> {
 protected:
  DigitBoxes() {
    bench.showPicture(noise(60, 40));
    modProcessing::GetOptions()->DropShadowBlur(16);
  }
  void use(const std::function<void(DialogUser&)>& doing) {
    useDialog([this] { bench.editor().ShowDropShadowDialog(); }, doing);
  }

  EditorBench bench;
};

TEST_P(DigitBoxes, AreNotSteppedAbove255) {
  use([](DialogUser& user) {
    user.click(GetParam());
    const auto expect = [&](const char* typed, const std::function<void()>& step, const char* text) {
      user.part<QLineEdit>(GetParam()).selectAll();
      user.type(typed);
      step();
      EXPECT_EQ(user.text(GetParam()), text) << typed;
      EXPECT_TRUE(user.window().isActiveWindow()) << "no error box";
    };
    const auto up = [&] { user.press(Qt::Key_Up); };
    const auto pageUp = [&] { user.press(Qt::Key_PageUp); };
    const auto wheel = [&] { user.turnWheel(GetParam(), 3 * 120); };
    expect("254", up, "255");
    expect("255", up, "255");
    expect("244", pageUp, "254");
    expect("250", pageUp, "255");
    expect("255", pageUp, "255");
    expect("251", wheel, "254");
    expect("254", wheel, "255");
    expect("255", wheel, "255");
    expect(
        "255", [&] { user.press(Qt::Key_Down); }, "254");
    user.press(Qt::Key_Escape);
  });
}

TEST_P(DigitBoxes, AreSteppedBackFromAHigherNumber) {
  use([](DialogUser& user) {
    user.click(GetParam());
    // Set by the program, as no preview is of interest here.
    const QSignalBlocker quiet(user.part<QLineEdit>(GetParam()));
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down}) {
      user.part<QLineEdit>(GetParam()).setText(QStringLiteral("300"));
      user.press(key);
      EXPECT_EQ(user.text(GetParam()), "255");
    }
  });
}

TEST_P(DigitBoxes, TakeDigitsAloneFromAnInputMethod) {
  use([](DialogUser& user) {
    user.click(GetParam());
    auto& edit = user.part<QLineEdit>(GetParam());
    const auto compose = [&](const QString& composed, const QString& entered) {
      QInputMethodEvent event(composed, {});
      event.setCommitString(entered);
      QApplication::sendEvent(user.window().focusWidget(), &event);
      settle();
    };
    edit.selectAll();
    compose({}, QStringLiteral("a1-"));
    EXPECT_EQ(edit.text(), "1") << "instead of the selected text";
    compose(QStringLiteral("ni"), {});
    EXPECT_EQ(edit.displayText(), "1") << "letters are not shown while they are composed";
    compose({}, QString(QChar(0x4f60)));
    EXPECT_EQ(edit.text(), "1");
    compose({}, QString(QChar(0xff12)));
    EXPECT_EQ(edit.text(), "12") << "a digit of double width";
    QInputMethodEvent corrected;
    corrected.setCommitString(QStringLiteral("3"), -1, 1);
    QApplication::sendEvent(user.window().focusWidget(), &corrected);
    EXPECT_EQ(edit.text(), "13") << "instead of the last one";
    QTest::sendKeyEvent(QTest::Click, user.window().windowHandle(), Qt::Key_5, QString(QChar(0x0665)), {});
    EXPECT_EQ(edit.text(), "135") << "an Arabic digit";
    user.press(Qt::Key_Escape);
  });
}

INSTANTIATE_TEST_SUITE_P(OfTheShadow, DigitBoxes, testing::Values("txtField_2", "txtField_3"),
                         [](const auto& box) {
                           return std::string(box.param).ends_with('2') ? "Blur" : "Opacity";
                         });

}  // namespace
}  // namespace kestrel::desktop
