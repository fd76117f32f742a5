#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>

#include "EditorBench.h"
#include "platform/qt/view/ImageSurface.h"
#include "platform/qt/view/PreviewWidget.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 40;

/// Red, green, blue and black corners, clockwise from the upper left.
QImage corners() {
  QImage picture(kWidth, kHeight, QImage::Format_RGBA8888);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const bool left = x < kWidth / 2, top = y < kHeight / 2;
      picture.setPixelColor(x, y, top ? (left ? Qt::red : Qt::green) : (left ? Qt::black : Qt::blue));
    }
  }
  return picture;
}

/// The rotate dialog in its window, driven by keyboard and mouse.
class Dialog {
 public:
  explicit Dialog(QWidget& window) : window_(window) {
    QApplication::setActiveWindow(&window_);
    settle();
  }

  QWidget& window() { return window_; }
  QLineEdit& degrees() { return part<QLineEdit>("txtDegrees"); }
  QRadioButton& option(const char* name) { return part<QRadioButton>(name); }
  qt::ImageSurface& before() { return *surfaces()[0]; }
  qt::ImageSurface& after() { return *surfaces()[1]; }

  void click(QAbstractButton& button) {
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
    settle();
  }
  void useOriginal() { click(part<QCheckBox>("chkUseOriginalImage")); }
  void type(const char* text) {
    for (const char* character = text; *character != '\0'; ++character) {
      QTest::keyClick(window_.windowHandle(), *character);
    }
    settle();
  }
  void press(Qt::Key key) {
    pressKey(window_, key);
    settle();
  }

 private:
  template <typename T>
  T& part(const char* name) {
    return *window_.findChild<T*>(QLatin1String(name));
  }
  QList<qt::ImageSurface*> surfaces() {
    return window_.findChild<qt::PreviewWidget*>()->findChildren<qt::ImageSurface*>();
  }

  QWidget& window_;
};

class RotateDialog : public testing::Test {
 protected:
  /// Opens the dialog with these options and runs the user's actions in it.
  std::int32_t show(std::int32_t angle, ImageProcessingDirectionConstants direction,
                    const std::function<void(Dialog&)>& doing) {
    options().RotateAngle(angle);
    options().RotateDirection(direction);
    bool used = false;
    whenModalOpens([&](QWidget& window) {
      Dialog dialog(window);
      doing(dialog);
      used = true;
      if (window.isVisible()) window.close();
    });
    const std::int32_t answer = bench.editor().ShowRotateDialog();
    EXPECT_TRUE(used);
    return answer;
  }
  static Options& options() { return *modProcessing::GetOptions(); }

  /// The color of the pane at an offset from its center, in device pixels.
  static QColor at(qt::ImageSurface& pane, int x, int y) {
    const QImage seen = pane.canvas().grab().toImage();
    return seen.pixelColor(seen.width() / 2 + x, seen.height() / 2 + y);
  }
  static void expectCorners(qt::ImageSurface& pane, const std::vector<QColor>& clockwise) {
    const QPoint places[] = {{-12, -12}, {12, -12}, {12, 12}, {-12, 12}};
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(at(pane, places[i].x(), places[i].y()).rgb(), clockwise[i].rgb()) << "corner " << i;
    }
  }

  EditorBench bench;
};

TEST_F(RotateDialog, AcceptsOnlyDigitsFromTheKeyboard) {
  bench.showPicture(corners());
  show(90, ipDirectionRight, [](Dialog& dialog) {
    QTest::mouseClick(&dialog.degrees(), Qt::LeftButton);
    dialog.type("-3x.0 ");
    EXPECT_EQ(dialog.degrees().text(), "30");
    EXPECT_TRUE(dialog.option("optDegree_3").isChecked()) << "typing chooses Free";
  });
}

TEST_F(RotateDialog, UsesTheLeadingNumberOfPastedText) {
  bench.showPicture(corners());
  QApplication::clipboard()->setText(QStringLiteral("45xyz"));
  EXPECT_EQ(show(90, ipDirectionRight,
                 [](Dialog& dialog) {
                   QTest::mouseClick(&dialog.degrees(), Qt::LeftButton);
                   pressKey(dialog.window(), Qt::Key_V, Qt::ControlModifier, QStringLiteral("\x16"));
                   EXPECT_EQ(dialog.degrees().text(), "45xyz");
                   dialog.press(Qt::Key_Return);
                 }),
            45);
}

