#include "Blur.h"

#include <algorithm>
#include <cmath>

#include "Common.h"
#include "FilterRows.h"
#include "GaussianFilter.h"
#include "base/RuntimeError.h"

namespace kestrel::engine {

Bitmap blur(const Bitmap& source, double sigma) {
  requirePicture(source);
  if (!(sigma >= 0) || !std::isfinite(sigma)) {
    throw RuntimeError(err::kInvalidCall, "The standard deviation of a blur must be 0 or more.");
  }
  if (sigma == 0) return source;
  // A bell far wider than the picture is as flat as one of this width.
  sigma = std::min(sigma, 8.0 * std::max(source.width(), source.height()));

  const std::int32_t width = source.width();
  const std::int32_t height = source.height();
  const GaussianAxis columns(width, width, 0, sigma, FilterEdge::Renormalize);
  const GaussianAxis rows(height, height, 0, sigma, FilterEdge::Renormalize);
  Bitmap result = Bitmap::uninitialized(width, height);
  const Pixels to = result.writable();
  gaussianFilter(FilterSource::weightedRgba(source.pixels()), columns, rows,
                 [&](std::int32_t y, const float* row) { storeStraightRow(row, width, to.row(y)); });
  return result;
}

}  // namespace kestrel::engine
