#pragma once

#include <QWidget>
#include <memory>

#include "imaging/contract/Control.h"

namespace kestrel::qt {

/// Makes the control for a widget by the widget's class; null for other classes. The widget's object name is
/// the control's name. An element of a control array has the dynamic property `index`, and its object name
/// ends in "_" and that number, since object names are unique on a form.
std::unique_ptr<Control> controlOf(QWidget& widget);

}  // namespace kestrel::qt