TEST_F(RotateDialog, SelectsTheWholeTextOnFocus) {
  bench.showPicture(corners());
  show(45, ipDirectionRight, [](Dialog& dialog) {
    dialog.option("optDirection_0").setFocus();
    settle();
    EXPECT_EQ(dialog.degrees().text(), "45");
    dialog.degrees().deselect();
    dialog.degrees().setFocus(Qt::OtherFocusReason);
    settle();
    EXPECT_EQ(dialog.degrees().selectedText(), "45");
  });
}

TEST_F(RotateDialog, ReturnIsOKAndEscapeIsCancel) {
  bench.showPicture(corners());
  const auto typed = [](Qt::Key key) {
    return [key](Dialog& dialog) {
      dialog.degrees().setFocus();
      settle();
      dialog.type("30");
      dialog.press(key);
      EXPECT_FALSE(dialog.window().isVisible());
    };
  };
  EXPECT_EQ(show(45, ipDirectionRight, typed(Qt::Key_Escape)), 0);
  EXPECT_EQ(options().RotateAngle(), 45);
  EXPECT_FALSE(bench.editor().Changed());
  EXPECT_EQ(show(45, ipDirectionRight, typed(Qt::Key_Return)), 30);
  EXPECT_EQ(options().RotateAngle(), 30);
  EXPECT_TRUE(bench.editor().Changed());
}

TEST_F(RotateDialog, RefusesAnAngleOf0InABoxAndStays) {
  bench.showPicture(corners());
  QString title, text;
  bool stayed = false;
  EXPECT_EQ(show(45, ipDirectionRight,
                 [&](Dialog& dialog) {
                   dialog.degrees().setFocus();
                   settle();
                   dialog.type("0");
                   whenModalOpens([&](QWidget& box) {
                     title = box.windowTitle();
                     text = dynamic_cast<QMessageBox&>(box).text();
                     box.close();
                   });
                   dialog.press(Qt::Key_Return);
                   stayed = dialog.window().isVisible();
                 }),
            0);
  EXPECT_EQ(title, "Rotate");
  EXPECT_EQ(text, "Please enter or select an angle");
  EXPECT_TRUE(stayed);
}

TEST_F(RotateDialog, ShowsThePictureBeforeAndAfter) {
  bench.showPicture(corners());
  show(180, ipDirectionRight, [](Dialog& dialog) {
    dialog.useOriginal();
    expectCorners(dialog.before(), {Qt::red, Qt::green, Qt::blue, Qt::black});
    expectCorners(dialog.after(), {Qt::blue, Qt::black, Qt::red, Qt::green});
    dialog.click(dialog.option("optDegree_0"));
    expectCorners(dialog.after(), {Qt::black, Qt::red, Qt::green, Qt::blue});
    dialog.click(dialog.option("optDirection_0"));
    expectCorners(dialog.after(), {Qt::green, Qt::blue, Qt::black, Qt::red});
    expectCorners(dialog.before(), {Qt::red, Qt::green, Qt::blue, Qt::black});
    writeScreenshot(dialog.window(), "rotate");
  });
}

TEST_F(RotateDialog, LinksTheScrollBarsOfThePanes) {
  bench.showPicture(noise(1500, 1200));
  show(180, ipDirectionRight, [](Dialog& dialog) {
    dialog.useOriginal();
    const auto expectPlace = [&](int x, int y) {
      for (qt::ImageSurface* const pane : {&dialog.before(), &dialog.after()}) {
        EXPECT_EQ(pane->horizontalBar().value(), x);
        EXPECT_EQ(pane->verticalBar().value(), y);
      }
    };
    dialog.before().horizontalBar().setValue(120);
    expectPlace(120, 0);
    dialog.after().verticalBar().setValue(90);
    expectPlace(120, 90);
    dialog.click(dialog.option("optDirection_0"));
    expectPlace(120, 90);
  });
}

}  // namespace
}  // namespace kestrel::desktop
