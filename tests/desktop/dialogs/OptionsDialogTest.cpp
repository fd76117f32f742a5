#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>
#include <QTabBar>
#include <QTest>
#include <QToolButton>
#include <QWindow>

#include "../EditorBench.h"
#include "DialogLooks.h"
#include "DialogUser.h"
#include "platform/qt/controls/ColorPickerWidget.h"
#include "platform/qt/controls/FrameWidget.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

/// The tabs, counted from 0 as the toolkit does.
constexpr int kThumbnails = 1;
constexpr int kJPEG = 2;

class OptionsDialog : public testing::Test {
 protected:
  bool show(const std::function<void(DialogUser&)>& use) {
    bool accepted = false;
    useDialog([&] { accepted = bench.editor().ShowOptions(); }, use);
    return accepted;
  }
  static Options& options() { return *modProcessing::GetOptions(); }
  static void clickTab(DialogUser& user, int index) {
    auto& tabs = user.part<QTabBar>("tabView");
    QTest::mouseClick(user.window().windowHandle(), Qt::LeftButton, {},
                      tabs.mapTo(&user.window(), tabs.tabRect(index).center()));
    settle();
  }
  /// Clicks the middle of the groove, above the ticks.
  static void clickGroove(QSlider& slider) {
    const int groove = slider.style()->pixelMetric(QStyle::PM_SliderThickness, nullptr, &slider) / 2;
    QWidget& window = *slider.window();
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                      slider.mapTo(&window, QPoint(slider.width() / 2, groove)));
    settle();
  }
  static int shownPage(DialogUser& user) {
    int page = -1;
    for (int i = 0; i < 3; ++i) {
      const std::string name = "fraView_" + std::to_string(i);
      if (!user.part<QWidget>(name.c_str()).isVisible()) continue;
      EXPECT_EQ(page, -1) << "one page at a time";
      page = i;
    }
    return page;
  }
  /// Presses an access key, which a check box or option button shows as a short press.
  static void pressAccessKey(DialogUser& user, Qt::Key key, const QAbstractButton& button, bool on) {
    user.press(key, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return button.isChecked() == on; }))
        << button.objectName().toStdString();
  }

  EditorBench bench;
};

TEST_F(OptionsDialog, IsSetByKeysAlone) {
  EXPECT_TRUE(show([](DialogUser& user) {
    EXPECT_EQ(user.focus(), "tabView");
    user.press(Qt::Key_Tab);
    EXPECT_EQ(user.focus(), "cboGridSize");
    user.press(Qt::Key_Down);
    user.press(Qt::Key_Z, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "sldZoom");
    user.press(Qt::Key_Right);
    user.press(Qt::Key_Right);
    user.press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(shownPage(user), kThumbnails);
    pressAccessKey(user, Qt::Key_T, user.part<QCheckBox>("chkAddThumbnails"), false);
    pressAccessKey(user, Qt::Key_W, user.part<QRadioButton>("optSizeType_1"), true);
    EXPECT_EQ(user.focus(), "txtField_1") << "the access key of the option leads to its number";
    user.type("9x0-");
    EXPECT_EQ(user.text("txtField_1"), "90");
    pressAccessKey(user, Qt::Key_D, user.part<QCheckBox>("chkDropShadow"), false);
    pressAccessKey(user, Qt::Key_U, user.part<QCheckBox>("chkAutomaticUpdate"), true);
    user.press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(shownPage(user), kJPEG);
    user.press(Qt::Key_Z, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "sldJPEGQuality") << "the access key of its leftover caption";
    user.press(Qt::Key_Right);
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  }));
  EXPECT_EQ(options().BackgroundGridSize(), 32);
  EXPECT_EQ(options().ZoomLevel(), 12);
  EXPECT_FALSE(options().ThumbnailAutoCheck());
  EXPECT_EQ(options().ThumbnailSizeType(), tstWidthInPixels);
  EXPECT_EQ(options().ThumbnailSize(), 90);
  EXPECT_FALSE(options().ThumbnailAddDropShadow());
  EXPECT_TRUE(options().ThumbnailAutomaticUpdate());
  EXPECT_EQ(options().JPEGQuality(), 76) << "the right end is the best quality";
}

