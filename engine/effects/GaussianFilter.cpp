#include "GaussianFilter.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "FilterRows.h"
#include "FloatImage.h"
#include "engine/Parallel.h"
#include "engine/pixels/Streaming.h"

namespace kestrel::engine {
namespace {

/// Rows of a stage, one after the other.
class RowSource {
 public:
  explicit RowSource(const GaussianAxis::Window& columns, std::int32_t channels)
      : columns_(columns), channels_(channels), held_(values(columns.held.length()), 1) {}
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  virtual ~RowSource() = default;

  /// From the first column that is asked for on. Valid until the next call; wants a row of the stage's
  /// support.
  float* row(std::int32_t y) {
    if (columns_.made.empty()) return at(columns_.asked);
    float* const made = at(columns_.made.first);
    makeRow(y, made);
    // What a kernel wrote beyond the last column must not count.
    const std::size_t beside = values(columns_.held.last - columns_.made.last);
    std::fill_n(made + values(columns_.made.length()), std::min(beside, kRowSlack), 0.0F);
    return at(columns_.asked);
  }

  const GaussianAxis::Window& columns() const { return columns_; }
  std::int32_t channels() const { return channels_; }

 protected:
  std::size_t values(std::int32_t columns) const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(channels_);
  }

 private:
  float* at(std::int32_t column) { return held_.row(0) + values(column - columns_.held.first); }

  virtual void makeRow(std::int32_t y, float* made) = 0;

  GaussianAxis::Window columns_;
  std::int32_t channels_;
  FloatImage held_;
};

/// The picture itself.
class PictureRows final : public RowSource {
 public:
  PictureRows(const ConstPixels& picture, const GaussianAxis::Window& columns, std::int32_t channels)
      : RowSource(fromBoundary(columns), channels), picture_(picture) {}

 private:
  /// The kernels read 64 bytes at a time, and only rows as a whole are padded to that.
  static GaussianAxis::Window fromBoundary(GaussianAxis::Window columns) {
    columns.made.first -= columns.made.first % 16;
    columns.held.first = std::min(columns.held.first, columns.made.first);
    return columns;
  }

  void makeRow(std::int32_t y, float* made) override {
    const Interval taken = columns().made;
    const std::uint8_t* const in = picture_.row(y) + std::ptrdiff_t{4} * taken.first;
    // A strip's rows lie far apart: the processor does not see by itself which comes next.
    for (std::int32_t x = 0; x < taken.length(); x += 16) {
      __builtin_prefetch(in + 2 * picture_.stride + std::ptrdiff_t{4} * x);
    }
    constexpr float kWhole = 1;
    channels() == 4 ? premultiplyRow(in, taken.length(), made)
                    : sumAlphaRows(in, picture_.stride, &kWhole, 1, taken.length(), made);
  }

  ConstPixels picture_;
};

/// A stage that was made before.
class KeptRows final : public RowSource {
 public:
  /// The image's first row and column are number `firstRow` and `firstColumn` of the stage.
  KeptRows(const FloatImage& image, std::int32_t firstRow, std::int32_t firstColumn,
           const GaussianAxis::Window& columns, std::int32_t channels)
      : RowSource(columns, channels), image_(image), firstRow_(firstRow), firstColumn_(firstColumn) {}

 private:
  void makeRow(std::int32_t y, float* made) override {
    const float* const from = image_.row(y - firstRow_) + values(columns().made.first - firstColumn_);
    std::copy_n(from, values(columns().made.length()), made);
  }

  const FloatImage& image_;
  std::int32_t firstRow_, firstColumn_;
};

/// A stage made of the one before: its rows are filtered along themselves, and as many of them are kept as
/// one row of this stage is summed of.
class StepRows final : public RowSource {
 public:
  StepRows(std::unique_ptr<RowSource> from, const GaussianAxis& columnAxis, const GaussianAxis& rowAxis,
           std::size_t step, const GaussianAxis::Window& columns)
      : RowSource(columns, from->channels()),
        from_(std::move(from)),
        columnAxis_(columnAxis),
        rowAxis_(rowAxis),
        step_(step),
        keptRows_(std::max(rowAxis.taps(step, 0).count, rowAxis.taps(step, 1).count)),
        ring_(values(columns.made.length()), keptRows_),
        numbers_(static_cast<std::size_t>(keptRows_), INT32_MIN) {}

