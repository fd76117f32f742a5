#pragma once

#include <QWidget>

namespace kestrel::qt {

/// Whether an open modal dialog keeps input from the widget. Drags reach it nevertheless.
bool isBlockedByDialog(const QWidget& widget);

}  // namespace kestrel::qt
