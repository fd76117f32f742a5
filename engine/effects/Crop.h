#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The part of a picture inside a rectangle given in pixels.
///
/// With a negative width or height the rectangle extends to the left of `left`, or above `top`. It is clipped
/// to the picture. Raises RuntimeError 5 if the clipped rectangle is empty.
Bitmap crop(const Bitmap& source, std::int32_t left, std::int32_t top, std::int32_t width,
            std::int32_t height);

}  // namespace kestrel::engine
