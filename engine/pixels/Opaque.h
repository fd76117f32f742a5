#pragma once

#include <cstdint>

#include "Bitmap.h"

namespace kestrel::engine {

/// Whether every pixel's alpha is 255; looked at on all cores.
bool isOpaque(const ConstPixels& picture);

/// The same of `count` pixels in a row.
bool isOpaqueRow(const std::uint8_t* rgba, std::int32_t count);

}  // namespace kestrel::engine
