#include "QtFormUtility.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <filesystem>

#include "BusyPointer.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/Handles.h"

namespace kestrel::qt {

void QtFormUtility::SetPointer(std::int32_t pointer) { BusyPointer::set(pointer); }

void QtFormUtility::SelectAllText(TextBox& textBox) {
  if (auto* const edit = qobject_cast<QLineEdit*>(widgetOf(textBox.hWnd()))) edit->selectAll();
}

void QtFormUtility::SetFocusTo(Control& control) {
  if (QWidget* const widget = widgetOf(control.hWnd())) widget->setFocus(Qt::OtherFocusReason);
}

bool QtFormUtility::ShowDialog(Form& form, std::int32_t mode, Control* owner) {
  const BusyPause pause;
  form.Show(mode == 1, owner);
  bool result = false;
  form.QueryResult(result);
  return result;
}

bool QtFormUtility::FileExists(const std::string& path) {
  // Not by the toolkit, whose texts can't hold a name that is not valid UTF-8.
  std::error_code unknown;
  return std::filesystem::exists(os::pathOf(path), unknown);
}

bool QtFormUtility::IsModifierDown() {
  return QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
}

}  // namespace kestrel::qt
