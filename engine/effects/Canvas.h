#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// A picture placed, unscaled, on a canvas of another size.
///
/// `offsetX` and `offsetY` are where the picture's top left pixel comes to stand; negative ones, and a canvas
/// smaller than the picture, clip it. Canvas that the picture does not cover has the value `background`; the
/// picture's own pixels are kept as they are, transparent ones too. Raises RuntimeError 5 for a side below 1,
/// 7 for a canvas beyond the limits of a bitmap.
Bitmap resizeCanvas(const Bitmap& source, std::int32_t width, std::int32_t height, Pixel background,
                    std::int32_t offsetX, std::int32_t offsetY);

}  // namespace kestrel::engine
