#pragma once

#include <cstddef>
#include <cstdint>

/// Intermediate rows of the fixed-point kernels.
namespace kestrel::engine {

/// Output rows per group.
inline constexpr std::int32_t kGroupRows = 8;
/// Pixels are processed in blocks of this many: 64 bytes.
inline constexpr std::int32_t kGroupBlock = 16;

/// Premultiplied pixels of pairs of rows, paired as in FixedPointTable: 16-bit numbers minus 32768, eight per
/// pixel of a pair. Their order within a block depends on the vector target. Memory for one more pair is
/// required, since pairs are summed two at a time.
struct RowPairs {
  std::int16_t* data = nullptr;
  std::size_t stride = 0;   ///< numbers from one pair to the next
  std::int32_t first = 0;   ///< the first pair held
  std::int32_t count = 0;   ///< pairs held
  std::int32_t pixels = 0;  ///< a multiple of kGroupBlock
};

}  // namespace kestrel::engine
