#pragma once

#include <cstdint>

#include "engine/effects/rows/FilterTable.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Whether `fixedPointResample` suits: the tables have short runs, and the vertical pass first is not the
/// slower order. It is the fast way to scale: the vertical pass runs in integers, eight output rows and a
/// strip of columns at a time, so that intermediate results stay in the L1 cache.
bool suitsFixedPointResample(const FilterTable& columns, const FilterTable& rows);

/// Filters the premultiplied picture with the table `columns` along its rows and `rows` along its columns.
/// The tables must suit, and `result` must have as many columns and rows as they have outputs. Each channel
/// is within one level of exact arithmetic.
void fixedPointResample(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
                        const Pixels& result);

}  // namespace kestrel::engine