 private:
  void makeRow(std::int32_t y, float* made) override {
    const GaussianAxis::Taps taps = rowAxis_.taps(step_, y);
    const Interval support = rowAxis_.support(step_);
    const std::int32_t first = std::max(taps.first, support.first);
    const std::int32_t last = std::min(taps.first + taps.count, support.last);
    summands_.clear();
    for (std::int32_t row = first; row < last; ++row) summands_.push_back(filtered(row));
    sumFloatRows(summands_.data(), taps.weights + (first - taps.first), last - first,
                 values(columns().made.length()), made);
  }

  const float* filtered(std::int32_t row) {
    const std::int32_t slot = (row % keptRows_ + keptRows_) % keptRows_;
    float* const kept = ring_.row(slot);
    std::int32_t& number = numbers_[static_cast<std::size_t>(slot)];
    if (number != row) engine::makeRow(columnAxis_, step_, from_->row(row), columns().made, channels(), kept);
    number = row;
    return kept;
  }

  std::unique_ptr<RowSource> from_;
  const GaussianAxis& columnAxis_;
  const GaussianAxis& rowAxis_;
  std::size_t step_;
  std::int32_t keptRows_;
  FloatImage ring_;
  std::vector<std::int32_t> numbers_;  ///< which row each of the ring holds
  std::vector<const float*> summands_;
};

/// The whole of a filter, or some steps of it.
class PyramidFilter {
 public:
  PyramidFilter(const ConstPixels& picture, GaussianChannels channels, const GaussianAxis& columns,
                const GaussianAxis& rows)
      : picture_(picture), channels_(static_cast<std::int32_t>(channels)), columns_(columns), rows_(rows) {}

  /// Makes the first stages for all bands of rows together. A wide bell's bands reach far beyond themselves.
  void keep(std::size_t stage) {
    const auto all = [=](const GaussianAxis& axis) {
      return axis.windows(axis.steps(), {axis.place(0), axis.place(axis.outputs())})[stage].made;
    };
    const Interval keptColumns = all(columns_), keptRows = all(rows_);
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
    const Interval across{columns_.place(0), columns_.place(columns_.outputs())};
    const Interval down{rows_.place(0), rows_.place(rows_.outputs())};
    const std::int32_t least = image_ ? kLeastRows : std::max(kLeastRows, 4 * rows_.reach());
    forStrips(rows_.steps(), across, down, least, [&](std::int32_t y, Interval strip, float* piece) {
      sink(y - down.first, {strip.first - across.first, strip.last - across.first}, piece);
    });
  }

 private:
  /// Bands of at least so many rows; each makes anew what it reads beyond itself.
  static constexpr std::int32_t kLeastRows = 64, kLeastKeptRows = 16;
  /// Strips are so narrow that the rows kept between the steps stay in the second cache.
  static constexpr std::int32_t kStripValues = 8192;

  std::size_t values(std::int32_t columns) const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(channels_);
  }

  void forStrips(std::size_t stage, Interval across, Interval down, std::int32_t leastRows,
                 const PieceSink& sink) const {
    const std::int32_t width = kStripValues / channels_;
    forRows(down.length(), leastRows, [&](std::int32_t firstRow, std::int32_t lastRow) {
      for (std::int32_t left = across.first; left < across.last; left += width) {
        const Interval strip{left, std::min(left + width, across.last)};
        const std::unique_ptr<RowSource> source = sourceOf(stage, strip);
        std::vector<float> nothing(values(strip.length()));
        for (std::int32_t y = down.first + firstRow; y < down.first + lastRow; ++y) {
          const bool any = rows_.support(stage).contains(y);
          sink(y, strip, any ? source->row(y) : nothing.data());
        }
      }
      finishStreaming();
    });
  }

  std::unique_ptr<RowSource> sourceOf(std::size_t stage, Interval strip) const {
    const std::vector<GaussianAxis::Window> windows = columns_.windows(stage, strip);
    std::unique_ptr<RowSource> source;
    if (image_) {
      source = std::make_unique<KeptRows>(*image_, keptFirstRow_, keptFirstColumn_, windows[keptStage_],
                                          channels_);
    } else {
      source = std::make_unique<PictureRows>(picture_, windows[0], channels_);
    }
    for (std::size_t k = keptStage_; k < stage; ++k)
      source = std::make_unique<StepRows>(std::move(source), columns_, rows_, k, windows[k + 1]);
    return source;
  }

  ConstPixels picture_;
  std::int32_t channels_;
  const GaussianAxis& columns_;
  const GaussianAxis& rows_;
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
