#pragma once

#include <algorithm>
#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Raises RuntimeError 5 for an empty bitmap.
void requirePicture(const Bitmap& bitmap);

/// Minimum rows of a band for `forRows`. `cost` is the cost of a pixel relative to copying it.
constexpr std::int32_t rowsPerTask(std::int32_t width, std::int32_t cost = 1) {
  constexpr std::int32_t kPixelsPerTask = 128 * 1024;
  return std::max(1, kPixelsPerTask / cost / std::max(1, width));
}

}  // namespace kestrel::engine
