#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The part of a picture inside a rectangle, in pixels.
///
/// A negative width or height turns the rectangle round: it reaches to the left of `left`, or above `top`.
/// What lies outside the picture is cut off the rectangle. Raises RuntimeError 5 if nothing remains.
Bitmap crop(const Bitmap& source, std::int32_t left, std::int32_t top, std::int32_t width,
            std::int32_t height);

}  // namespace kestrel::engine
