// The panes of a preview, and the keyboard in the dialog around them.

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include "EditorBench.h"
#include "platform/qt/view/ImageSurface.h"
#include "platform/qt/view/PreviewWidget.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

class PreviewPanes : public testing::Test {
 protected:
  void SetUp() override { bench.showPicture(noise(1500, 1200)); }

  /// Opens the rotate dialog with 180 degrees to the right and runs `doing` in it.
  void inDialog(const std::function<void()>& doing) {
    modProcessing::GetOptions()->RotateAngle(180);
    modProcessing::GetOptions()->RotateDirection(ipDirectionRight);
    bool used = false;
    whenModalOpens([&](QWidget& opened) {
      dialog = &opened;
      QApplication::setActiveWindow(dialog);
      settle();
      doing();
      used = true;
      opened.close();
    });
    bench.editor().ShowRotateDialog();
    EXPECT_TRUE(used);
  }

  qt::ImageSurface& pane(int index) {
    return *dialog->findChild<qt::PreviewWidget*>()->findChildren<qt::ImageSurface*>()[index];
  }
  engine::View& view(int index) { return *pane(index).view(); }
  void expectZoom(double factor) {
    for (int index : {0, 1}) EXPECT_DOUBLE_EQ(view(index).Zoom(), factor) << "pane " << index;
  }
  bool hasBars(int index) {
    return pane(index).horizontalBar().isVisible() || pane(index).verticalBar().isVisible();
  }
  void turnWheel(int index, int notches) {
    qt::ViewCanvas& canvas = pane(index).canvas();
    const QPointF at(70, 60);
    QWheelEvent event(at, canvas.mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&canvas, &event);
    settle();
  }
  void doubleClick(int index) {
    const QPoint at = pane(index).canvas().mapTo(dialog, QPoint(60, 50));
    QTest::mouseDClick(dialog->windowHandle(), Qt::LeftButton, {}, at);
    settle();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    pressKey(*dialog, key, modifiers);
    settle();
  }
  void useOriginal() {
    press(Qt::Key_O, Qt::AltModifier);
    waitUntilChecked(part<QCheckBox>("chkUseOriginalImage"));
  }
  /// A button clicked by its access key looks pressed for a moment first.
  static void waitUntilChecked(QAbstractButton& button) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return button.isChecked(); }, 60'000));
    settle();
  }
  std::string focus() {
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName().toStdString() : "";
  }
  template <typename T>
  T& part(const char* name) {
    return *dialog->findChild<T*>(QLatin1String(name));
  }

  EditorBench bench;
  QWidget* dialog = nullptr;
};

TEST_F(PreviewPanes, CtrlAndWheelInEitherZoomsBoth) {
  inDialog([this] {
    useOriginal();
    expectZoom(1);
    turnWheel(0, 1);
    expectZoom(1.25);
    EXPECT_EQ(view(0).ScrollLeft(), view(1).ScrollLeft());
    EXPECT_EQ(view(0).ScrollTop(), view(1).ScrollTop());
    writeScreenshot(*dialog, "preview-zoomed-in");
    turnWheel(1, -1);
    expectZoom(1);
    turnWheel(1, -2);
    expectZoom(0.64);
  });
}

TEST_F(PreviewPanes, ADoubleClickFitsBothOrGoesBackToActualSize) {
  inDialog([this] {
    useOriginal();
    EXPECT_TRUE(hasBars(0) && hasBars(1));
    doubleClick(1);
    EXPECT_LT(view(0).Zoom(), 0.5);
    expectZoom(view(0).Zoom());
    EXPECT_FALSE(hasBars(0));
    EXPECT_FALSE(hasBars(1));
    writeScreenshot(*dialog, "preview-fitted");
    doubleClick(0);
    expectZoom(1);
  });
}

TEST_F(PreviewPanes, HaveNamesAndToolTips) {
  inDialog([this] {
    EXPECT_EQ(pane(0).canvas().accessibleName(), "Before");
    EXPECT_EQ(pane(1).canvas().accessibleName(), "After");
    for (int index : {0, 1}) {
      EXPECT_EQ(pane(index).canvas().toolTip(),
                "Ctrl+wheel zooms both pictures. A double click fits them into view, or shows them at actual "
                "size.");
    }
  });
}

