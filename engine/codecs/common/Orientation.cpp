#include "Orientation.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

/// Tile width of the transposition, in rows of the result: pixels read from a source cache line stay
/// adjacent, so each line is loaded once.
constexpr std::int32_t kTile = 16;

void copyPixel(std::uint8_t* target, const std::uint8_t* source) { std::memcpy(target, source, 4); }

Bitmap mirrored(const Bitmap& bitmap, bool horizontally, bool vertically) {
  Bitmap result = Bitmap::uninitialized(bitmap.width(), bitmap.height());
  const ConstPixels from = bitmap.pixels();
  const Pixels to = result.writable();
  forRows(to.height, 64, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      const std::uint8_t* const source = from.row(vertically ? from.height - 1 - y : y);
      std::uint8_t* const target = to.row(y);
      if (!horizontally) {
        std::memcpy(target, source, static_cast<std::size_t>(to.width) * 4);
        continue;
      }
      for (std::int32_t x = 0; x < to.width; ++x) copyPixel(target + 4 * x, source + 4 * (to.width - 1 - x));
    }
  });
  return result;
}

/// Transposition: target (x, y) is source (y, x), each source coordinate optionally counted from the other
/// end.
Bitmap transposed(const Bitmap& bitmap, bool fromRight, bool fromBottom) {
  Bitmap result = Bitmap::uninitialized(bitmap.height(), bitmap.width());
  const ConstPixels from = bitmap.pixels();
  const Pixels to = result.writable();
  forRows(to.height, kTile, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t tile = first; tile < last; tile += kTile) {
      const std::int32_t tileEnd = std::min(last, tile + kTile);
      for (std::int32_t x = 0; x < to.width; ++x) {
        const std::uint8_t* const source = from.row(fromBottom ? from.height - 1 - x : x);
        for (std::int32_t y = tile; y < tileEnd; ++y) {
          copyPixel(to.row(y) + 4 * x, source + 4 * (fromRight ? from.width - 1 - y : y));
        }
      }
    }
  });
  return result;
}

}  // namespace

void applyOrientation(Decoded& decoded, std::int32_t orientation) {
  Bitmap& bitmap = decoded.bitmap;
  switch (orientation) {
    case 2:
      bitmap = mirrored(bitmap, true, false);
      break;
    case 3:
      bitmap = mirrored(bitmap, true, true);
      break;
    case 4:
      bitmap = mirrored(bitmap, false, true);
      break;
    case 5:
      bitmap = transposed(bitmap, false, false);
      break;
    case 6:
      bitmap = transposed(bitmap, false, true);
      break;
    case 7:
      bitmap = transposed(bitmap, true, true);
      break;
    case 8:
      bitmap = transposed(bitmap, true, false);
      break;
    default:
      return;
  }
  decoded.stored.orientation = orientation;
  if (orientation >= 5) std::swap(decoded.metadata.resolutionX, decoded.metadata.resolutionY);
}

}  // namespace kestrel::engine
