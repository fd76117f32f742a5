#pragma once

#include <QCursor>

#include "engine/view/ViewInput.h"

namespace kestrel::qt {

/// The pointer of the desktop for what a view asks for; the custom one is a magnifying glass.
QCursor cursorOf(engine::ViewCursor cursor);

}  // namespace kestrel::qt
