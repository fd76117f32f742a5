#include "GaussianFilter.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "FloatImage.h"
#include "GaussianStages.h"
#include "engine/parallel/Parallel.h"
#include "engine/pixels/NonTemporal.h"

namespace kestrel::engine {
namespace {

/// Runs the steps of the filter over strips of columns and bands of rows.
class PyramidFilter {
 public:
  PyramidFilter(const ConstPixels& picture, GaussianChannels channels, const GaussianAxis& columns,
                const GaussianAxis& rows)
      : picture_(picture),
        channels_(static_cast<std::int32_t>(channels)),
        columns_(columns),
        rows_(rows),
        rowWindows_(allOf(rows)) {}

  /// Computes stage `stage` for the whole picture and stores it. With a wide kernel the bands' inputs overlap
  /// far too much to compute it once per band.
  void keep(std::size_t stage) {
    const Interval keptColumns = allOf(columns_)[stage].made, keptRows = rowWindows_[stage].made;
    if (keptColumns.empty() || keptRows.empty()) return;
    auto image = std::make_unique<FloatImage>(values(keptColumns.length()), keptRows.length());
    forStrips(stage, keptColumns, keptRows, kLeastKeptRows,
              [&](std::int32_t y, Interval strip, float* piece) {
                std::copy_n(piece, values(strip.length()),
                            image->row(y - keptRows.first) + values(strip.first - keptColumns.first));
              });
    image_ = std::move(image);
    keptStage_ = stage;
    keptFirstRow_ = keptRows.first;
    keptFirstColumn_ = keptColumns.first;
  }

  void finish(const PieceSink& sink) const {
    const Interval across{columns_.inputPosition(0), columns_.inputPosition(columns_.outputs())};
    const Interval down{rows_.inputPosition(0), rows_.inputPosition(rows_.outputs())};
    const std::int32_t least = image_ ? kLeastRows : std::max(kLeastRows, 4 * rows_.reach());
    forStrips(rows_.steps(), across, down, least, [&](std::int32_t y, Interval strip, float* piece) {
      sink(y - down.first, {strip.first - across.first, strip.last - across.first}, piece);
    });
  }

 private:
  /// Minimum rows per band; each band recomputes the rows it reads beyond its own.
  static constexpr std::int32_t kLeastRows = 64, kLeastKeptRows = 16;
  /// Floats per strip row: narrow enough for the rows kept between the steps to stay in the L2 cache.
  static constexpr std::int32_t kStripValues = 8192;

  static std::vector<GaussianAxis::Window> allOf(const GaussianAxis& axis) {
    return axis.windows(axis.steps(), {axis.inputPosition(0), axis.inputPosition(axis.outputs())});
  }

  std::size_t values(std::int32_t columns) const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(channels_);
  }

  void forStrips(std::size_t stage, Interval across, Interval down, std::int32_t leastRows,
                 const PieceSink& sink) const {
    const std::int32_t width = kStripValues / channels_;
    forRows(down.length(), leastRows, [&](std::int32_t firstRow, std::int32_t lastRow) {
      for (std::int32_t left = across.first; left < across.last; left += width) {
        const Interval strip{left, std::min(left + width, across.last)};
        const std::unique_ptr<GaussianRowSource> source = sourceOf(stage, strip);
        std::vector<float> nothing(values(strip.length()));
        for (std::int32_t y = down.first + firstRow; y < down.first + lastRow; ++y) {
          const bool any = rowWindows_[stage].made.contains(y);
          sink(y, strip, any ? source->row(y) : nothing.data());
        }
      }
      storeFence();
    });
  }

  std::unique_ptr<GaussianRowSource> sourceOf(std::size_t stage, Interval strip) const {
    const std::vector<GaussianAxis::Window> windows = columns_.windows(stage, strip);
    std::unique_ptr<GaussianRowSource> source;
    if (image_) {
      source = storedRows(*image_, keptFirstRow_, keptFirstColumn_, windows[keptStage_], channels_);
    } else {
      source = pictureRows(picture_, windows[0], channels_);
    }
    for (std::size_t k = keptStage_; k < stage; ++k) {
      source = steppedRows(std::move(source), {columns_, rows_, k}, windows[k + 1], rowWindows_[k].made,
                           rowWindows_[k + 1].made);
    }
    return source;
  }

  ConstPixels picture_;
  std::int32_t channels_;
  const GaussianAxis& columns_;
  const GaussianAxis& rows_;
  std::vector<GaussianAxis::Window> rowWindows_;
  std::unique_ptr<FloatImage> image_;
  std::size_t keptStage_ = 0;
  std::int32_t keptFirstRow_ = 0, keptFirstColumn_ = 0;
};

}  // namespace

void gaussianFilter(const ConstPixels& picture, GaussianChannels channels, const GaussianAxis& columns,
                    const GaussianAxis& rows, const PieceSink& sink) {
  PyramidFilter pyramid(picture, channels, columns, rows);
  constexpr std::size_t kKept = 3;
  if (columns.halvings() >= kKept) pyramid.keep(kKept);
  pyramid.finish(sink);
}

}  // namespace kestrel::engine
