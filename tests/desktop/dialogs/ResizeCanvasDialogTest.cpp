#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QTest>

#include "../EditorBench.h"
#include "../Themes.h"
#include "DialogLooks.h"
#include "DialogUser.h"
#include "dialogs/frmResizeCanvas.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/controls/CommandButton.h"
#include "platform/qt/controls/PlacementButton.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 40;

/// The place that an arrow points to: the direction in which most of its ink is, since the head is heavier
/// than the stem.
int directionOf(QWidget& button) {
  const QImage picture = button.grab().toImage().convertToFormat(QImage::Format_Grayscale8);
  const int side = picture.width(), frame = side / 6;
  int best = 4;
  double most = 0;
  for (int place = 0; place < 9; ++place) {
    double ink = 0;
    for (int y = frame; y < side - frame; ++y) {
      for (int x = frame; x < side - frame; ++x) {
        const int along = (place % 3 - 1) * (2 * x - side + 1) + (place / 3 - 1) * (2 * y - side + 1);
        if (along > 0) ink += 255 - picture.pixelColor(x, y).value();
      }
    }
    if (ink > most) {
      most = ink;
      best = place;
    }
  }
  return best;
}

class ResizeCanvasDialog : public testing::Test {
 protected:
  ResizeCanvasDialog() {
    bench.showPicture(noise(kWidth, kHeight));
    options().ResizeCanvasWidth(kWidth);
    options().ResizeCanvasHeight(kHeight);
    options().ResizeCanvasLockAspectRatio(false);
    options().ResizeCanvasColor(0x0000FF);
  }

  void use(const std::function<void(DialogUser&)>& doing) {
    useDialog([this] { answer = bench.editor().ShowResizeCanvasDialog(); }, doing);
  }
  static Options& options() { return *modProcessing::GetOptions(); }
  std::int32_t colorAt(std::int32_t x, std::int32_t y) {
    return bench.editor().Image()->GetPixel(x, y).Value();
  }

  EditorBench bench;
  bool answer = false;
};

