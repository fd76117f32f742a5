#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "FloatImage.h"
#include "GaussianAxis.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Rows of one stage of a Gaussian filter, in ascending order. Each is computed on demand from rows of the
/// stage before. `channels` floats per pixel.
class GaussianRowSource {
 public:
  GaussianRowSource(const GaussianAxis::Window& columns, std::int32_t channels);
  GaussianRowSource(const GaussianRowSource&) = delete;
  GaussianRowSource& operator=(const GaussianRowSource&) = delete;
  virtual ~GaussianRowSource() = default;

  /// Row y, from column `columns().asked` on. Valid until a later row is requested. y must be a computed row
  /// of the stage.
  float* row(std::int32_t y);

  const GaussianAxis::Window& columns() const { return columns_; }
  std::int32_t channels() const { return channels_; }

 protected:
  std::size_t values(std::int32_t columns) const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(channels_);
  }

 private:
  float* at(std::int32_t row, std::int32_t column);
  void clearSlack(std::int32_t row);

  /// Computes the columns of row y. May also compute row y + 1, if both together cost less, and then returns
  /// true.
  virtual bool makeRows(std::int32_t y, float* first, float* second) = 0;

  GaussianAxis::Window columns_;
  std::int32_t channels_;
  FloatImage held_;
  std::int32_t second_ = INT32_MIN;  ///< the row computed together with the one before it
};

/// Stage 0, the picture: premultiplied RGBA (4 channels) or alpha only (1 channel).
std::unique_ptr<GaussianRowSource> pictureRows(const ConstPixels& picture,
                                               const GaussianAxis::Window& columns, std::int32_t channels);

/// A stage stored in `image`, which must outlive the result. The image's first row and column are `firstRow`
/// and `firstColumn` of the stage.
std::unique_ptr<GaussianRowSource> storedRows(const FloatImage& image, std::int32_t firstRow,
                                              std::int32_t firstColumn, const GaussianAxis::Window& columns,
                                              std::int32_t channels);

/// Step `number` along both axes, which must outlive this.
struct GaussianStep {
  const GaussianAxis& columnAxis;
  const GaussianAxis& rowAxis;
  std::size_t number;
};

/// The stage that a step computes from the one before. `rowsBefore` and `rows` are the computed rows of the
/// two stages.
std::unique_ptr<GaussianRowSource> steppedRows(std::unique_ptr<GaussianRowSource> before,
                                               const GaussianStep& step, const GaussianAxis::Window& columns,
                                               Interval rowsBefore, Interval rows);

}  // namespace kestrel::engine
