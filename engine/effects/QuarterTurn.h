#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture turned clockwise by `quarters` times 90 degrees, 1 to 3, without loss.
Bitmap quarterTurn(const Bitmap& source, int quarters);

}  // namespace kestrel::engine
