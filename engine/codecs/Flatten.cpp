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
  // Eight pixels at a time: a save looks at each row just before it is used, so the look must cost little.
  using Group = std::array<std::uint64_t, 4>;
  constexpr auto kPixels = static_cast<std::int32_t>(sizeof(Group) / sizeof(Pixel));
  Group all;
  all.fill(~std::uint64_t{0});
  std::int32_t x = 0;
  for (; x + kPixels <= width; x += kPixels) {
    Group group;
    std::memcpy(group.data(), rgba + std::ptrdiff_t{4} * x, sizeof group);
    for (std::size_t i = 0; i < all.size(); ++i) all[i] &= group[i];
  }
  std::array<std::uint8_t, sizeof all> seen;
  std::memcpy(seen.data(), all.data(), sizeof all);
  std::uint8_t alpha = 255;
  for (std::size_t i = 3; i < seen.size(); i += 4) alpha &= seen[i];
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
