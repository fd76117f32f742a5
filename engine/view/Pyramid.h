#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Image pyramid for zoom factors below 1: level n has half the sides of level n - 1, rounded up, each pixel
/// the average of four. Level 0 is the picture; the others have premultiplied alpha. Blocks are computed when
/// they are shown, and recomputed where the picture has changed.
class Pyramid {
 public:
  static constexpr std::int32_t kLevels = 6;

  /// Call when the picture or its size has changed.
  void reset();

  /// Call when a part of the picture has changed.
  void invalidate(const Rectangle& area);

  /// A level from 1 to `kLevels`, up to date where it shows `area`, in picture pixels. The picture must be
  /// the same since the last `reset`. Raises RuntimeError 7 or std::bad_alloc when out of memory.
  ConstPixels level(const Bitmap& picture, std::int32_t level, const Rectangle& area);

 private:
  /// Side in picture pixels of a block, the unit that is computed and invalidated: one pixel of the last
  /// level.
  static constexpr std::int32_t kBlock = 1 << kLevels;

  /// What the threads that update blocks share. They must not ask bitmaps for it: `Bitmap::writable` changes
  /// the bitmap.
  struct Levels {
    ConstPixels picture;
    std::array<Pixels, kLevels + 1> averages;  ///< 0 is not used
  };
  Levels prepare(const Bitmap& picture, std::int32_t level);
  void updateBlock(const Levels& levels, std::int32_t column, std::int32_t row, std::int32_t level);

  std::array<Bitmap, kLevels + 1> levels_;  ///< 0 is not used
  std::vector<std::uint8_t> upToDate_;      ///< per block, the last level that is up to date
  std::int32_t columns_ = 0;
  std::int32_t rows_ = 0;
};

}  // namespace kestrel::engine