TEST_F(OptionsDialog, CtrlTabGoesAroundThePages) {
  show([](DialogUser& user) {
    std::vector<int> pages;
    for (int i = 0; i < 4; ++i) {
      pages.push_back(shownPage(user));
      user.press(Qt::Key_Tab, Qt::ControlModifier);
    }
    EXPECT_EQ(pages, (std::vector<int>{0, 1, 2, 0}));
    user.press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(shownPage(user), 0);
  });
}

TEST_F(OptionsDialog, IsSetByTheMouseAlone) {
  EXPECT_TRUE(show([](DialogUser& user) {
    user.choose("cboGridSize", 0);
    clickTab(user, kThumbnails);
    EXPECT_EQ(shownPage(user), kThumbnails);
    user.click("chkAddThumbnails");
    user.click("optSizeType_1");
    user.click("chkDropShadow");
    user.click("chkAutomaticUpdate");
    clickTab(user, kJPEG);
    EXPECT_EQ(shownPage(user), kJPEG);
    clickGroove(user.part<QSlider>("sldJPEGQuality"));
    clickTab(user, 0);
    user.click("cmdAction_0");
    EXPECT_FALSE(user.isOpen());
  }));
  EXPECT_EQ(options().BackgroundGridSize(), 4);
  EXPECT_FALSE(options().ThumbnailAutoCheck());
  EXPECT_EQ(options().ThumbnailSizeType(), tstWidthInPixels);
  EXPECT_FALSE(options().ThumbnailAddDropShadow());
  EXPECT_TRUE(options().ThumbnailAutomaticUpdate());
  EXPECT_LT(options().JPEGQuality(), 75) << "a click left of the slider's handle";
}

TEST_F(OptionsDialog, EscapeAndCancelStoreNothing) {
  for (const bool byMouse : {false, true}) {
    EXPECT_FALSE(show([&](DialogUser& user) {
      user.press(Qt::Key_Tab);
      user.press(Qt::Key_Down);
      byMouse ? user.click("cmdAction_1") : user.press(Qt::Key_Escape);
      EXPECT_FALSE(user.isOpen());
    }));
    EXPECT_EQ(options().BackgroundGridSize(), 20);
  }
}

TEST_F(OptionsDialog, ReturnOnCancelIsCancel) {
  EXPECT_FALSE(show([](DialogUser& user) {
    user.part<QWidget>("cmdAction_1").setFocus();
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  }));
}

TEST_F(OptionsDialog, TheSliderOfTheQualityHasTheBestQualityAtItsRightEnd) {
  options().JPEGQuality(25);
  show([](DialogUser& user) {
    clickTab(user, kJPEG);
    auto& slider = user.part<QSlider>("sldJPEGQuality");
    EXPECT_EQ(slider.value(), 75);
    EXPECT_TRUE(slider.invertedAppearance());
    slider.setFocus();
    user.press(Qt::Key_Left);
    EXPECT_EQ(slider.value(), 76);
    user.press(Qt::Key_Right);
    user.press(Qt::Key_Right);
    EXPECT_EQ(slider.value(), 74);
  });
}

TEST_F(OptionsDialog, TheNumbersOfTheSlidersFollowThem) {
  show([](DialogUser& user) {
    user.press(Qt::Key_Z, Qt::AltModifier);
    user.press(Qt::Key_End);
    EXPECT_EQ(user.label("lblValue_0"), "20");
    EXPECT_TRUE(user.part<QWidget>("lblValue_0").isVisible());
    const int zoomWidth = user.part<QWidget>("sldZoom").width();
    user.press(Qt::Key_Home);
    EXPECT_EQ(user.label("lblValue_0"), "2");
    EXPECT_EQ(user.part<QWidget>("sldZoom").width(), zoomWidth) << "the slider does not move under the hand";
    clickTab(user, kJPEG);
    EXPECT_EQ(user.label("lblValue_1"), "75");
    user.press(Qt::Key_Z, Qt::AltModifier);
    user.press(Qt::Key_Right);
    EXPECT_EQ(user.label("lblValue_1"), "76");
  });
}

