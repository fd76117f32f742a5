#pragma once

#include <cstdint>

#include "FixedPointTable.h"
#include "RowPairs.h"
#include "engine/effects/rows/FilterTable.h"
#include "engine/pixels/Bitmap.h"

/// Row kernels of fixed-point scaling: the vertical pass sums picture rows in integers, eight output rows at
/// a time; the horizontal pass then filters all eight as floats with the same weights.
///
/// Pixels are premultiplied in between. All four channels are scaled to 0 to 65025: red, green and blue times
/// alpha, and alpha times 255.
namespace kestrel::engine {

/// Premultiplies `pairs.pixels` pixels per row of the picture, from column `x` on, a multiple of kGroupBlock,
/// into `pairs`; may read the padding of the picture's rows. `lead` is the table's. A first or last row whose
/// partner is outside the picture is paired with itself.
void premultiplyPairs(const ConstPixels& picture, std::int32_t x, std::int32_t lead, const RowPairs& pairs);

/// Vertical pass: computes the output rows `y` to y + 7 (beyond the last one, that one again), scaled by
/// FixedPointTable::kOne. `out` holds for each pixel its values in all eight rows: 32 floats, aligned to 64
/// bytes.
void verticalPass(const RowPairs& pairs, const FixedPointTable& table, std::int32_t y, float* out);

/// Horizontal pass: filters eight rows and stores the outputs `first` to `last`, not included, as pixels with
/// straight alpha, rounded to the nearest and clamped to 0 to 255. Alpha below half a level gives transparent
/// black. `in` has the layout of verticalPass, from pixel `origin` on, and must be readable for two more
/// pixels. Outputs are stored in fours: `first` is a multiple of 4, and the rows need memory for a multiple
/// of 4 pixels.
void horizontalPass(const float* in, std::int32_t origin, const FilterTable& table, std::int32_t first,
                    std::int32_t last, std::uint8_t* const* rows);

}  // namespace kestrel::engine
