#include "Rotate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

#include "Common.h"
#include "FilterRows.h"
#include "Opaque.h"
#include "QuarterTurn.h"
#include "RotateRows.h"
#include "WriteRows.h"
#include "base/RuntimeError.h"
#include "engine/Parallel.h"
#include "reference/TurnRows.h"

namespace kestrel::engine {
namespace {

using Floats = std::array<float, 4>;

constexpr double kOne = 4294967296.0;  ///< 1 as a 32.32 fixed-point number

std::int64_t toFixed(double value) { return static_cast<std::int64_t>(std::llround(value * kOne)); }

struct Span {
  std::int32_t first = 0, last = 0;  ///< `last` not included
  bool empty() const { return first >= last; }
};

/// The positions i of `span` where low <= start + i * step < high.
Span clip(Span span, std::int64_t start, std::int64_t step, std::int64_t low, std::int64_t high) {
  if (step == 0) return start >= low && start < high ? span : Span{span.first, span.first};
  if (step < 0) {  // mirror the axis, so that it rises
    start = -start;
    step = -step;
    std::swap(low, high);
    low = -low + 1;
    high = -high + 1;
  }
  const auto ceilDivide = [](std::int64_t a, std::int64_t b) { return a > 0 ? (a - 1) / b + 1 : a / b; };
  const std::int64_t first = std::clamp<std::int64_t>(ceilDivide(low - start, step), span.first, span.last);
  const std::int64_t last = std::clamp<std::int64_t>(ceilDivide(high - start, step), first, span.last);
  return {static_cast<std::int32_t>(first), static_cast<std::int32_t>(last)};
}

/// Samples where some of the sixteen pixels are outside: their weight goes to those inside, and how much of
/// it there was tells how far the edge covers the new pixel; the background has the rest.
class EdgeSampler {
 public:
  EdgeSampler(const ConstPixels& in, Pixel background) : in_(in) {
    const float alpha = background.a;
    background_ = {background.r * alpha, background.g * alpha, background.b * alpha, alpha};
  }

  Floats sample(std::int64_t u, std::int64_t v) const {
    const float* const across = reference::cubicWeights(u);
    const float* const down = reference::cubicWeights(v);
    const std::int64_t left = (u >> 32) - 1;
    const std::int64_t top = (v >> 32) - 1;
    Floats sum{};
    float weights = 0;
    for (std::int64_t y = std::max<std::int64_t>(0, top); y < std::min<std::int64_t>(in_.height, top + 4);
         ++y) {
      const std::uint8_t* const row = in_.row(static_cast<std::int32_t>(y));
      for (std::int64_t x = std::max<std::int64_t>(0, left); x < std::min<std::int64_t>(in_.width, left + 4);
           ++x) {
        const std::uint8_t* const p = row + 4 * x;
        const float weight = across[x - left] * down[y - top];
        const float alpha = p[3];
        for (std::size_t c = 0; c < 3; ++c) sum[c] += weight * (static_cast<float>(p[c]) * alpha);
        sum[3] += weight * alpha;
        weights += weight;
      }
    }
    constexpr float kInvisible = 1.0F / 512;
    if (weights < kInvisible) return background_;
    const float coverage = std::min(weights, 1.0F);
    for (std::size_t c = 0; c < 4; ++c) {
      sum[c] = sum[c] / weights * coverage + background_[c] * (1 - coverage);
    }
    return sum;
  }

 private:
  ConstPixels in_;
  Floats background_;
};

/// The old picture as seen from the new one: where each new pixel takes its colour from.
struct Mapping {
  std::int64_t u0, v0;  ///< of the new pixel (0, 0)
  std::int64_t du, dv;  ///< one pixel to the right; one down is (-dv, du)
};

class Rotation {
 public:
  Rotation(const ConstPixels& in, const Pixels& out, const Mapping& mapping, Pixel background)
      : in_(in),
        out_(out),
        mapping_(mapping),
        edge_(in, background),
        background_(background.a == 0 ? Pixel{} : background),
        opaque_(isOpaque(in)),
        stream_(outgrowsCaches(out.stride * static_cast<std::size_t>(out.height))) {}

  /// Makes the rows of a band, tile by tile, so that the pixels they are taken from stay cached.
  void makeRows(std::int32_t first, std::int32_t last) const {
    for (std::int32_t top = first; top < last; top += kTile) {
      const std::int32_t bottom = std::min(top + kTile, last);
      std::array<Row, kTile> rows;
      for (std::int32_t y = top; y < bottom; ++y) rows[static_cast<std::size_t>(y - top)] = rowAt(y);
      for (std::int32_t left = 0; left < out_.width; left += kTile) {
        const Span columns{left, std::min(left + kTile, out_.width)};
        for (std::int32_t y = top; y < bottom; ++y) {
          makePiece(rows[static_cast<std::size_t>(y - top)], columns, out_.row(y));
        }
      }
    }
    if (stream_) finishStreaming();
  }

 private:
  static constexpr std::int32_t kTile = 64;

