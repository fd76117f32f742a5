#pragma once

#include <cstdint>

#include "Bitmap.h"

namespace kestrel::engine {

/// Whether every pixel's alpha is 255; uses all cores.
bool isOpaque(const ConstPixels& picture);

/// The same for `count` pixels of a row.
bool isOpaqueRow(const std::uint8_t* rgba, std::int32_t count);

}  // namespace kestrel::engine
