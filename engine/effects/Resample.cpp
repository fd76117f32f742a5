#include "Resample.h"

#include <algorithm>

#include "Common.h"
#include "FilterRows.h"
#include "engine/Parallel.h"

namespace kestrel::engine {
namespace {

/// Sums rows, then filters the sum along itself: for shrinking, where few sums are left for that.
void sumFirst(const ConstPixels& picture, Channels channels, const FilterTable& columns,
              const FilterTable& rows, const RowSink& sink) {
  const std::int32_t cost = rows.longestRun() + columns.longestRun();
  forRows(rows.outputs(), rowsPerTask(columns.inputs(), cost), [&](std::int32_t first, std::int32_t last) {
    std::vector<float> scratch, filtered(rowValues(columns.outputs(), channels) + kRowSlack);
    for (std::int32_t y = first; y < last; ++y) {
      sumAndFilter(picture, channels, rows, y, columns, scratch, filtered.data());
      sink(y, filtered.data());
    }
  });
}

/// Filters input rows along themselves, then sums them: for enlarging, where each serves for several sums.
void filterFirst(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
                 const RowSink& sink) {
  const RowLoader load = [&](std::int32_t y, std::vector<float>& premultiplied, float* row) {
    premultiplied.resize(rowValues(picture.width, Channels::WeightedRgba) + kRowSlack);
    premultiplyRow(picture.row(y), picture.width, premultiplied.data());
    filterColumns4(premultiplied.data(), columns, row);
  };
  filterRows(load, rowValues(columns.outputs(), Channels::WeightedRgba), columns.longestRun(), rows, sink);
}

}  // namespace

std::size_t rowValues(std::int32_t width, Channels channels) {
  return static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
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

void sumAndFilter(const ConstPixels& picture, Channels channels, const FilterTable& rows, std::int32_t y,
                  const FilterTable& columns, std::vector<float>& scratch, float* out) {
  const FilterTable::Run& run = rows.run(y);
  scratch.resize(rowValues(picture.width, channels) + kRowSlack);
  if (channels == Channels::WeightedRgba) {
    sumPictureRows(picture.row(run.first), picture.stride, rows.weights(run), run.count, picture.width,
                   scratch.data());
    filterColumns4(scratch.data(), columns, out);
  } else {
    sumAlphaRows(picture.row(run.first), picture.stride, rows.weights(run), run.count, picture.width,
                 scratch.data());
    filterColumns1(scratch.data(), columns, out);
  }
}

void resample(const ConstPixels& picture, Channels channels, const FilterTable& columns,
              const FilterTable& rows, const RowSink& sink) {
  // Filtering along a row costs about twice as much a weight as summing rows, and premultiplying a row to
  // filter it first about four weights.
  const double alongRow = 2.0 * columns.outputs() * columns.longestRun();
  const double sumFirstCost =
      rows.outputs() * (static_cast<double>(columns.inputs()) * rows.longestRun() + alongRow);
  const double filterFirstCost = picture.height * (alongRow + 4.0 * columns.inputs()) +
                                 static_cast<double>(rows.outputs()) * columns.outputs() * rows.longestRun();
  if (channels == Channels::Alpha || sumFirstCost <= filterFirstCost) {
    sumFirst(picture, channels, columns, rows, sink);
  } else {
    filterFirst(picture, columns, rows, sink);
  }
}

}  // namespace kestrel::engine
