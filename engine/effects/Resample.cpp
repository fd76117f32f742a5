#include "Resample.h"

#include <algorithm>

#include "Common.h"
#include "FilterRows.h"
#include "Opaque.h"
#include "engine/Parallel.h"

namespace kestrel::engine {
namespace {

/// Sums rows, then filters the sum along itself: for shrinking, where few sums are left for that.
void sumFirst(const FilterSource& source, const FilterTable& columns, const FilterTable& rows,
              const RowSink& sink) {
  const std::int32_t cost = rows.longestRun() + columns.longestRun();
  forRows(rows.outputs(), rowsPerTask(columns.inputs(), cost), [&](std::int32_t first, std::int32_t last) {
    std::vector<float> scratch, filtered(source.values(columns.outputs()) + kRowSlack);
    for (std::int32_t y = first; y < last; ++y) {
      source.sumAndFilter(rows, y, columns, scratch, filtered.data());
      sink(y, filtered.data());
    }
  });
}

/// Filters input rows along themselves, then sums them: for enlarging, where each serves for several sums.
void filterFirst(const FilterSource& source, const FilterTable& columns, const FilterTable& rows,
                 const RowSink& sink) {
  const ConstPixels& picture = source.picture();
  const RowLoader load = [&](std::int32_t y, std::vector<float>& premultiplied, float* row) {
    premultiplied.resize(source.values(picture.width) + kRowSlack);
    premultiplyRow(picture.row(y), picture.width, premultiplied.data());
    source.filterColumns(premultiplied.data(), columns, row);
  };
  filterRows(load, source.values(columns.outputs()), columns.longestRun(), rows, sink);
}

}  // namespace

FilterSource FilterSource::weightedRgba(const ConstPixels& picture) {
  return {picture, 4, isOpaque(picture)};
}

void FilterSource::sumAndFilter(const FilterTable& rows, std::int32_t y, const FilterTable& columns,
                                std::vector<float>& scratch, float* out) const {
  const FilterTable::Run& run = rows.run(y);
  const float* const weights = rows.weights(run);
  const std::uint8_t* const in = picture_.row(run.first);
  scratch.resize(values(picture_.width) + kRowSlack);
  if (channels_ == 4) {
    sumPictureRows(in, picture_.stride, weights, run.count, picture_.width, opaque_, scratch.data());
  } else {
    sumAlphaRows(in, picture_.stride, weights, run.count, picture_.width, scratch.data());
  }
  filterColumns(scratch.data(), columns, out);
}

void FilterSource::filterColumns(const float* in, const FilterTable& columns, float* out) const {
  channels_ == 4 ? filterColumns4(in, columns, out) : filterColumns1(in, columns, out);
}

void filterRows(const RowLoader& load, std::size_t values, std::int32_t cost, const FilterTable& rows,
                const RowSink& sink) {
  const std::int32_t kept = std::max(1, rows.longestRun());
  // Each band loads its first rows anew; bands many times as high make little of that.
  const std::int32_t bandRows =
      std::max(rowsPerTask(static_cast<std::int32_t>(values / 4), cost + kept), 4 * kept);
  forRows(rows.outputs(), bandRows, [&](std::int32_t first, std::int32_t last) {
    std::vector<std::vector<float>> ring(static_cast<std::size_t>(kept),
                                         std::vector<float>(values + kRowSlack));
    std::vector<std::int32_t> held(static_cast<std::size_t>(kept), -1);
    std::vector<const float*> summands(static_cast<std::size_t>(kept));
    std::vector<float> summed(values + kRowSlack), scratch;
    for (std::int32_t y = first; y < last; ++y) {
      const FilterTable::Run& run = rows.run(y);
      for (std::int32_t i = 0; i < run.count; ++i) {
        const std::int32_t wanted = run.first + i;
        const auto slot = static_cast<std::size_t>(wanted % kept);
        if (held[slot] != wanted) {
          load(wanted, scratch, ring[slot].data());
          held[slot] = wanted;
        }
        summands[static_cast<std::size_t>(i)] = ring[slot].data();
      }
      sumFloatRows(summands.data(), rows.weights(run), run.count, values, summed.data());
      sink(y, summed.data());
    }
  });
}

void resample(const FilterSource& source, const FilterTable& columns, const FilterTable& rows,
              const RowSink& sink) {
  // What the kernels take for one weight of one pixel, in instructions, as counted on 512-bit vectors.
  const double summing = source.opaque() ? 0.75 : 1.5;
  constexpr double kSummingFloats = 0.5, kFiltering = 0.75, kPerFilteredPixel = 8, kPremultiplying = 1.5;
  const double filteringRow = columns.outputs() * (kFiltering * columns.longestRun() + kPerFilteredPixel);
  const double sumFirstCost =
      rows.outputs() * (summing * rows.longestRun() * columns.inputs() + filteringRow);
  const double filterFirstCost = rows.inputs() * (kPremultiplying * columns.inputs() + filteringRow) +
                                 kSummingFloats * rows.longestRun() * rows.outputs() * columns.outputs();
  // What a thread keeps of filtered rows must stay small beside the picture itself.
  constexpr double kMostKeptValues = 16 << 20;
  const double keptValues = static_cast<double>(rows.longestRun()) * columns.outputs() * 4;
  if (source.channels() == 1 || sumFirstCost <= filterFirstCost || keptValues > kMostKeptValues) {
    sumFirst(source, columns, rows, sink);
  } else {
    filterFirst(source, columns, rows, sink);
  }
}

}  // namespace kestrel::engine
