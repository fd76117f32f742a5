#pragma once

#include <QIcon>

#include "platform/docking/StoredLayout.h"

namespace kestrel::qt {

/// The stored image of a layout, with its transparent color masked out.
QIcon storedIcon(const docking::StoredImage& image);

}  // namespace kestrel::qt
