#pragma once

#include <QIcon>

#include "platform/docking/StoredLayout.h"

namespace kestrel::qt {

/// The picture of the image that the layout holds, without its transparent colour.
QIcon storedIcon(const docking::StoredImage& image);

}  // namespace kestrel::qt
