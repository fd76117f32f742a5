#pragma once

#include <cstdint>
#include <vector>

#include "FilterTable.h"
#include "Resample.h"

namespace kestrel::engine {

/// A Gaussian along one axis, at a cost that does not grow with its width.
///
/// A wide bell makes so smooth a function that it need only be known at a grid of every `step` pixels, about
/// half a standard deviation, and can be interpolated between. So the picture is reduced to the grid by a
/// triangle of twice the step, whose variance the bell is short of, filtered there by a bell of two to three
/// grid steps, and interpolated (Catmull-Rom). A narrow bell has step 1 and is applied as it is.
class GaussianAxis {
 public:
  /// Blurs `inputs` pixels to `outputs` of them, of which the first stands at input `start`. Sigma 0 moves
  /// only.
  GaussianAxis(std::int32_t inputs, std::int32_t outputs, std::int32_t start, double sigma, FilterEdge edge);

  /// Whether `bell` alone brings the inputs to the outputs.
  bool direct() const { return step_ == 1; }

  /// What the axis makes of inputs that are all 1: for each output how much of the bell lies on them.
  std::vector<float> profile() const;

  const FilterTable& reduction() const { return reduction_; }          ///< from the picture to the grid
  const FilterTable& bell() const { return bell_; }                    ///< on the grid
  const FilterTable& interpolation() const { return interpolation_; }  ///< from the grid to the outputs

 private:
  void renormalize();

  std::int32_t step_;
  FilterTable reduction_, bell_, interpolation_;
};

/// Filters a picture along both axes, which have one sigma; hands over its rows as `resample` does.
void gaussianFilter(const FilterSource& source, const GaussianAxis& columns, const GaussianAxis& rows,
                    const RowSink& sink);

}  // namespace kestrel::engine
