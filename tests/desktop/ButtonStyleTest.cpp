#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleFactory>
#include <QTemporaryDir>

#include "EditorBench.h"
#include "platform/qt/controls/ColorPickerWidget.h"

namespace kestrel::desktop {
namespace {

/// A desktop that gives icons to the standard buttons of dialogs.
class IconStyle final : public QProxyStyle {
 public:
  IconStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 1
                                                       : QProxyStyle::styleHint(hint, option, widget, data);
  }
};

class ButtonStyle : public testing::Test {
 protected:
  ButtonStyle() { QApplication::setStyle(new IconStyle); }
  ~ButtonStyle() override { QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion"))); }

  static void expectPlain(const QWidget& dialog) {
    int buttons = 0;
    for (const QDialogButtonBox* box : dialog.findChildren<QDialogButtonBox*>()) {
      for (const QAbstractButton* button : box->buttons()) {
        ++buttons;
        EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
      }
    }
    EXPECT_GT(buttons, 0) << dialog.windowTitle().toStdString();
  }

  EditorBench bench;
};

TEST_F(ButtonStyle, OfAStandardBoxHasIconsHere) {
  const QDialogButtonBox box(QDialogButtonBox::Ok);
  EXPECT_FALSE(box.button(QDialogButtonBox::Ok)->icon().isNull()) << "else these tests could not fail";
}

TEST_F(ButtonStyle, OfBoxesHasNoIcons) {
  UserInterface& boxes = bench.platform().UserInterface();
  const auto look = [](QWidget& box) {
    settle();
    expectPlain(box);
    writeScreenshot(box, "buttons " + box.windowTitle().toStdString());
    box.close();
  };
  whenModalOpens(look);
  boxes.MessageBox("Go on?", 35, "Question");
  whenModalOpens(look);
  boxes.InputBox("Name:", "Input", "before", nullptr);
  whenModalOpens(look);
  boxes.AboutBox("Product", "Version 1", nullptr);
}

TEST_F(ButtonStyle, OfTheFileDialogAndItsQuestionHasNoIcons) {
  const QTemporaryDir folder;
  QFile taken(folder.filePath(QStringLiteral("taken.bmp")));
  ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
  taken.close();
  bench.showPicture(noise(20, 10));
  whenModalOpens([&](QWidget& dialog) {
    settle();
    expectPlain(dialog);
    whenModalOpens([&](QWidget& question) {
      settle();
      EXPECT_NE(qobject_cast<QMessageBox*>(&question), nullptr);
      expectPlain(question);
      question.close();
      dynamic_cast<QFileDialog&>(dialog).reject();
    });
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(taken.fileName());
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  });
  EXPECT_FALSE(bench.editor().SaveImageAs());
}

TEST_F(ButtonStyle, OfTheColorDialogHasNoIcons) {
  QWidget host;
  qt::ColorPickerWidget picker(&host);
  host.show();
  picker.dropDown();
  settle();
  auto* const colors = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(colors, nullptr);
  colors->actions().back()->trigger();  // "More Colors..."
  colors->close();
  settle();
  auto* const dialog = picker.findChild<QColorDialog*>();
  ASSERT_NE(dialog, nullptr);
  expectPlain(*dialog);
  dialog->close();
  settle();
}

}  // namespace
}  // namespace kestrel::desktop
