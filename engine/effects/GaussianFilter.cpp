#include "GaussianFilter.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "Common.h"
#include "FilterRows.h"
#include "FloatImage.h"
#include "engine/Parallel.h"

namespace kestrel::engine {
namespace {

// The interpolation reaches this many grid points beyond the first and last output.
constexpr std::int32_t kInterpolationReach = 2;

FilterKernel narrowBell(double sigma) { return sigma > 0 ? gaussianKernel(sigma) : areaKernel(1); }

/// Along one axis, what the table makes of these inputs.
std::vector<float> filtered(const std::vector<float>& in, const FilterTable& table) {
  std::vector<float> result(static_cast<std::size_t>(table.outputs()));
  for (std::int32_t i = 0; i < table.outputs(); ++i) {
    const FilterTable::Run& run = table.run(i);
    result[static_cast<std::size_t>(i)] =
        std::inner_product(table.weights(run), table.weights(run) + run.count, in.begin() + run.first, 0.0F);
  }
  return result;
}

}  // namespace

GaussianAxis::GaussianAxis(std::int32_t inputs, std::int32_t outputs, std::int32_t start, double sigma,
                           FilterEdge edge)
    : step_(std::max(1, static_cast<std::int32_t>(sigma / 2))) {
  if (direct()) {
    bell_ = FilterTable(inputs, outputs, start, 1, narrowBell(sigma), edge);
    return;
  }
  const double step = step_;
  // Variances add: the triangle's is (step^2 - 1) / 6, the interpolation's none.
  const FilterKernel bell = gaussianKernel(std::sqrt(sigma * sigma - (step * step - 1) / 6) / step);
  const FilterKernel triangle{[step](double x) { return std::max(0.0, 1 - x / step); }, step};
  const auto reach = static_cast<std::int32_t>(std::ceil(bell.radius));
  const std::int32_t points = (outputs - 1) / step_ + 1 + 2 * kInterpolationReach;
  reduction_ = FilterTable(inputs, points + 2 * reach, start - (kInterpolationReach + reach) * step, step,
                           triangle, FilterEdge::Transparent);
  bell_ = FilterTable(points + 2 * reach, points, reach, 1, bell, FilterEdge::Transparent);
  interpolation_ = FilterTable(points, outputs, kInterpolationReach, 1 / step, catmullRomKernel(),
                               FilterEdge::Renormalize);
  if (edge == FilterEdge::Renormalize) renormalize();
}

/// Lets the share of each bell that lies on the inputs count for the whole of it.
void GaussianAxis::renormalize() {
  const std::vector<float> shares = profile();
  for (std::int32_t i = 0; i < interpolation_.outputs(); ++i) {
    interpolation_.scale(i, 1.0 / static_cast<double>(shares[static_cast<std::size_t>(i)]));
  }
}

std::vector<float> GaussianAxis::profile() const {
  if (direct()) return filtered(std::vector<float>(static_cast<std::size_t>(bell_.inputs()), 1.0F), bell_);
  const std::vector<float> ones(static_cast<std::size_t>(reduction_.inputs()), 1.0F);
  return filtered(filtered(filtered(ones, reduction_), bell_), interpolation_);
}

void gaussianFilter(const FilterSource& source, const GaussianAxis& columns, const GaussianAxis& rows,
                    const RowSink& sink) {
  if (columns.direct()) {
    resample(source, columns.bell(), rows.bell(), sink);
    return;
  }
  FloatImage reduced(source.values(columns.reduction().outputs()), rows.reduction().outputs());
  forRows(rows.reduction().outputs(), rowsPerTask(source.picture().width, 8),
          [&](std::int32_t first, std::int32_t last) {
            std::vector<float> scratch;
            for (std::int32_t y = first; y < last; ++y) {
              source.sumAndFilter(rows.reduction(), y, columns.reduction(), scratch, reduced.row(y));
            }
          });

  const std::size_t summedValues = source.values(columns.bell().inputs());
  const std::size_t gridValues = source.values(columns.bell().outputs());
  const RowLoader load = [&](std::int32_t y, std::vector<float>& scratch, float* row) {
    scratch.resize(summedValues + gridValues + 2 * kRowSlack);
    float* const summed = scratch.data();
    float* const grid = summed + summedValues + kRowSlack;
    const FilterTable::Run& run = rows.bell().run(y);
    std::vector<const float*> summands;
    for (std::int32_t i = 0; i < run.count; ++i) summands.push_back(reduced.row(run.first + i));
    sumFloatRows(summands.data(), rows.bell().weights(run), run.count, summedValues, summed);
    source.filterColumns(summed, columns.bell(), grid);
    source.filterColumns(grid, columns.interpolation(), row);
  };
  constexpr std::int32_t kCost = 8;
  filterRows(load, source.values(columns.interpolation().outputs()), kCost, rows.interpolation(), sink);
}

}  // namespace kestrel::engine
