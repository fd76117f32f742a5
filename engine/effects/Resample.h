#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "FilterTable.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// A picture as a filter reads it: as four floats a pixel, weighed by alpha (see FilterRows.h), or the alpha
/// alone.
class FilterSource {
 public:
  /// Looks through the picture whether it is opaque, which saves the weighing.
  static FilterSource weightedRgba(const ConstPixels& picture);
  static FilterSource alpha(const ConstPixels& picture) { return {picture, 1, false}; }

  const ConstPixels& picture() const { return picture_; }
  std::int32_t channels() const { return channels_; }
  bool opaque() const { return opaque_; }

  /// How many floats make a row of so many pixels.
  std::size_t values(std::int32_t pixels) const {
    return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(channels_);
  }

  /// One row of the result: the picture's rows summed by a run of `rows`, then filtered along itself.
  void sumAndFilter(const FilterTable& rows, std::int32_t y, const FilterTable& columns,
                    std::vector<float>& scratch, float* out) const;

  /// Filters a row of floats along itself.
  void filterColumns(const float* in, const FilterTable& columns, float* out) const;

 private:
  FilterSource(const ConstPixels& picture, std::int32_t channels, bool opaque)
      : picture_(picture), channels_(channels), opaque_(opaque) {}

  ConstPixels picture_;
  std::int32_t channels_;
  bool opaque_;
};

/// Makes one input row; `scratch` is its own from call to call within a band of rows.
using RowLoader = std::function<void(std::int32_t y, std::vector<float>& scratch, float* row)>;
/// Takes each finished row of floats; called on several threads at a time.
using RowSink = std::function<void(std::int32_t y, const float* row)>;

/// Filters a picture by one table along its rows and one along its columns, and hands over the rows of the
/// result, each once, in no promised order.
void resample(const FilterSource& source, const FilterTable& columns, const FilterTable& rows,
              const RowSink& sink);

/// Filters along the columns only. The input rows, of `values` floats, are asked of `load`, most of them once
/// and in order; only as many are kept as one output needs. `cost` is what loading a row costs, in copies of
/// it.
void filterRows(const RowLoader& load, std::size_t values, std::int32_t cost, const FilterTable& rows,
                const RowSink& sink);

}  // namespace kestrel::engine
