#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>

#include "../EditorBench.h"
#include "DialogLooks.h"
#include "DialogUser.h"
#include "imaging/contract/Image.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 40;

class ResizeDialog : public testing::Test {
 protected:
  ResizeDialog() {
    bench.showPicture(noise(kWidth, kHeight));
    options().ResizeWidth(kWidth);
    options().ResizeHeight(kHeight);
  }

  void use(const std::function<void(DialogUser&)>& doing) {
    useDialog([this] { answer = bench.editor().ShowResizeDialog(); }, doing);
  }
  static Options& options() { return *modProcessing::GetOptions(); }
  void expectSize(std::int32_t width, std::int32_t height) {
    EXPECT_EQ(bench.editor().Image()->Width(), width);
    EXPECT_EQ(bench.editor().Image()->Height(), height);
  }

  EditorBench bench;
  bool answer = false;
};

TEST_F(ResizeDialog, IsUsedByKeysAlone) {
  use([](DialogUser& user) {
    EXPECT_EQ(user.focus(), "txtField_0");
    user.type("30");
    EXPECT_EQ(user.text("txtField_1"), "20");
    user.press(Qt::Key_A, Qt::AltModifier);
    auto& lock = user.part<QAbstractButton>("chkAspect");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !lock.isChecked(); })) << "the press is animated";
    user.press(Qt::Key_H, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "txtField_1");
    user.type("7");
    EXPECT_EQ(user.text("txtField_0"), "30") << "no longer locked";
    user.press(Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "cboResample");
    user.press(Qt::Key_Down);
    user.press(Qt::Key_Down);
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_TRUE(answer);
  expectSize(30, 7);
  EXPECT_EQ(options().ResizeMode(), 4);
  EXPECT_FALSE(options().ResizeLockAspectRatio());
}

TEST_F(ResizeDialog, IsUsedByTheMouseAlone) {
  use([](DialogUser& user) {
    user.click("chkAspect");
    user.click("txtField_0");
    user.turnWheel("txtField_0", -5 * 120);
    EXPECT_EQ(user.text("txtField_0"), "55");
    user.turnWheel("txtField_1", 120);
    EXPECT_EQ(user.text("txtField_1"), "40") << "the wheel steps only the box with the focus";
    user.click("txtField_1");
    user.turnWheel("txtField_1", 60);
    user.turnWheel("txtField_1", 60);
    EXPECT_EQ(user.text("txtField_1"), "41") << "two halves of a step";
    user.choose("cboScale", 1);
    user.choose("cboResample", 0);
    user.click("cmdAction_0");
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_TRUE(answer);
  expectSize(33, 16);
  EXPECT_EQ(options().ResizeMode(), 0);
  EXPECT_EQ(options().ResizeScale(), 1);
}

TEST_F(ResizeDialog, EscapeCancels) {
  use([](DialogUser& user) {
    user.type("30");
    user.press(Qt::Key_Escape);
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_FALSE(answer);
  expectSize(kWidth, kHeight);
  EXPECT_FALSE(bench.editor().Changed());
}

TEST_F(ResizeDialog, TheDigitBoxesStepByKeysWithinTheirRange) {
  options().ResizeLockAspectRatio(false);
  use([](DialogUser& user) {
    const auto expect = [&](Qt::Key key, const char* text) {
      user.press(key);
      EXPECT_EQ(user.text("txtField_0"), text);
      EXPECT_EQ(user.part<QLineEdit>("txtField_0").selectedText().toStdString(), text);
    };
    expect(Qt::Key_Up, "61");
    expect(Qt::Key_PageUp, "71");
    expect(Qt::Key_Down, "70");
    user.type("11");
    expect(Qt::Key_PageDown, "1");
    expect(Qt::Key_Down, "0");
    expect(Qt::Key_Down, "0");
    user.press(Qt::Key_Backspace);
    expect(Qt::Key_Up, "1");
    user.paste("12 apples");
    expect(Qt::Key_Up, "13");
    user.paste("99999999999");
    expect(Qt::Key_Down, "2147483646");
    user.paste("-5");
    expect(Qt::Key_Down, "-6");
    expect(Qt::Key_PageUp, "4");
    EXPECT_EQ(user.text("txtField_1"), "40");
  });
}

TEST_F(ResizeDialog, AStepKeepsTheLockedRatio) {
  use([](DialogUser& user) {
    user.press(Qt::Key_PageUp);
    user.press(Qt::Key_Down);
    EXPECT_EQ(user.text("txtField_0"), "69");
    EXPECT_EQ(user.text("txtField_1"), "46");
  });
}

TEST_F(ResizeDialog, TakesOnlyDigitsFromTheKeyboard) {
  use([](DialogUser& user) {
    user.type("-1e2.0 x");
    EXPECT_EQ(user.text("txtField_0"), "120");
  });
}

TEST_F(ResizeDialog, RewritingTheBoxKeepsTheCursorWhereTheUserTypes) {
  use([](DialogUser& user) {
    user.type("18");
    user.press(Qt::Key_Left);
    user.type("50");
    EXPECT_EQ(user.text("txtField_0"), "1508");
    EXPECT_EQ(user.text("txtField_1"), "1005");
  });
}

TEST_F(ResizeDialog, ShowsTheUnitNextToEachNumber) {
  use([](DialogUser& user) {
    EXPECT_EQ(user.label("lblData_0"), "60 Pixels");
    EXPECT_EQ(user.label("lblUnit_0"), "pixels");
    EXPECT_EQ(user.label("lblUnit_1"), "pixels");
    user.press(Qt::Key_S, Qt::AltModifier);
    user.press(Qt::Key_Down);
    EXPECT_EQ(user.label("lblUnit_0"), "percent");
    EXPECT_EQ(user.label("lblUnit_1"), "percent");
  });
  options().ResizeScale(1);
  use([](DialogUser& user) { EXPECT_EQ(user.label("lblUnit_0"), "percent"); });
}

TEST_F(ResizeDialog, RefusesASizeBelowOneInABoxAndStays) {
  use([](DialogUser& user) {
    user.type("0");
    expectBox("Resize", "Sorry, the minimum value for width and height is 1.",
              [&] { user.press(Qt::Key_Return); });
    EXPECT_TRUE(user.isOpen());
    user.type("6");
    user.press(Qt::Key_Return);
  });
  expectSize(6, 4);
}

TEST_F(ResizeDialog, HasASensibleTabOrderAndDistinctAccessKeys) {
  use([](DialogUser& user) {
    EXPECT_EQ(user.tabOrder(), QStringList({"txtField_0", "txtField_1", "cboScale", "cboResample",
                                            "chkAspect", "cmdAction_0", "cmdAction_1"}));
    expectAccessKeys(user.window());
  });
}

TEST_F(ResizeDialog, IsReadableInEveryLook) {
  options().ResizeScale(1);
  expectGoodLooks("resize", [this] { bench.editor().ShowResizeDialog(); });
}

}  // namespace
}  // namespace kestrel::desktop
