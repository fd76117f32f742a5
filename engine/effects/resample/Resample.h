#pragma once

#include <cstdint>
#include <functional>

#include "engine/effects/rows/FilterTable.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Takes each finished row of floats, four a pixel, weighed by alpha (see FloatRows.h); called on several
/// threads at a time.
using RowSink = std::function<void(std::int32_t y, const float* row)>;

/// Filters a picture by one table along its rows and one along its columns, whatever the tables, and hands
/// over the rows of the result, each once, in no promised order.
void resample(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
              const RowSink& sink);

}  // namespace kestrel::engine
