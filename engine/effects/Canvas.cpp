#include "Canvas.h"

#include <algorithm>
#include <cstring>

#include "engine/effects/rows/EffectRows.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

void fill(std::uint8_t* row, std::int64_t first, std::int64_t last, std::uint32_t value) {
  std::uint8_t* const end = row + last * 4;
  for (std::uint8_t* pixel = row + first * 4; pixel < end; pixel += 4) std::memcpy(pixel, &value, 4);
}

}  // namespace

Bitmap resizeCanvas(const Bitmap& source, std::int32_t width, std::int32_t height, Pixel background,
                    std::int32_t offsetX, std::int32_t offsetY) {
  requirePicture(source);
  Bitmap result = Bitmap::uninitialized(width, height);
  const ConstPixels from = source.pixels();
  const Pixels to = result.writable();
  std::uint32_t value;
  std::memcpy(&value, &background, sizeof value);

  // The picture's columns on the canvas; empty if the picture is outside.
  const std::int64_t left = std::clamp<std::int64_t>(offsetX, 0, width);
  const std::int64_t right = std::clamp(std::int64_t{offsetX} + from.width, left, std::int64_t{width});
  forRows(height, rowsPerTask(width), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      std::uint8_t* const row = to.row(y);
      const std::int64_t sourceY = std::int64_t{y} - offsetY;
      if (sourceY < 0 || sourceY >= from.height || left == right) {
        fill(row, 0, width, value);
        continue;
      }
      const std::uint8_t* const sourceRow = from.row(static_cast<std::int32_t>(sourceY));
      fill(row, 0, left, value);
      std::memcpy(row + left * 4, sourceRow + (left - offsetX) * 4,
                  static_cast<std::size_t>(right - left) * sizeof(Pixel));
      fill(row, right, width, value);
    }
  });
  return result;
}

}  // namespace kestrel::engine
