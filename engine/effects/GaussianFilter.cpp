#include "GaussianFilter.h"

#include <algorithm>

#include "FilterRows.h"

namespace kestrel::engine {
namespace {

// The grid reaches this many points beyond the first and last output, for the interpolation to stand on.
constexpr std::int32_t kMargin = 2;

std::int32_t gridPoints(std::int32_t outputs, std::int32_t step) {
  return step == 1 ? outputs : (outputs - 1) / step + 1 + 2 * kMargin;
}

FilterKernel bell(double sigma) { return sigma > 0 ? gaussianKernel(sigma) : areaKernel(1); }

}  // namespace

GaussianAxis::GaussianAxis(std::int32_t inputs, std::int32_t outputs, std::int32_t start, double sigma,
                           FilterEdge edge)
    : step_(std::max(1, static_cast<std::int32_t>(sigma / 2))),
      sums_(inputs, gridPoints(outputs, step_),
            step_ == 1 ? start : start - static_cast<double>(kMargin) * step_, step_, bell(sigma), edge),
      interpolation_(gridPoints(outputs, step_), outputs, step_ == 1 ? 0 : kMargin, 1.0 / step_,
                     catmullRomKernel(), FilterEdge::Renormalize) {}

void gaussianFilter(const FilterSource& source, const GaussianAxis& columns, const GaussianAxis& rows,
                    const RowSink& sink) {
  if (columns.step() == 1) {
    resample(source, columns.sums(), rows.sums(), sink);
    return;
  }
  const RowLoader load = [&](std::int32_t y, std::vector<float>& scratch, float* row) {
    std::vector<float> grid(source.values(columns.sums().outputs()) + kRowSlack);
    source.sumAndFilter(rows.sums(), y, columns.sums(), scratch, grid.data());
    source.filterColumns(grid.data(), columns.interpolation(), row);
  };
  const std::int32_t cost = rows.sums().longestRun() + columns.sums().longestRun() / columns.step();
  filterRows(load, source.values(columns.interpolation().outputs()), cost, rows.interpolation(), sink);
}

}  // namespace kestrel::engine
