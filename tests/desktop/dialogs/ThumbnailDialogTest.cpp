#include <gtest/gtest.h>

#include <QCheckBox>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include "../EditorBench.h"
#include "DialogLooks.h"
#include "DialogUser.h"
#include "platform/qt/controls/FormHeaderWidget.h"
#include "platform/qt/controls/FrameWidget.h"
#include "platform/qt/view/PreviewWidget.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

class ThumbnailDialog : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(noise(200, 100));
    options().ThumbnailAddDropShadow(false);
  }
  PicturePtr show(const std::function<void(DialogUser&)>& use) {
    PicturePtr made;
    useDialog([&] { made = bench.editor().ShowGetThumnailDialog(); }, use);
    return made;
  }
  static Options& options() { return *modProcessing::GetOptions(); }

  EditorBench bench;
};

TEST_F(ThumbnailDialog, IsSetByKeysAlone) {
  const PicturePtr made = show([](DialogUser& user) {
    EXPECT_EQ(user.focus(), "txtField_0");
    user.type("5x0");
    EXPECT_EQ(user.text("txtField_0"), "50") << "digits instead of the selected text";
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  });
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->Width(), 100);
}

TEST_F(ThumbnailDialog, TheWidthIsSetByKeysAlone) {
  const PicturePtr made = show([](DialogUser& user) {
    user.press(Qt::Key_W, Qt::AltModifier);
    EXPECT_TRUE(user.part<QRadioButton>("optSizeType_1").isChecked());
    EXPECT_EQ(user.focus(), "txtField_1") << "the access key of the option leads to its number";
    user.type("64");
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  });
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->Width(), 64);
}

TEST_F(ThumbnailDialog, IsSetByTheMouseAlone) {
  const PicturePtr made = show([](DialogUser& user) {
    EXPECT_FALSE(user.part<QWidget>("cmdOptions").isEnabled());
    user.click("chkAddDropShadow");
    EXPECT_TRUE(user.part<QWidget>("cmdOptions").isEnabled());
    user.click("chkSaveAsDefault");
    user.click("headerOK");
    EXPECT_FALSE(user.isOpen());
  });
  ASSERT_NE(made, nullptr);
  EXPECT_GT(made->Width(), 60) << "with a shadow";
  EXPECT_TRUE(options().ThumbnailAddDropShadow());
}

TEST_F(ThumbnailDialog, ItsShadowHasADialogAboveThisOne) {
  const PicturePtr made = show([](DialogUser& user) {
    user.click("chkAddDropShadow");
    whenModalOpens([&user](QWidget& window) {
      EXPECT_EQ(window.windowTitle(), "Drop Shadow");
      EXPECT_EQ(window.parentWidget(), &user.window());
      DialogUser shadow(window);
      shadow.type("9");
      shadow.press(Qt::Key_Return);
      EXPECT_FALSE(shadow.isOpen());
    });
    user.click("cmdOptions");
    EXPECT_TRUE(user.isOpen());
    user.press(Qt::Key_Escape);
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_EQ(made, nullptr);
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 9) << "stored by the dialog of the shadow";
}

TEST_F(ThumbnailDialog, TheCheckBoxesCanBeReachedInFrontOfTheHeader) {
  show([](DialogUser& user) {
    user.click("chkUseOriginalImage");
    EXPECT_FALSE(user.part<QCheckBox>("chkUseOriginalImage").isChecked());
    user.click("chkSaveAsDefault");
    EXPECT_TRUE(user.part<QCheckBox>("chkSaveAsDefault").isChecked());
  });
}

TEST_F(ThumbnailDialog, EscapeAndCancelMakeNone) {
  EXPECT_EQ(show([](DialogUser& user) {
              user.press(Qt::Key_Escape);
              EXPECT_FALSE(user.isOpen());
            }),
            nullptr);
  EXPECT_EQ(show([](DialogUser& user) {
              user.click("headerCancel");
              EXPECT_FALSE(user.isOpen());
            }),
            nullptr);
  EXPECT_EQ(show([](DialogUser& user) {
              user.part<QWidget>("headerCancel").setFocus();
              user.press(Qt::Key_Return);
              EXPECT_FALSE(user.isOpen());
            }),
            nullptr);
}

TEST_F(ThumbnailDialog, ThatIsDestroyedWithItsOwnerMakesNoneAndReportsNothing) {
  int boxes = 0;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&boxes] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) return;
    ++boxes;
    box->close();
  });
  watch.start(5);
  whenModalOpens([](QWidget& window) { delete &window; });
  EXPECT_EQ(bench.editor().ShowGetThumnailDialog(), nullptr);
  EXPECT_EQ(boxes, 0);
}

