#pragma once

#include <cstdint>

#include "Decoded.h"

namespace kestrel::engine {

/// Writes a row's pixels over white as 3 bytes each: red, green, blue; or as 4, the last left as it is.
void flattenRowOnWhite(const std::uint8_t* rgba, std::uint8_t* out, std::int32_t width,
                       int bytesPerPixel = 3);

/// Makes a bitmap opaque whose alpha is zero everywhere: the programs that write such files mean no alpha.
void dropEmptyAlpha(Bitmap& bitmap);

}  // namespace kestrel::engine
