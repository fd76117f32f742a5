#pragma once

#include <QWidget>

#include "imaging/contract/Types.h"

namespace kestrel::qt {

/// The handle by which the logic identifies a widget.
WindowHandle handleOf(const QWidget* widget);

/// The widget of a handle; null for 0 and for a destroyed widget.
QWidget* widgetOf(WindowHandle handle);

}  // namespace kestrel::qt
