#include "Handles.h"

#include <QApplication>

namespace kestrel::qt {

WindowHandle handleOf(const QWidget* widget) { return reinterpret_cast<WindowHandle>(widget); }

QWidget* widgetOf(WindowHandle handle) {
  if (handle == 0) return nullptr;
  const QWidgetList alive = QApplication::allWidgets();
  auto* const widget = reinterpret_cast<QWidget*>(handle);
  return alive.contains(widget) ? widget : nullptr;
}

}  // namespace kestrel::qt
