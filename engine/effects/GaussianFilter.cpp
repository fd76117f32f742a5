#include "GaussianFilter.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "FilterRows.h"
#include "FloatImage.h"
#include "GaussianRows.h"
#include "engine/Parallel.h"
#include "engine/pixels/Streaming.h"

namespace kestrel::engine {
namespace {

/// Rows of a stage, one after the other.
class RowSource {
 public:
  explicit RowSource(const GaussianAxis::Window& columns, std::int32_t channels)
      : columns_(columns), channels_(channels), held_(values(columns.held.length()), 2) {}
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  virtual ~RowSource() = default;

  /// From the first column that is asked for on. Valid until a row further on is asked for; wants a row of
  /// the stage's made ones.
  float* row(std::int32_t y) {
    if (columns_.made.empty()) return at(0, columns_.asked);
    if (y != second_) {
      const bool both = makeRows(y, at(0, columns_.made.first), at(1, columns_.made.first));
      clearBeside(0);
      if (!both) return at(0, columns_.asked);
      clearBeside(1);
      second_ = y + 1;
      return at(0, columns_.asked);
    }
    return at(1, columns_.asked);
  }

  const GaussianAxis::Window& columns() const { return columns_; }
  std::int32_t channels() const { return channels_; }

 protected:
  std::size_t values(std::int32_t columns) const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(channels_);
  }

 private:
  float* at(std::int32_t row, std::int32_t column) {
    return held_.row(row) + values(column - columns_.held.first);
  }

  /// What a kernel wrote beyond the last column must not count.
  void clearBeside(std::int32_t row) {
    const std::size_t beside = values(columns_.held.last - columns_.made.last);
    std::fill_n(at(row, columns_.made.last), std::min(beside, kRowSlack), 0.0F);
  }

  /// Makes the columns of row y, and if that is less work than one by one those of row y + 1 too, and returns
  /// true.
  virtual bool makeRows(std::int32_t y, float* first, float* second) = 0;

  GaussianAxis::Window columns_;
  std::int32_t channels_;
  FloatImage held_;
  std::int32_t second_ = INT32_MIN;  ///< the row that was made with the one before it
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

  bool makeRows(std::int32_t y, float* made, float*) override {
    const Interval taken = columns().made;
    const std::uint8_t* const in = picture_.row(y) + std::ptrdiff_t{4} * taken.first;
    // A strip's rows lie far apart: the processor does not see by itself which comes next.
    for (std::int32_t x = 0; x < taken.length(); x += 16) {
      __builtin_prefetch(in + 2 * picture_.stride + std::ptrdiff_t{4} * x);
    }
    constexpr float kWhole = 1;
    channels() == 4 ? premultiplyRow(in, taken.length(), made)
                    : sumAlphaRows(in, picture_.stride, &kWhole, 1, taken.length(), made);
    return false;
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
  bool makeRows(std::int32_t y, float* made, float*) override {
    const float* const from = image_.row(y - firstRow_) + values(columns().made.first - firstColumn_);
    std::copy_n(from, values(columns().made.length()), made);
    return false;
  }

  const FloatImage& image_;
  std::int32_t firstRow_, firstColumn_;
};

/// A stage made of the one before: its rows are filtered along themselves, and as many of them are kept as
/// two rows of this stage are summed of.
class StepRows final : public RowSource {
 public:
  /// `rowsBefore` and `rows` are what is made of the stage before and of this one.
  StepRows(std::unique_ptr<RowSource> from, const GaussianAxis& columnAxis, const GaussianAxis& rowAxis,
           std::size_t step, const GaussianAxis::Window& columns, Interval rowsBefore, Interval rows)
      : RowSource(columns, from->channels()),
        from_(std::move(from)),
        columnAxis_(columnAxis),
        rowAxis_(rowAxis),
        step_(step),
        rowsBefore_(rowsBefore),
        rows_(rows),
        keptRows_(std::max(inputsOfTwo(0).length(), inputsOfTwo(1).length())),
        ring_(values(columns.made.length()), keptRows_),
        numbers_(static_cast<std::size_t>(keptRows_), INT32_MIN) {}

 private:
  bool makeRows(std::int32_t y, float* first, float* second) override {
    const Interval wanted = inputsOfTwo(y);
    const Interval inputs{std::max(wanted.first, rowsBefore_.first), std::min(wanted.last, rowsBefore_.last)};
    if (!rows_.contains(y + 1)) {
      const GaussianAxis::Taps taps = rowAxis_.taps(step_, y);
      const Interval some{inputs.first, std::min(taps.first + taps.count, inputs.last)};
      sumFloatRows(filtered(some), taps.weights + (some.first - taps.first), some.length(),
                   values(columns().made.length()), first);
      return false;
    }
    weigh(y, inputs, firstWeights_);
    weigh(y + 1, inputs, secondWeights_);
    sumRowsTwice(filtered(inputs), firstWeights_.data(), secondWeights_.data(), inputs.length(),
                 values(columns().made.length()), first, second);
    return true;
  }

  /// The rows that row y and the next are summed of.
  Interval inputsOfTwo(std::int32_t y) const {
    const GaussianAxis::Taps one = rowAxis_.taps(step_, y), next = rowAxis_.taps(step_, y + 1);
    return {one.first, std::max(one.first + one.count, next.first + next.count)};
  }

  /// How much each of the inputs counts in row y.
  void weigh(std::int32_t y, Interval inputs, std::vector<float>& weights) const {
    const GaussianAxis::Taps taps = rowAxis_.taps(step_, y);
    weights.clear();
    for (std::int32_t row = inputs.first; row < inputs.last; ++row) {
      const std::int32_t tap = row - taps.first;
      weights.push_back(tap >= 0 && tap < taps.count ? taps.weights[tap] : 0.0F);
    }
  }

  const float* const* filtered(Interval inputs) {
    summands_.clear();
    for (std::int32_t row = inputs.first; row < inputs.last; ++row) summands_.push_back(filtered(row));
    return summands_.data();
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
  Interval rowsBefore_, rows_;
  std::int32_t keptRows_;
  FloatImage ring_;
  std::vector<std::int32_t> numbers_;  ///< which row each of the ring holds
  std::vector<const float*> summands_;
  std::vector<float> firstWeights_, secondWeights_;
};

/// The whole of a filter, or some steps of it.
class PyramidFilter {
 public:
  PyramidFilter(const ConstPixels& picture, GaussianChannels channels, const GaussianAxis& columns,
                const GaussianAxis& rows)
      : picture_(picture),
        channels_(static_cast<std::int32_t>(channels)),
        columns_(columns),
        rows_(rows),
        rowWindows_(allOf(rows)) {}

  /// Makes the first stages for all bands of rows together. A wide bell's bands reach far beyond themselves.
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

  static std::vector<GaussianAxis::Window> allOf(const GaussianAxis& axis) {
    return axis.windows(axis.steps(), {axis.place(0), axis.place(axis.outputs())});
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
        const std::unique_ptr<RowSource> source = sourceOf(stage, strip);
        std::vector<float> nothing(values(strip.length()));
        for (std::int32_t y = down.first + firstRow; y < down.first + lastRow; ++y) {
          const bool any = rowWindows_[stage].made.contains(y);
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
      source = std::make_unique<StepRows>(std::move(source), columns_, rows_, k, windows[k + 1],
                                          rowWindows_[k].made, rowWindows_[k + 1].made);
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
