#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Random pixels, some of them transparent.
inline Bitmap noise(std::int32_t width, std::int32_t height, std::uint32_t seed = 1) {
  std::mt19937 random(seed);
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      const auto value = static_cast<std::uint32_t>(random());
      std::memcpy(pixels.row(y) + 4 * x, &value, 4);
    }
  }
  return bitmap;
}

inline bool samePixels(const Bitmap& a, const Bitmap& b) {
  if (a.width() != b.width() || a.height() != b.height()) return false;
  for (std::int32_t y = 0; y < a.height(); ++y) {
    const auto bytes = 4 * static_cast<std::size_t>(a.width());
    if (std::memcmp(a.pixels().row(y), b.pixels().row(y), bytes) != 0) return false;
  }
  return true;
}

/// A copy with its own pixels.
inline Bitmap deepCopy(const Bitmap& bitmap) {
  Bitmap copy = bitmap;
  copy.writable();
  return copy;
}

/// Fills a rectangle inside the picture.
inline void fill(Pixels pixels, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                 Pixel value) {
  for (std::int32_t y = top; y < top + height; ++y) {
    for (std::int32_t x = left; x < left + width; ++x) std::memcpy(pixels.row(y) + 4 * x, &value, 4);
  }
}

}  // namespace kestrel::engine
