#include "QtUserInterface.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>

#include "../Caption.h"
#include "../Text.h"
#include "../services/BusyPointer.h"
#include "AboutDialog.h"

namespace kestrel::qt {
namespace {

constexpr std::int32_t kButtonBits = 0x0F;
constexpr std::int32_t kIconBits = 0xF0;
constexpr std::int32_t kDefaultButtonBits = 0xF00;

/// The button sets by number, their buttons in the order in which a default button is counted.
QList<QMessageBox::StandardButton> buttonsOf(std::int32_t style) {
  switch (style & kButtonBits) {
    case 1:
      return {QMessageBox::Ok, QMessageBox::Cancel};
    case 2:
      return {QMessageBox::Abort, QMessageBox::Retry, QMessageBox::Ignore};
    case kBoxYesNoCancel:
      return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
    case 4:
      return {QMessageBox::Yes, QMessageBox::No};
    case 5:
      return {QMessageBox::Retry, QMessageBox::Cancel};
    default:
      return {QMessageBox::Ok};
  }
}

QMessageBox::Icon iconOf(std::int32_t style) {
  switch (style & kIconBits) {
    case kBoxCritical:
      return QMessageBox::Critical;
    case kBoxQuestion:
      return QMessageBox::Question;
    case kBoxExclamation:
      return QMessageBox::Warning;
    case kBoxInformation:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

std::int32_t answerOf(int button) {
  switch (button) {
    case QMessageBox::Ok:
      return kAnswerOK;
    case QMessageBox::Abort:
      return 3;
    case QMessageBox::Retry:
      return 4;
    case QMessageBox::Ignore:
      return 5;
    case QMessageBox::Yes:
      return kAnswerYes;
    case QMessageBox::No:
      return kAnswerNo;
    default:
      return kAnswerCancel;
  }
}

}  // namespace

QString QtUserInterface::titleOf(const std::string& title) const {
  return translated(title.empty() ? applicationTitle_ : title);
}

std::int32_t QtUserInterface::MessageBox(const std::string& text, std::int32_t style,
                                         const std::string& title) {
  const BusyPause pause;
  QMessageBox box(QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  setCaption(box, titleOf(title));
  box.setText(withLineFeeds(translated(text)));
  box.setIcon(iconOf(style));
  const auto buttons = buttonsOf(style);
  for (const auto button : buttons) box.addButton(button);
  box.setDefaultButton(buttons.value((style & kDefaultButtonBits) >> 8, buttons.front()));
  if (buttons.size() == 1) box.setEscapeButton(buttons.front());
  return answerOf(box.exec());
}

std::string QtUserInterface::InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& defaultText, const Point* position) {
  const BusyPause pause;
  QInputDialog box(QApplication::activeWindow());
  setCaption(box, titleOf(title));
  box.setLabelText(withLineFeeds(translated(prompt)));
  box.setTextValue(toQt(defaultText));
  if (position) box.move(position->X, position->Y);
  return box.exec() == QDialog::Accepted ? fromQt(box.textValue()) : std::string();
}

void QtUserInterface::AboutBox(const std::string& title, const std::string& versionText,
                               const PicturePtr& picture) {
  const BusyPause pause;
  AboutDialog(translated(title), translated(versionText), picture, QApplication::activeWindow()).exec();
}

}  // namespace kestrel::qt
