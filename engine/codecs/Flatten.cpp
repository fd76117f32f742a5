#include "Flatten.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace kestrel::engine {

bool isOpaque(const Bitmap& bitmap) {
  const ConstPixels pixels = bitmap.pixels();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    if (!isOpaqueRow(pixels.row(y), pixels.width)) return false;
  }
  return true;
}

bool isOpaqueRow(const std::uint8_t* rgba, std::int32_t width) {
  // Two pixels at a time, in four sums that need not wait for each other: a save looks at each row just
  // before it uses it, so the look must cost little.
  const auto two = [](const std::uint8_t* at) {
    std::uint64_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
  };
  std::uint64_t a = ~std::uint64_t{0}, b = a, c = a, d = a;
  std::int32_t x = 0;
  for (; x + 8 <= width; x += 8) {
    const std::uint8_t* const at = rgba + std::ptrdiff_t{4} * x;
    a &= two(at);
    b &= two(at + 8);
    c &= two(at + 16);
    d &= two(at + 24);
  }
  std::array<std::uint8_t, 8> seen;
  a &= b & c & d;
  std::memcpy(seen.data(), &a, sizeof a);
  std::uint8_t alpha = seen[3] & seen[7];
  for (; x < width; ++x) alpha &= rgba[4 * x + 3];
  return alpha == 255;
}

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
