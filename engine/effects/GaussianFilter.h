#pragma once

#include <cstdint>

#include "FilterTable.h"
#include "Resample.h"

namespace kestrel::engine {

/// A Gaussian along one axis, at a cost that does not grow with its width.
///
/// A wide bell makes so smooth a function that it need only be summed where a grid of every `step` pixels
/// stands, about half a standard deviation, and can be interpolated between (Catmull-Rom); the error is below
/// 1/1000 of the range. A narrow one has step 1, and its sums are the result.
class GaussianAxis {
 public:
  /// Blurs `inputs` pixels to `outputs` of them, of which the first stands at input `start`. Sigma 0 moves
  /// only.
  GaussianAxis(std::int32_t inputs, std::int32_t outputs, std::int32_t start, double sigma, FilterEdge edge);

  std::int32_t step() const { return step_; }
  const FilterTable& sums() const { return sums_; }
  const FilterTable& interpolation() const { return interpolation_; }

 private:
  std::int32_t step_;
  FilterTable sums_, interpolation_;
};

/// Filters a picture along both axes, which have one sigma; hands over its rows as `resample` does.
void gaussianFilter(const FilterSource& source, const GaussianAxis& columns, const GaussianAxis& rows,
                    const RowSink& sink);

}  // namespace kestrel::engine
