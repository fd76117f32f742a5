#include "GaussianStages.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "GaussianRows.h"
#include "engine/effects/rows/FloatRows.h"

namespace kestrel::engine {
namespace {

class PictureRows final : public GaussianRowSource {
 public:
  PictureRows(const ConstPixels& picture, const GaussianAxis::Window& columns, std::int32_t channels)
      : GaussianRowSource(fromBoundary(columns), channels), picture_(picture) {}

 private:
  /// Extends the columns to a 64-byte boundary: the kernels read 64 bytes at a time, and only whole rows have
  /// padding.
  static GaussianAxis::Window fromBoundary(GaussianAxis::Window columns) {
    columns.made.first -= columns.made.first % 16;
    columns.held.first = std::min(columns.held.first, columns.made.first);
    return columns;
  }

  bool makeRows(std::int32_t y, float* made, float*) override {
    const Interval taken = columns().made;
    const std::uint8_t* const in = picture_.row(y) + std::ptrdiff_t{4} * taken.first;
    // A strip's rows are far apart, which hardware prefetchers do not predict.
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

class KeptRows final : public GaussianRowSource {
 public:
  KeptRows(const FloatImage& image, std::int32_t firstRow, std::int32_t firstColumn,
           const GaussianAxis::Window& columns, std::int32_t channels)
      : GaussianRowSource(columns, channels), image_(image), firstRow_(firstRow), firstColumn_(firstColumn) {}

 private:
  bool makeRows(std::int32_t y, float* made, float*) override {
    const float* const from = image_.row(y - firstRow_) + values(columns().made.first - firstColumn_);
    std::copy_n(from, values(columns().made.length()), made);
    return false;
  }

  const FloatImage& image_;
  std::int32_t firstRow_, firstColumn_;
};

/// Horizontal pass over rows of the stage before, kept in a ring buffer; the vertical pass computes two rows
/// of this stage at a time from it.
class StepRows final : public GaussianRowSource {
 public:
  StepRows(std::unique_ptr<GaussianRowSource> from, const GaussianStep& step,
           const GaussianAxis::Window& columns, Interval rowsBefore, Interval rows)
      : GaussianRowSource(columns, from->channels()),
        from_(std::move(from)),
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
      const GaussianAxis::Taps taps = step_.rowAxis.taps(step_.number, y);
      const Interval some{inputs.first, std::min(taps.first + taps.count, inputs.last)};
      sumFloatRows(filtered(some), taps.weights + (some.first - taps.first), some.length(),
                   values(columns().made.length()), first);
      return false;
    }
    rowWeights(y, inputs, firstWeights_);
    rowWeights(y + 1, inputs, secondWeights_);
    sumRowsTwice(filtered(inputs), firstWeights_.data(), secondWeights_.data(), inputs.length(),
                 values(columns().made.length()), first, second);
    return true;
  }

  /// Taps of the vertical pass for the rows y and y + 1.
  Interval inputsOfTwo(std::int32_t y) const {
    const GaussianAxis::Taps one = step_.rowAxis.taps(step_.number, y);
    const GaussianAxis::Taps next = step_.rowAxis.taps(step_.number, y + 1);
    return {one.first, std::max(one.first + one.count, next.first + next.count)};
  }

  /// Weights of the input rows for row y.
  void rowWeights(std::int32_t y, Interval inputs, std::vector<float>& weights) const {
    const GaussianAxis::Taps taps = step_.rowAxis.taps(step_.number, y);
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
    if (number != row) {
      makeRow(step_.columnAxis, step_.number, from_->row(row), columns().made, channels(), kept);
    }
    number = row;
    return kept;
  }

  std::unique_ptr<GaussianRowSource> from_;
  GaussianStep step_;
  Interval rowsBefore_, rows_;
  std::int32_t keptRows_;
  FloatImage ring_;
  std::vector<std::int32_t> numbers_;  ///< row number in each slot of the ring
  std::vector<const float*> summands_;
  std::vector<float> firstWeights_, secondWeights_;
};

}  // namespace

GaussianRowSource::GaussianRowSource(const GaussianAxis::Window& columns, std::int32_t channels)
    : columns_(columns), channels_(channels), held_(values(columns.held.length()), 2) {}

float* GaussianRowSource::row(std::int32_t y) {
  if (columns_.made.empty()) return at(0, columns_.asked);
  if (y == second_) return at(1, columns_.asked);
  if (makeRows(y, at(0, columns_.made.first), at(1, columns_.made.first))) {
    clearSlack(1);
    second_ = y + 1;
  }
  clearSlack(0);
  return at(0, columns_.asked);
}

float* GaussianRowSource::at(std::int32_t row, std::int32_t column) {
  return held_.row(row) + values(column - columns_.held.first);
}

/// Clears the slack that a kernel wrote beyond the last computed column.
void GaussianRowSource::clearSlack(std::int32_t row) {
  const std::size_t slack = values(columns_.held.last - columns_.made.last);
  std::fill_n(at(row, columns_.made.last), std::min(slack, kRowSlack), 0.0F);
}

std::unique_ptr<GaussianRowSource> pictureRows(const ConstPixels& picture,
                                               const GaussianAxis::Window& columns, std::int32_t channels) {
  return std::make_unique<PictureRows>(picture, columns, channels);
}

std::unique_ptr<GaussianRowSource> storedRows(const FloatImage& image, std::int32_t firstRow,
                                              std::int32_t firstColumn, const GaussianAxis::Window& columns,
                                              std::int32_t channels) {
  return std::make_unique<KeptRows>(image, firstRow, firstColumn, columns, channels);
}

std::unique_ptr<GaussianRowSource> steppedRows(std::unique_ptr<GaussianRowSource> before,
                                               const GaussianStep& step, const GaussianAxis::Window& columns,
                                               Interval rowsBefore, Interval rows) {
  return std::make_unique<StepRows>(std::move(before), step, columns, rowsBefore, rows);
}

}  // namespace kestrel::engine