TEST_F(OptionsDialog, TheTextsBelowTheEndsOfASliderBeginInTheSameLine) {
  show([](DialogUser& user) {
    clickTab(user, 2);
    for (const char* name : {"lblHdr_8", "lblHdr_9"}) {
      const QLabel& text = user.part<QLabel>(name);
      EXPECT_EQ(text.y(), user.part<QLabel>("lblHdr_8").y()) << name;
      EXPECT_TRUE(text.alignment().testFlag(Qt::AlignTop)) << name;
    }
  });
}

TEST_F(OptionsDialog, TheWindowHasRoomForEachPage) {
  show([](DialogUser& user) {
    const QSize size = user.window().size();
    for (int page = 0; page < 3; ++page) {
      clickTab(user, page);
      EXPECT_EQ(user.window().size(), size);
      const std::string name = "fraView_" + std::to_string(page);
      const QWidget& frame = user.part<QWidget>(name.c_str());
      EXPECT_GE(frame.height(), frame.minimumSizeHint().height());
      EXPECT_GE(frame.width(), frame.minimumSizeHint().width());
    }
  });
}

TEST_F(OptionsDialog, DrawsTheSampleInTheColorsOfThePickers) {
  options().BackgroundGridColor1(0x0000FF);
  options().BackgroundGridColor2(0x00FF00);
  options().BackgroundGridSize(32);
  show([](DialogUser& user) {
    auto& sample = user.part<qt::FrameWidget>("fraGrid");
    const QImage seen = sample.grab().toImage();
    const double factor = sample.devicePixelRatioF();
    const auto at = [&](int x, int y) {
      return seen.pixelColor(static_cast<int>(x * factor), static_cast<int>(y * factor)).rgb();
    };
    EXPECT_EQ(at(16, 16), qRgb(0, 255, 0));
    EXPECT_EQ(at(48, 16), qRgb(255, 0, 0));
    EXPECT_EQ(at(48, 48), qRgb(0, 255, 0));
  });
}

TEST_F(OptionsDialog, HasNothingOfTheSampleOutsideOfItsFrame) {
  options().BackgroundGridColor1(0x0000FF);
  options().BackgroundGridColor2(0x0000FF);
  show([](DialogUser& user) {
    auto& sample = user.part<qt::FrameWidget>("fraGrid");
    const QImage seen = sample.grab().toImage();
    const int middle = seen.height() / 2;
    int runs = 0;
    for (int x = 0; x < seen.width(); ++x) {
      const auto isSample = [&](int at) { return at >= 0 && seen.pixel(at, middle) == qRgb(255, 0, 0); };
      runs += isSample(x) && !isSample(x - 1);
    }
    EXPECT_EQ(runs, 1);
  });
}

TEST_F(OptionsDialog, NamesItsControlsAndSharesNoAccessKey) {
  show([](DialogUser& user) {
    for (int page = 0; page < 3; ++page) {
      clickTab(user, page);
      expectAccessKeys(user.window());
      expectAccessibleNames(user.window());
    }
  });
}

TEST_F(OptionsDialog, LooksGoodOnEachPage) {
  const char* const pages[] = {"general", "thumbnails", "jpeg"};
  for (int page = 0; page < 3; ++page) {
    expectGoodLooks(
        std::string("options-") + pages[page], [this] { bench.editor().ShowOptions(); },
        [page](QWidget& window) { window.findChild<QTabBar*>()->setCurrentIndex(page); });
  }
}

}  // namespace
}  // namespace kestrel::desktop