  /// Where a row of the new picture runs through the old one.
  struct Row {
    std::int64_t u = 0, v = 0;  ///< of its first pixel
    Span touched, inside;       ///< where some, and where all, of the sixteen pixels are in the old picture
  };

  Row rowAt(std::int32_t y) const {
    Row row{mapping_.u0 - y * mapping_.dv, mapping_.v0 + y * mapping_.du, {}, {}};
    // From the position's whole part one pixel back and two on are taken.
    row.touched = clipBoth(row, {0, out_.width}, -2, 1);
    row.inside = clipBoth(row, row.touched, 1, -2);
    if (row.inside.empty()) row.inside = {row.touched.last, row.touched.last};
    return row;
  }

  /// The part of `span` whose positions lie from `low` up to the old picture's sides plus `high`.
  Span clipBoth(const Row& row, Span span, std::int64_t low, std::int64_t high) const {
    constexpr std::int64_t kPixel = std::int64_t{1} << 32;
    const Span across = clip(span, row.u, mapping_.du, low * kPixel, (in_.width + high) * kPixel);
    return clip(across, row.v, mapping_.dv, low * kPixel, (in_.height + high) * kPixel);
  }

  void makePiece(const Row& row, Span columns, std::uint8_t* out) const {
    const auto within = [&](std::int32_t x) { return std::clamp(x, columns.first, columns.last); };
    const Span touched{within(row.touched.first), within(row.touched.last)};
    const Span inside{within(row.inside.first), within(row.inside.last)};
    std::array<float, 4 * kTile> floats;
    alignas(64) std::array<std::uint8_t, 4 * kTile> piece;
    const auto at = [&](std::int32_t x) { return floats.data() + std::ptrdiff_t{4} * (x - touched.first); };
    const auto pixel = [&](std::int32_t x) { return piece.data() + std::ptrdiff_t{4} * (x - columns.first); };
    const auto sampleEdge = [&](std::int32_t first, std::int32_t last) {
      for (std::int32_t x = first; x < last; ++x) {
        const Floats sample = edge_.sample(row.u + x * mapping_.du, row.v + x * mapping_.dv);
        std::copy_n(sample.data(), 4, at(x));
      }
    };
    fill(pixel(columns.first), touched.first - columns.first);
    sampleEdge(touched.first, inside.first);
    sampleLine(in_, opaque_, row.u + inside.first * mapping_.du, row.v + inside.first * mapping_.dv,
               mapping_.du, mapping_.dv, inside.last - inside.first, at(inside.first));
    sampleEdge(inside.last, touched.last);
    storeStraightRow(floats.data(), touched.last - touched.first, pixel(touched.first));
    fill(pixel(touched.last), columns.last - touched.last);
    copyRow(piece.data(), columns.last - columns.first, stream_, out + std::ptrdiff_t{4} * columns.first);
  }

  void fill(std::uint8_t* out, std::int32_t count) const {
    for (std::int32_t x = 0; x < count; ++x, out += 4) std::memcpy(out, &background_, sizeof background_);
  }

  ConstPixels in_;
  Pixels out_;
  Mapping mapping_;
  EdgeSampler edge_;
  Pixel background_;
  bool opaque_, stream_;
};

/// The side of the box that holds the turned picture. Rounding must not add a pixel to what fits exactly.
std::int32_t boxSide(double length) {
  return static_cast<std::int32_t>(std::clamp(std::ceil(length - 1e-6), 1.0, 2147483647.0));
}

}  // namespace

Bitmap rotate(const Bitmap& source, double degrees, Pixel background) {
  requirePicture(source);
  if (!std::isfinite(degrees))
    throw RuntimeError(err::kInvalidCall, "The angle of a rotation must be a number.");
  double angle = std::fmod(degrees, 360.0);
  if (angle < 0) angle += 360;
  if (angle == 0 || angle == 360) return source;
  if (std::fmod(angle, 90.0) == 0) return quarterTurn(source, static_cast<int>(angle / 90));

  const double radians = angle * std::numbers::pi / 180;
  const double cosine = std::cos(radians);
  const double sine = std::sin(radians);
  const ConstPixels from = source.pixels();
  Bitmap result =
      Bitmap::uninitialized(boxSide(from.width * std::abs(cosine) + from.height * std::abs(sine)),
                            boxSide(from.width * std::abs(sine) + from.height * std::abs(cosine)));
  const Pixels to = result.writable();
  // Both centres coincide; a pixel's centre stands half a pixel right of and below its corner.
  const double x = 0.5 - to.width / 2.0;
  const double y = 0.5 - to.height / 2.0;
  const Mapping mapping{toFixed(x * cosine + y * sine + from.width / 2.0 - 0.5),
                        toFixed(y * cosine - x * sine + from.height / 2.0 - 0.5), toFixed(cosine),
                        -toFixed(sine)};
  const Rotation rotation(from, to, mapping, background);
  forRows(to.height, std::max(64, rowsPerTask(to.width, 16)),
          [&](std::int32_t first, std::int32_t last) { rotation.makeRows(first, last); });
  return result;
}

}  // namespace kestrel::engine
