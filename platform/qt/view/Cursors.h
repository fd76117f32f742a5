#pragma once

#include <QCursor>

#include "engine/view/ViewInput.h"

namespace kestrel::qt {

/// The desktop's pointer for a view cursor; the custom one is a magnifying glass.
QCursor cursorOf(engine::ViewCursor cursor);

}  // namespace kestrel::qt
