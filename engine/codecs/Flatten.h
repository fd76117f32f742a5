#pragma once

#include <cstdint>

#include "Codecs.h"

namespace kestrel::engine {

/// True if no pixel lets anything through.
bool isOpaque(const Bitmap& bitmap);

/// Writes a row's pixels over white as 3 bytes each: red, green, blue.
void flattenRowOnWhite(const std::uint8_t* rgba, std::uint8_t* rgb, std::int32_t width);

/// Makes a bitmap opaque whose alpha is zero everywhere: the programs that write such files mean no alpha.
void dropEmptyAlpha(Bitmap& bitmap);

}  // namespace kestrel::engine