TEST_F(ResizeCanvasDialog, IsUsedByKeysAlone) {
  const std::int32_t corner = colorAt(0, 0);
  use([](DialogUser& user) {
    EXPECT_EQ(user.focus(), "txtField_0");
    user.type("70");
    user.press(Qt::Key_H, Qt::AltModifier);
    user.type("50");
    EXPECT_EQ(user.text("txtField_2") + "," + user.text("txtField_3"), "5,5");
    for (int i = 0; i < 3; ++i) user.press(Qt::Key_Tab);
    EXPECT_EQ(user.focus(), "btnPlacement_4");
    user.press(Qt::Key_Right);
    user.press(Qt::Key_Right);
    EXPECT_EQ(user.focus(), "btnPlacement_5");
    user.press(Qt::Key_Down);
    EXPECT_EQ(user.focus(), "btnPlacement_8");
    EXPECT_EQ(user.text("txtField_2") + "," + user.text("txtField_3"), "10,10");
    user.press(Qt::Key_T, Qt::AltModifier);
    user.press(Qt::Key_Down);
    EXPECT_EQ(user.text("txtField_3"), "9");
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_TRUE(answer);
  EXPECT_EQ(bench.editor().Image()->Width(), 70);
  EXPECT_EQ(bench.editor().Image()->Height(), 50);
  EXPECT_EQ(colorAt(10, 9), corner);
  EXPECT_EQ(colorAt(9, 9), 0x0000FF);
  EXPECT_EQ(options().ResizeCanvasPlacement(), 8);
}

TEST_F(ResizeCanvasDialog, IsUsedByTheMouseAlone) {
  const std::int32_t corner = colorAt(0, 0);
  use([](DialogUser& user) {
    user.click("txtField_0");
    user.turnWheel("txtField_0", 10 * 120);
    EXPECT_EQ(user.text("txtField_2"), "5");
    user.click("btnPlacement_0");
    EXPECT_EQ(user.text("txtField_2"), "0");
    user.click("btnPlacement_2");
    EXPECT_EQ(user.text("txtField_2"), "10");
    user.click("btnPlacement_2");
    for (int i = 0; i < 9; ++i) {
      const std::string name = "btnPlacement_" + std::to_string(i);
      EXPECT_EQ(user.part<QAbstractButton>(name.c_str()).isChecked(), i == 2) << name;
    }
    user.click("cmdAction_0");
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_TRUE(answer);
  EXPECT_EQ(bench.editor().Image()->Width(), 70);
  EXPECT_EQ(colorAt(10, 0), corner);
  EXPECT_EQ(colorAt(9, 0), 0x0000FF);
}

TEST_F(ResizeCanvasDialog, EscapeCancels) {
  use([](DialogUser& user) {
    user.type("30");
    user.press(Qt::Key_Escape);
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_FALSE(answer);
  EXPECT_FALSE(bench.editor().Changed());
}

TEST_F(ResizeCanvasDialog, ReturnOnAPlacementIsOK) {
  use([](DialogUser& user) {
    user.type("70");
    user.click("btnPlacement_0");
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  });
  EXPECT_TRUE(answer);
}

TEST_F(ResizeCanvasDialog, ANegativeOffsetIsSteppedBothWays) {
  use([](DialogUser& user) {
    user.type("50");
    EXPECT_EQ(user.text("txtField_2"), "-5");
    user.press(Qt::Key_L, Qt::AltModifier);
    user.press(Qt::Key_Down);
    EXPECT_EQ(user.text("txtField_2"), "-6");
    user.press(Qt::Key_PageUp);
    EXPECT_EQ(user.text("txtField_2"), "4");
    user.type("-3");
    EXPECT_EQ(user.text("txtField_2"), "3") << "no sign from the keyboard";
  });
}

TEST_F(ResizeCanvasDialog, HasASensibleTabOrderAndAccessKeys) {
  use([](DialogUser& user) {
    EXPECT_EQ(user.tabOrder(),
              QStringList({"txtField_0", "txtField_1", "chkAspect", "cpkColor", "btnPlacement_4",
                           "txtField_2", "txtField_3", "cmdAction_0", "cmdAction_1"}));
    expectAccessKeys(user.window());
    // The check box and the color have the same stored key. The first of them keeps it.
    user.press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "chkAspect");
    auto& lock = user.part<QAbstractButton>("chkAspect");
    EXPECT_TRUE(QTest::qWaitFor([&] { return lock.isChecked(); })) << "the press is animated";
    user.press(Qt::Key_B, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "cpkColor");
  });
}

TEST_F(ResizeCanvasDialog, TheCenterIsStoredPressed) {
  frmResizeCanvas dialog(bench.editor());
  for (std::int32_t i = 0; i < 9; ++i) {
    EXPECT_EQ(Bind<CommandButton>(dialog.Form(), "btnPlacement", i).Pressed(), i == 4) << i;
  }
}

TEST_F(ResizeCanvasDialog, ShowsTheUnitNextToEachNumber) {
  use([](DialogUser& user) {
    for (const char* const name : {"lblUnit_0", "lblUnit_1", "lblUnit_2", "lblUnit_3"}) {
      EXPECT_EQ(user.label(name), "pixels") << name;
    }
  });
}

TEST_F(ResizeCanvasDialog, TheFocusIsVisibleOnAPlacement) {
  use([](DialogUser& user) {
    auto& center = user.part<qt::PlacementButton>("btnPlacement_4");
    const QRgb ink = center.palette().color(QPalette::HighlightedText).rgb();
    const auto inked = [&] {
      const QImage seen = center.grab().toImage();
      int count = 0;
      for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x) count += seen.pixel(x, y) == ink;
      }
      return count;
    };
    const int without = inked();
    center.setFocus(Qt::ShortcutFocusReason);
    settle();
    EXPECT_GT(inked(), without + center.width() / 2);
    user.press(Qt::Key_Escape);
  });
}

TEST_F(ResizeCanvasDialog, ThePlacementsHaveToolTipsAndArrowsToTheirPlaces) {
  use([](DialogUser& user) {
    const char* const names[] = {"Top left",     "Top center",  "Top right",     "Middle left", "Center",
                                 "Middle right", "Bottom left", "Bottom center", "Bottom right"};
    for (int i = 0; i < 9; ++i) {
      auto& button = user.part<qt::PlacementButton>(("btnPlacement_" + std::to_string(i)).c_str());
      EXPECT_EQ(button.toolTip().toStdString(), names[i]);
      EXPECT_EQ(button.accessibleName().toStdString(), names[i]);
      EXPECT_EQ(button.width(), button.height());
      if (i == 4) continue;  // a dot
      EXPECT_EQ(directionOf(button), i) << names[i];
    }
  });
}

TEST_F(ResizeCanvasDialog, ThePlacementsAreNotMirroredWhereTextRunsFromRightToLeft) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  use([](DialogUser& user) {
    const auto placeOf = [&](const char* name) {
      return user.part<QWidget>(name).mapTo(&user.window(), QPoint());
    };
    EXPECT_GT(placeOf("cmdAction_0").x(), placeOf("cmdAction_1").x()) << "the dialog itself is";
    for (int i = 0; i < 9; ++i) {
      const std::string name = "btnPlacement_" + std::to_string(i);
      if (i % 3 > 0) {
        const std::string left = "btnPlacement_" + std::to_string(i - 1);
        EXPECT_GT(placeOf(name.c_str()).x(), placeOf(left.c_str()).x()) << name;
      }
      if (i == 4) continue;  // a dot
      EXPECT_EQ(directionOf(user.part<QWidget>(name.c_str())), i) << name;
    }
    user.click("btnPlacement_0");
    user.press(Qt::Key_Right);
    EXPECT_EQ(user.focus(), "btnPlacement_1");
  });
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(ResizeCanvasDialog, IsReadableInEveryLook) {
  options().ResizeCanvasWidth(1920);
  options().ResizeCanvasHeight(10);
  expectGoodLooks("resize-canvas", [this] { bench.editor().ShowResizeCanvasDialog(); });
}

}  // namespace
}  // namespace kestrel::desktop
