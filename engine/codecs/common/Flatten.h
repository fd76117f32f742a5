#pragma once

#include <cstdint>

#include "Decoded.h"

namespace kestrel::engine {

/// Composites a row over white. Writes 3 bytes per pixel, red, green and blue; or 4, the last left unchanged.
void flattenRowOnWhite(const std::uint8_t* rgba, std::uint8_t* out, std::int32_t width,
                       int bytesPerPixel = 3);

/// Makes a bitmap opaque if its alpha is 0 everywhere: programs that write such files leave alpha unused.
void dropEmptyAlpha(Bitmap& bitmap);

}  // namespace kestrel::engine
