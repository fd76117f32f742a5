#include "QtUserInterface.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QInputDialog>
#include <QMessageBox>
#include <QTextEdit>

#include "AboutDialog.h"
#include "Modal.h"
#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/services/BusyPointer.h"

namespace kestrel::qt {
namespace {

constexpr std::int32_t kButtonBits = 0x0F;
constexpr std::int32_t kIconBits = 0xF0;
constexpr std::int32_t kDefaultButtonBits = 0xF00;

/// A message box that can always be closed, with any buttons, so that it never keeps the program from ending.
class Box final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void closeEvent(QCloseEvent* event) override {
    QMessageBox::closeEvent(event);
    if (event->isAccepted()) return;
    event->accept();
    QDialog::closeEvent(event);
  }
};

/// The button sets by number; the order of buttons defines the number of a default button.
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

/// A text with many lines would be higher than the screen: what follows the first paragraph can be scrolled.
void setText(QMessageBox& box, const QString& text) {
  constexpr int kMostLines = 15;
  constexpr QSize kListSize(520, 200);
  const QString end = QStringLiteral("\n\n");
  const qsizetype first = text.indexOf(end);
  if (first < 0 || text.count(u'\n') < kMostLines) {
    box.setText(text);
    return;
  }
  box.setText(text.left(first));
  box.setDetailedText(text.mid(first + end.size()));
  for (QAbstractButton* button : box.buttons()) {
    if (box.buttonRole(button) != QMessageBox::ActionRole) continue;
    // The list is what the box is about, so it is not to be hidden.
    button->click();
    button->hide();
  }
  if (auto* const list = box.findChild<QTextEdit*>()) {
    list->setFixedHeight(kListSize.height());
    list->setMinimumWidth(kListSize.width());
  }
}

}  // namespace

QString QtUserInterface::titleOf(const std::string& title) const {
  return translated(title.empty() ? applicationTitle_ : title);
}

std::int32_t QtUserInterface::MessageBox(const std::string& text, std::int32_t style,
                                         const std::string& title, WindowHandle owner) {
  const BusyPause pause;
  Box box(dialogParent(owner));
  box.setTextFormat(Qt::PlainText);
  setCaption(box, titleOf(title));
  box.setIcon(iconOf(style));
  const auto buttons = buttonsOf(style);
  for (const auto button : buttons) box.addButton(button);
  box.setDefaultButton(buttons.value((style & kDefaultButtonBits) >> 8, buttons.front()));
  if (buttons.size() == 1) box.setEscapeButton(buttons.front());
  // After the buttons: adding one shows all of them.
  setText(box, withLineFeeds(translated(text)));
  return answerOf(execModal(box, calls_));
}

std::string QtUserInterface::InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& defaultText, const Point* position,
                                      WindowHandle owner) {
  const BusyPause pause;
  QInputDialog box(dialogParent(owner));
  setCaption(box, titleOf(title));
  box.setLabelText(withLineFeeds(translated(prompt)));
  box.setTextValue(toQt(defaultText));
  if (position) box.move(position->X, position->Y);
  return execModal(box, calls_) == QDialog::Accepted ? fromQt(box.textValue()) : std::string();
}

void QtUserInterface::AboutBox(const std::string& title, const std::string& versionText,
                               const PicturePtr& picture, WindowHandle owner) {
  const BusyPause pause;
  AboutDialog box(translated(title), translated(versionText), picture, dialogParent(owner));
  execModal(box, calls_);
}

}  // namespace kestrel::qt
