#pragma once

#include <cstdint>
#include <functional>

#include "engine/effects/rows/FilterTable.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Receives each finished row: premultiplied, four floats per pixel (see FloatRows.h). Called on several
/// threads at a time.
using RowSink = std::function<void(std::int32_t y, const float* row)>;

/// Filters a picture with the table `columns` along its rows and `rows` along its columns; for any tables.
/// Passes each row of the result to `sink` once, in undefined order.
void resample(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
              const RowSink& sink);

}  // namespace kestrel::engine
