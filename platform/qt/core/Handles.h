#pragma once

#include <QWidget>

#include "imaging/contract/Types.h"

namespace kestrel::qt {

/// The number under which the logic knows a widget.
WindowHandle handleOf(const QWidget* widget);

/// The widget of a handle; null for 0 and for a widget that is gone.
QWidget* widgetOf(WindowHandle handle);

}  // namespace kestrel::qt
