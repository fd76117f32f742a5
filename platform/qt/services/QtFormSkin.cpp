#include "QtFormSkin.h"

#include <QPalette>

#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {

void QtFormSkin::ApplyToForm(Control& formOrControl, OLE_COLOR foreColor, OLE_COLOR backColor) {
  QWidget* const widget = widgetOf(formOrControl.hWnd());
  if (!widget) return;
  QPalette palette;
  if (foreColor != kNoColor) palette.setColor(QPalette::WindowText, toColor(foreColor));
  if (backColor != kNoColor) palette.setColor(QPalette::Window, toColor(backColor));
  widget->setPalette(palette);
}

}  // namespace kestrel::qt
