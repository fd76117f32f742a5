#pragma once

#include <cstdint>

#include "Codecs.h"

namespace kestrel::engine {

/// True if no pixel lets anything through.
bool isOpaque(const Bitmap& bitmap);

/// Writes a row's pixels over white as 3 bytes each: red, green, blue.
void flattenRowOnWhite(const std::uint8_t* rgba, std::uint8_t* rgb, std::int32_t width);

}  // namespace kestrel::engine
