#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "FilterTable.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Which values of a picture a filter works on.
enum class Channels {
  Alpha = 1,        ///< the alpha alone: one float a pixel
  WeightedRgba = 4  ///< four floats a pixel, weighed by alpha (see FilterRows.h)
};

/// How many floats a row of so many pixels has.
std::size_t rowValues(std::int32_t width, Channels channels);

/// Makes one input row; `scratch` is its own from call to call within a band of rows.
using RowLoader = std::function<void(std::int32_t y, std::vector<float>& scratch, float* row)>;
/// Takes each finished row of floats; called on several threads at a time.
using RowSink = std::function<void(std::int32_t y, const float* row)>;

/// Filters a picture by one table along its rows and one along its columns, and hands over the rows of the
/// result, each once, in no promised order.
void resample(const ConstPixels& picture, Channels channels, const FilterTable& columns,
              const FilterTable& rows, const RowSink& sink);

/// Filters along the columns only. The input rows, of `values` floats, are asked of `load`, most of them once
/// and in order; only as many are kept as one output needs. `cost` is what loading a row costs, in copies of
/// it.
void filterRows(const RowLoader& load, std::size_t values, std::int32_t cost, const FilterTable& rows,
                const RowSink& sink);

/// One row of a picture filtered along both axes: the sum of the rows in `run`, filtered by `columns`.
void sumAndFilter(const ConstPixels& picture, Channels channels, const FilterTable& rows, std::int32_t y,
                  const FilterTable& columns, std::vector<float>& scratch, float* out);

}  // namespace kestrel::engine
