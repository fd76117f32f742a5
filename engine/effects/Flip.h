#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Direction of a flip; hosts pass the numbers.
enum class FlipDirection { LeftToRight = 0, TopToBottom = 1 };

/// The picture mirrored, without loss. Raises RuntimeError 5 for another direction.
Bitmap flip(const Bitmap& source, FlipDirection direction);

/// The picture turned by 180 degrees, without loss.
Bitmap halfTurn(const Bitmap& source);

}  // namespace kestrel::engine
