#pragma once

#include <algorithm>
#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Raises RuntimeError 5 for an empty bitmap: every effect wants a picture.
void requirePicture(const Bitmap& bitmap);

/// The smallest band of rows worth a thread of its own, where a pixel costs about as much as copying it
/// (`cost` 1) or so many times that.
constexpr std::int32_t rowsPerTask(std::int32_t width, std::int32_t cost = 1) {
  constexpr std::int32_t kPixelsPerTask = 128 * 1024;
  return std::max(1, kPixelsPerTask / cost / std::max(1, width));
}

}  // namespace kestrel::engine
