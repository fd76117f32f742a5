#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Smaller and smaller copies of a picture, for showing it small: level n has half the sides of level n - 1,
/// rounded up, each pixel the average of four. Level 0 is the picture. The copies are made where they are
/// looked at, in premultiplied alpha, and made anew where the picture has changed.
class Pyramid {
 public:
  static constexpr std::int32_t kLevels = 6;

  /// The picture is another one, or another size.
  void reset();

  /// A part of the picture has changed.
  void invalidate(const Rectangle& area);

  /// A level of 1 to `kLevels`, up to date where it shows `area` of the picture. The picture must be the same
  /// one since the last `reset`. Raises RuntimeError 7 or std::bad_alloc when there is no memory for it.
  ConstPixels level(const Bitmap& picture, std::int32_t level, const Rectangle& area);

 private:
  /// Side of a block of the picture, the unit of being up to date: one pixel of the last level.
  static constexpr std::int32_t kBlock = 1 << kLevels;

  void prepare(const Bitmap& picture, std::int32_t level);
  void updateBlock(const Bitmap& picture, std::int32_t column, std::int32_t row, std::int32_t level);

  std::array<Bitmap, kLevels + 1> levels_;  ///< 0 is not used
  std::vector<std::uint8_t> upToDate_;      ///< per block, the last level that is
  std::int32_t columns_ = 0;
  std::int32_t rows_ = 0;
};

}  // namespace kestrel::engine
