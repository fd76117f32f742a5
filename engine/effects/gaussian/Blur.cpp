#include "Blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "GaussianFilter.h"
#include "base/RuntimeError.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/FloatRows.h"
#include "engine/effects/rows/WriteRows.h"

namespace kestrel::engine {

namespace {

/// Normalization at the edges along one axis: the reciprocal of the kernel's weight inside the picture, per
/// output.
class EdgeNormalization {
 public:
  explicit EdgeNormalization(const GaussianAxis& axis)
      : factors_(axis.profile()), inside_{0, axis.outputs()} {
    // A smaller deviation is lost in rounding.
    const auto isWhole = [&](std::int32_t i) { return factors_[static_cast<std::size_t>(i)] > 0.9999F; };
    while (!inside_.empty() && !isWhole(inside_.first)) ++inside_.first;
    while (!inside_.empty() && !isWhole(inside_.last - 1)) --inside_.last;
    for (float& factor : factors_) factor = 1 / factor;
  }

  const float* factors() const { return factors_.data(); }
  float factor(std::int32_t i) const { return factors_[static_cast<std::size_t>(i)]; }
  /// Outputs whose factor is practically 1.
  Interval inside() const { return inside_; }

 private:
  std::vector<float> factors_;
  Interval inside_;
};

void multiply(float* pixels, const float* factors, std::int32_t count, float common) {
  for (std::int32_t x = 0; x < count; ++x) {
    for (int c = 0; c < 4; ++c) *pixels++ *= factors[x] * common;
  }
}

/// Converts floats to pixels with straight alpha; `out` must be aligned to 64 bytes.
void putStraight(const float* in, std::int32_t count, bool stream, std::uint8_t* out) {
  if (!stream) return storeStraightRow(in, count, out);
  constexpr std::int32_t kPixels = 512;
  alignas(64) std::array<std::uint8_t, 4 * kPixels> pixels;
  for (std::int32_t x = 0; x < count; x += kPixels) {
    const std::int32_t some = std::min(kPixels, count - x);
    storeStraightRow(in + std::ptrdiff_t{4} * x, some, pixels.data());
    copyRow(pixels.data(), some, stream, out + std::ptrdiff_t{4} * x);
  }
}

}  // namespace

Bitmap blur(const Bitmap& source, double sigma) {
  requirePicture(source);
  if (!(sigma >= 0) || !std::isfinite(sigma)) {
    throw RuntimeError(err::kInvalidCall, "The standard deviation of a blur must be 0 or more.");
  }
  if (sigma == 0) return source;
  // Beyond this width the kernel is flat over the whole picture; a larger sigma changes nothing.
  sigma = std::min(sigma, 8.0 * std::max(source.width(), source.height()));

  const GaussianAxis columns(source.width(), source.width(), 0, sigma);
  const GaussianAxis rows(source.height(), source.height(), 0, sigma);
  const EdgeNormalization across(columns), down(rows);
  Bitmap result = Bitmap::uninitialized(source.width(), source.height());
  const Pixels to = result.writable();
  const bool stream = exceedsCaches(result.byteSize());
  gaussianFilter(source.pixels(), GaussianChannels::PremultipliedRgba, columns, rows,
                 [&](std::int32_t y, Interval strip, float* piece) {
                   const auto makeWhole = [&](std::int32_t first, std::int32_t last) {
                     if (first >= last) return;
                     multiply(piece + std::ptrdiff_t{4} * (first - strip.first), across.factors() + first,
                              last - first, down.factor(y));
                   };
                   if (down.inside().contains(y) && !across.inside().empty()) {
                     makeWhole(strip.first, std::min(strip.last, across.inside().first));
                     makeWhole(std::max(strip.first, across.inside().last), strip.last);
                   } else {
                     makeWhole(strip.first, strip.last);
                   }
                   putStraight(piece, strip.length(), stream, to.row(y) + std::ptrdiff_t{4} * strip.first);
                 });
  return result;
}

}  // namespace kestrel::engine
