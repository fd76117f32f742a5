#include "QtFormUtility.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QLineEdit>

#include "BusyPointer.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Text.h"

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
  return !path.empty() && QFileInfo::exists(toQt(path));
}

bool QtFormUtility::IsModifierDown() {
  return QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
}

}  // namespace kestrel::qt
