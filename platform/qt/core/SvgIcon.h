#pragma once

#include <QIcon>
#include <string_view>

namespace kestrel::qt {

/// The drawn icon of that name, rendered at the size it is shown at, in the colours of the theme in use at
/// that moment; null where none was drawn.
QIcon drawnIcon(std::string_view name);

}  // namespace kestrel::qt
