#pragma once

#include <QIcon>
#include <string_view>

#include "platform/docking/StoredLayout.h"

namespace kestrel::qt {

/// The drawn icon of that name, rendered at whatever size it is shown, in the colours of the theme in use at
/// that moment; null where none was drawn.
QIcon drawnIcon(std::string_view name);

/// The picture of the image that the layout holds, without its transparent colour.
QIcon storedIcon(const docking::StoredImage& image);

}  // namespace kestrel::qt
