#pragma once

#include <cstdint>

#include "engine/effects/rows/FilterTable.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The fast way to scale a picture weighed by alpha: rows are summed in whole numbers, eight results at a
/// time and a strip of columns at a time, which stays in the nearest cache from the picture's bytes to the
/// result's. It is for tables with short runs, and for shapes that lose nothing by summing rows first.
bool suitsFixedPointResample(const FilterTable& columns, const FilterTable& rows);

/// Filters the picture by one table along its rows and one along its columns, which suit, into `result`,
/// which has as many columns and rows as the tables have outputs. Each value is within one level of what
/// exact arithmetic gives.
void fixedPointResample(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
                        const Pixels& result);

}  // namespace kestrel::engine
