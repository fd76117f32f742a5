#pragma once

#include <cstddef>
#include <cstdint>

#include "FixedPointTable.h"
#include "engine/effects/rows/FilterTable.h"
#include "engine/pixels/Bitmap.h"

/// The inner loops of scaling: rows are summed in whole numbers straight from the picture, eight results at a
/// time, and then filtered along themselves as floats, all eight by the same weights.
///
/// In between, pixels are weighed by their alpha, so that what is transparent adds no color. Each of the
/// four values of a pixel is brought to 0 to 65025: red, green and blue times alpha, and alpha times 255.
namespace kestrel::engine {

/// How many rows make a group.
inline constexpr std::int32_t kGroupRows = 8;
/// Pixels are worked on in blocks of this many: as many as 64 bytes hold.
inline constexpr std::int32_t kGroupBlock = 16;

/// Weighed pixels of pairs of rows as a FixedPointTable has them: 16-bit numbers less 32768, eight a pixel
/// and pair. Their order within a block is the business of the vectors at work. There is room for one more
/// pair, since pairs are summed two by two.
struct RowPairs {
  std::int16_t* data = nullptr;
  std::size_t stride = 0;   ///< numbers from one pair to the next
  std::int32_t first = 0;   ///< the first pair held
  std::int32_t count = 0;   ///< pairs held
  std::int32_t pixels = 0;  ///< a multiple of kGroupBlock
};

/// Weighs the pixels of the picture from column `x` on, which is a multiple of kGroupBlock, into `pairs`,
/// which says how many; the picture's padding serves for what lies beyond its width. `lead` is the table's. A
/// first or last row whose other half lies outside is paired with itself.
void premultiplyPairs(const ConstPixels& picture, std::int32_t x, std::int32_t lead, const RowPairs& pairs);

/// The rows `y` to y + 7 of the table's outputs (the last one again for those beyond), as sums of pairs,
/// times FixedPointTable::kOne. `out` is for each pixel its values in all eight rows: 32 floats, aligned to
/// 64 bytes.
void verticalPass(const RowPairs& pairs, const FixedPointTable& table, std::int32_t y, float* out);

/// Filters eight rows along themselves and stores the outputs `first` to `last`, not included, as pixels with
/// straight alpha, rounded to the nearest and limited to 0 to 255. Less than half a level of alpha is
/// transparent black. `in` is as verticalPass leaves it, from pixel number `origin` on, with room and some
/// numbers for two pixels more. Outputs come in fours, so `first` is a multiple of 4, and the rows have room
/// for a multiple of 4.
void horizontalPass(const float* in, std::int32_t origin, const FilterTable& table, std::int32_t first,
                    std::int32_t last, std::uint8_t* const* rows);

}  // namespace kestrel::engine
