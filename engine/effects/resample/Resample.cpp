#include "Resample.h"

#include <algorithm>
#include <vector>

#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/FloatRows.h"
#include "engine/parallel/Parallel.h"
#include "engine/pixels/Opaque.h"

namespace kestrel::engine {
namespace {

std::size_t valuesOf(std::int32_t pixels) { return std::size_t{4} * static_cast<std::size_t>(pixels); }

/// Vertical pass first: for reducing, where it leaves few rows to the horizontal pass.
void verticalFirst(const ConstPixels& picture, bool opaque, const FilterTable& columns,
                   const FilterTable& rows, const RowSink& sink) {
  const std::int32_t cost = rows.longestRun() + columns.longestRun();
  forRows(rows.outputs(), rowsPerTask(columns.inputs(), cost), [&](std::int32_t first, std::int32_t last) {
    std::vector<float> summed(valuesOf(picture.width) + kRowSlack);
    std::vector<float> filtered(valuesOf(columns.outputs()) + kRowSlack);
    for (std::int32_t y = first; y < last; ++y) {
      const FilterTable::Run& run = rows.run(y);
      sumPictureRows(picture.row(run.first), picture.stride, rows.weights(run), run.count, picture.width,
                     opaque, summed.data());
      filterColumns(summed.data(), columns, filtered.data());
      sink(y, filtered.data());
    }
  });
}

/// Horizontal pass first: for enlarging, where each filtered row serves for several output rows.
void horizontalFirst(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
                     const RowSink& sink) {
  const std::size_t values = valuesOf(columns.outputs());
  const std::int32_t kept = std::max(1, rows.longestRun());
  // Each band recomputes the rows that its first outputs share with the band before; high bands make that
  // negligible.
  const std::int32_t bandRows =
      std::max(rowsPerTask(columns.outputs(), columns.longestRun() + kept), 4 * kept);
  forRows(rows.outputs(), bandRows, [&](std::int32_t first, std::int32_t last) {
    std::vector<std::vector<float>> ring(static_cast<std::size_t>(kept),
                                         std::vector<float>(values + kRowSlack));
    std::vector<std::int32_t> held(static_cast<std::size_t>(kept), -1);
    std::vector<const float*> summands(static_cast<std::size_t>(kept));
    std::vector<float> summed(values + kRowSlack), premultiplied(valuesOf(picture.width) + kRowSlack);
    for (std::int32_t y = first; y < last; ++y) {
      const FilterTable::Run& run = rows.run(y);
      for (std::int32_t i = 0; i < run.count; ++i) {
        const std::int32_t wanted = run.first + i;
        const auto slot = static_cast<std::size_t>(wanted % kept);
        if (held[slot] != wanted) {
          premultiplyRow(picture.row(wanted), picture.width, premultiplied.data());
          filterColumns(premultiplied.data(), columns, ring[slot].data());
          held[slot] = wanted;
        }
        summands[static_cast<std::size_t>(i)] = ring[slot].data();
      }
      sumFloatRows(summands.data(), rows.weights(run), run.count, values, summed.data());
      sink(y, summed.data());
    }
  });
}

}  // namespace

void resample(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
              const RowSink& sink) {
  const bool opaque = isOpaque(picture);
  // Cost of the row kernels per tap and pixel, in instructions, counted for 512-bit vectors.
  const double summing = opaque ? 0.75 : 1.5;
  constexpr double kSummingFloats = 0.5, kFiltering = 0.75, kPerFilteredPixel = 8, kPremultiplying = 1.5;
  const double filteringRow = columns.outputs() * (kFiltering * columns.longestRun() + kPerFilteredPixel);
  const double verticalFirstCost =
      rows.outputs() * (summing * rows.longestRun() * columns.inputs() + filteringRow);
  const double horizontalFirstCost = rows.inputs() * (kPremultiplying * columns.inputs() + filteringRow) +
                                     kSummingFloats * rows.longestRun() * rows.outputs() * columns.outputs();
  // The filtered rows that a thread keeps must be small in comparison with the picture.
  constexpr double kMostKeptValues = 16 << 20;
  const double keptValues = static_cast<double>(rows.longestRun()) * columns.outputs() * 4;
  if (verticalFirstCost <= horizontalFirstCost || keptValues > kMostKeptValues) {
    verticalFirst(picture, opaque, columns, rows, sink);
  } else {
    horizontalFirst(picture, columns, rows, sink);
  }
}

}  // namespace kestrel::engine
