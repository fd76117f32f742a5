#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Places a picture, unscaled, on a canvas of another size.
///
/// The picture's top left pixel goes to (`offsetX`, `offsetY`); parts outside the canvas are clipped. The
/// rest of the canvas is filled with `background`; the picture's pixels are copied unchanged, transparent
/// ones too. Raises RuntimeError 5 for a side below 1, 7 for a canvas beyond the limits of a bitmap.
Bitmap resizeCanvas(const Bitmap& source, std::int32_t width, std::int32_t height, Pixel background,
                    std::int32_t offsetX, std::int32_t offsetY);

}  // namespace kestrel::engine
