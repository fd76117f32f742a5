#include "Flatten.h"

#include <cstddef>

namespace kestrel::engine {

void flattenRowOnWhite(const std::uint8_t* rgba, std::uint8_t* out, std::int32_t width, int bytesPerPixel) {
  for (std::int32_t x = 0; x < width; ++x, rgba += 4, out += bytesPerPixel) {
    const int alpha = rgba[3];
    for (int i = 0; i < 3; ++i) {
      out[i] = static_cast<std::uint8_t>((rgba[i] * alpha + 255 * (255 - alpha) + 127) / 255);
    }
  }
}

void dropEmptyAlpha(Bitmap& bitmap) {
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    const std::uint8_t* const row = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x) {
      if (row[4 * x + 3] != 0) return;
    }
  }
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* const row = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x) row[4 * x + 3] = 255;
  }
}

}  // namespace kestrel::engine