TEST_F(ThumbnailDialog, ReturnDoesNothingWhileTheSizeIsNotPossible) {
  EXPECT_EQ(show([](DialogUser& user) {
              user.type("0");
              EXPECT_FALSE(user.part<QPushButton>("headerOK").isEnabled());
              user.press(Qt::Key_Return);
              EXPECT_TRUE(user.isOpen());
              user.type("7");
              EXPECT_TRUE(user.part<QPushButton>("headerOK").isEnabled());
            }),
            nullptr);
}

TEST_F(ThumbnailDialog, ItsTabOrderFollowsTheEye) {
  show([](DialogUser& user) {
    user.click("chkAddDropShadow");
    user.part<QWidget>("txtField_0").setFocus();
    EXPECT_EQ(user.tabOrder(), QStringList({"txtField_0", "txtField_1", "chkAddDropShadow", "cmdOptions",
                                            "cpkColor_0", "chkSaveAsDefault", "chkUseOriginalImage",
                                            "headerOK", "headerCancel", "optSizeType_0"}));
  });
}

TEST_F(ThumbnailDialog, ItsPartsFollowTheSizeOfTheWindow) {
  show([](DialogUser& user) {
    auto& preview = *user.window().findChild<qt::PreviewWidget*>();
    auto& general = user.part<qt::FrameWidget>("fraGeneral");
    auto& shadow = user.part<qt::FrameWidget>("fraShadow");
    const QRect previewBefore = preview.geometry();
    const QPoint generalBefore = general.pos();
    user.window().resize(user.window().size() + QSize(120, 70));
    settle();
    EXPECT_EQ(preview.geometry(), previewBefore.adjusted(0, 0, 120, 70));
    EXPECT_EQ(general.pos(), generalBefore + QPoint(0, 70));
    EXPECT_EQ(general.height(), shadow.height());
    EXPECT_LT(preview.geometry().bottom(), general.y());
    for (const char* box : {"chkSaveAsDefault", "chkUseOriginalImage"}) {
      EXPECT_EQ(user.part<QWidget>(box).y(), user.window().height() - 32);
    }
  });
}

TEST_F(ThumbnailDialog, ItCannotBecomeTooSmallForItsParts) {
  show([](DialogUser& user) {
    user.window().resize(10, 10);
    settle();
    expectNothingCutOff(user.window());
    const auto& preview = *user.window().findChild<qt::PreviewWidget*>();
    EXPECT_GE(preview.height(), preview.minimumSizeHint().height());
    writeScreenshot(user.window(), "thumbnail-smallest");
  });
}

TEST_F(ThumbnailDialog, OpensWhereItWas) {
  const QRect place(40, 50, 700, 520);
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  show([&](DialogUser& user) {
    user.window().setGeometry(place);
    settle();
  });
  show([&](DialogUser& user) {
    const QRect now = user.window().geometry();
    // At a larger scale the screen of the tests is too small for the window.
    if (screen.contains(place)) {
      EXPECT_EQ(now, place);
    } else {
      EXPECT_TRUE(screen.contains(now.topLeft()));
    }
  });
}

TEST_F(ThumbnailDialog, ShowsALargeThumbnailSmallerAndSaysSoAboveIt) {
  show([](DialogUser& user) {
    user.press(Qt::Key_W, Qt::AltModifier);
    user.type("9000");  // 40.5 megapixels
    // The second is that of the right pane.
    QWidget& strip = *user.window().findChildren<QWidget*>(QStringLiteral("notice")).at(1);
    EXPECT_TRUE(strip.isVisible());
    EXPECT_LT(strip.height(), strip.parentWidget()->height() / 2) << "the picture stays in view";
    EXPECT_TRUE(user.part<QPushButton>("headerOK").isEnabled());
    EXPECT_EQ(user.focus(), "txtField_1");
    writeScreenshot(user.window(), "thumbnail-large");
    user.press(Qt::Key_Backspace);
    EXPECT_EQ(user.text("txtField_1"), "900");
    EXPECT_FALSE(strip.isVisible());
  });
}

TEST_F(ThumbnailDialog, FollowsALargerFontWhileItIsOpen) {
  const QFont before = QApplication::font();
  show([&](DialogUser& user) {
    QFont large = before;
    large.setPointSizeF(1.6 * before.pointSizeF());
    QApplication::setFont(large);
    settle();
    expectNothingCutOff(user.window());
    QApplication::setFont(before);
    settle();
  });
}

TEST_F(ThumbnailDialog, NamesItsControlsAndSharesNoAccessKey) {
  show([](DialogUser& user) {
    expectAccessKeys(user.window());
    expectAccessibleNames(user.window());
  });
}

TEST_F(ThumbnailDialog, LooksGood) {
  expectGoodLooks(
      "thumbnail", [this] { bench.editor().ShowGetThumnailDialog(); },
      [](QWidget& window) {
        window.findChild<QCheckBox*>(QStringLiteral("chkAddDropShadow"))->setChecked(true);
      });
}

}  // namespace
}  // namespace kestrel::desktop
