#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "FloatImage.h"
#include "GaussianAxis.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Rows of one stage of a Gaussian, one after the other: each is made when it is asked for, of those of the
/// stage before. Floats, `channels` of them a pixel.
class GaussianRowSource {
 public:
  GaussianRowSource(const GaussianAxis::Window& columns, std::int32_t channels);
  GaussianRowSource(const GaussianRowSource&) = delete;
  GaussianRowSource& operator=(const GaussianRowSource&) = delete;
  virtual ~GaussianRowSource() = default;

  /// From the first column that is asked for on. Valid until a row further on is asked for; wants a row of
  /// the stage's made ones.
  float* row(std::int32_t y);

  const GaussianAxis::Window& columns() const { return columns_; }
  std::int32_t channels() const { return channels_; }

 protected:
  std::size_t values(std::int32_t columns) const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(channels_);
  }

 private:
  float* at(std::int32_t row, std::int32_t column);
  void clearBeside(std::int32_t row);

  /// Makes the columns of row y, and if that is less work than one by one those of row y + 1 too, and returns
  /// true.
  virtual bool makeRows(std::int32_t y, float* first, float* second) = 0;

  GaussianAxis::Window columns_;
  std::int32_t channels_;
  FloatImage held_;
  std::int32_t second_ = INT32_MIN;  ///< the row that was made with the one before it
};

/// The picture itself: its colors weighed by alpha and alpha (4 channels), or alpha alone.
std::unique_ptr<GaussianRowSource> pictureRows(const ConstPixels& picture,
                                               const GaussianAxis::Window& columns, std::int32_t channels);

/// A stage that was made before, which must outlive this. The image's first row and column are number
/// `firstRow` and `firstColumn` of the stage.
std::unique_ptr<GaussianRowSource> storedRows(const FloatImage& image, std::int32_t firstRow,
                                              std::int32_t firstColumn, const GaussianAxis::Window& columns,
                                              std::int32_t channels);

/// One axis' step for all columns and the other's for all rows; both axes must outlive this.
struct GaussianStep {
  const GaussianAxis& columnAxis;
  const GaussianAxis& rowAxis;
  std::size_t number;
};

/// The stage that a step makes of the one before. `rowsBefore` and `rows` are what is made of both.
std::unique_ptr<GaussianRowSource> steppedRows(std::unique_ptr<GaussianRowSource> before,
                                               const GaussianStep& step, const GaussianAxis::Window& columns,
                                               Interval rowsBefore, Interval rows);

}  // namespace kestrel::engine