TEST_F(PreviewPanes, TheStockPictureFitsWithoutScrollBarsAtAnySizeOfTheDialog) {
  inDialog([this] {
    for (const QSize size : {QSize(1, 1), QSize(560, 420), QSize(720, 480), QSize(1200, 900)}) {
      dialog->resize(size);
      settle();
      EXPECT_FALSE(hasBars(0)) << dialog->width() << " by " << dialog->height();
      EXPECT_FALSE(hasBars(1)) << dialog->width() << " by " << dialog->height();
      if (size.width() == 1) writeScreenshot(*dialog, "preview-smallest");
    }
  });
}

TEST_F(PreviewPanes, AccessKeysChooseAndFocusTheirControls) {
  inDialog([this] {
    const auto expectChooses = [this](Qt::Key key, const char* name) {
      press(key, Qt::AltModifier);
      EXPECT_EQ(focus(), name);
      waitUntilChecked(part<QRadioButton>(name));
    };
    expectChooses(Qt::Key_L, "optDirection_0");
    expectChooses(Qt::Key_R, "optDirection_1");
    expectChooses(Qt::Key_9, "optDegree_0");
    expectChooses(Qt::Key_1, "optDegree_1");
    expectChooses(Qt::Key_2, "optDegree_2");
    useOriginal();
    EXPECT_EQ(focus(), "chkUseOriginalImage");
  });
}

TEST_F(PreviewPanes, TheAccessKeyOfFreeChoosesItAndEntersTheNumber) {
  inDialog([this] {
    part<QLineEdit>("txtDegrees").setText(QStringLiteral("45"));
    press(Qt::Key_9, Qt::AltModifier);
    waitUntilChecked(part<QRadioButton>("optDegree_0"));
    press(Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(part<QRadioButton>("optDegree_3").isChecked());
    EXPECT_EQ(focus(), "txtDegrees");
    EXPECT_EQ(part<QLineEdit>("txtDegrees").selectedText(), "45");
    pressKey(*dialog, Qt::Key_7, {}, QStringLiteral("7"));
    settle();
    EXPECT_EQ(part<QLineEdit>("txtDegrees").text(), "7");
    writeScreenshot(*dialog, "rotate-free");
  });
}

TEST_F(PreviewPanes, TabGoesToTheChosenOptionOfEachGroup) {
  inDialog([this] {
    std::string order = focus();
    for (int i = 0; i < 6; ++i) {
      press(Qt::Key_Tab);
      order += ' ' + focus();
    }
    EXPECT_EQ(order,
              "optDirection_1 optDegree_1 txtDegrees chkUseOriginalImage cmdAction_0 cmdAction_1 "
              "optDirection_1");
    press(Qt::Key_2, Qt::AltModifier);
    waitUntilChecked(part<QRadioButton>("optDegree_2"));
    part<QPushButton>("cmdAction_1").setFocus();
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), "optDegree_2");
    press(Qt::Key_Left);
    EXPECT_EQ(focus(), "optDegree_1") << "the arrow keys move inside the group";
    EXPECT_TRUE(part<QRadioButton>("optDegree_1").isChecked());
  });
}

TEST_F(PreviewPanes, TheFocusIsVisibleOnTheButtons) {
  inDialog([this] {
    auto& cancel = part<QPushButton>("cmdAction_1");
    auto& ok = part<QPushButton>("cmdAction_0");
    part<QLineEdit>("txtDegrees").setFocus();
    press(Qt::Key_Tab);  // from here on the focus is shown
    const QImage plainOk = ok.grab().toImage(), plainCancel = cancel.grab().toImage();
    press(Qt::Key_Tab);
    ASSERT_TRUE(ok.hasFocus());
    EXPECT_NE(ok.grab().toImage(), plainOk);
    writeScreenshot(*dialog, "rotate-focus-ok");
    press(Qt::Key_Tab);
    ASSERT_TRUE(cancel.hasFocus());
    EXPECT_NE(cancel.grab().toImage(), plainCancel);
    writeScreenshot(*dialog, "rotate-focus-cancel");
  });
}

}  // namespace
}  // namespace kestrel::desktop
