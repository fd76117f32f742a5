#include "BoxStyle.h"

#include "imaging/contract/UserInterface.h"

namespace kestrel::qt {
namespace {

constexpr std::int32_t kButtonBits = 0x0F;
constexpr std::int32_t kIconBits = 0xF0;
constexpr std::int32_t kDefaultButtonBits = 0xF00;

}  // namespace

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

QMessageBox::StandardButton defaultButtonOf(std::int32_t style) {
  const auto buttons = buttonsOf(style);
  return buttons.value((style & kDefaultButtonBits) >> 8, buttons.front());
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

}  // namespace kestrel::qt
