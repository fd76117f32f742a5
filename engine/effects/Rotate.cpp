#include "Rotate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

#include "QuarterTurn.h"
#include "RotateRows.h"
#include "base/RuntimeError.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/FloatRows.h"
#include "engine/effects/rows/WriteRows.h"
#include "engine/parallel/Parallel.h"
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
  if (step < 0) {  // mirror the axis, so that the step is positive
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

/// Samples with some of the sixteen taps outside the source. The weights inside are normalized; their sum is
/// the coverage, and the background is blended in with the rest.
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

/// A tile of the source, premultiplied.
class SourceTile {
 public:
  /// Room for the source pixels of a square of the result: its diagonal, the taps around each sample, and up
  /// to three more columns for alignment on the left.
  explicit SourceTile(std::int32_t square)
      : stride_(4 * (static_cast<std::size_t>(std::ceil(square * std::numbers::sqrt2)) + 12)),
        values_(stride_ * stride_ / 4 + kRowSlack) {}

  /// Loads the columns `left` to `right` and the rows `top` to `bottom`, both included.
  void take(const ConstPixels& in, std::int64_t left, std::int64_t right, std::int64_t top,
            std::int64_t bottom) {
    left_ = left - left % 4;
    top_ = top;
    float* to = values_.data();
    for (std::int64_t y = top; y <= bottom; ++y, to += stride_) {
      premultiplyRow(in.row(static_cast<std::int32_t>(y)) + 4 * left_,
                     static_cast<std::int32_t>(right + 1 - left_), to);
    }
  }

  void sample(std::int64_t u, std::int64_t v, std::int64_t du, std::int64_t dv, std::int32_t count,
              float* out) const {
    sampleLine(values_.data(), stride_, u - (left_ << 32), v - (top_ << 32), du, dv, count, out);
  }

 private:
  std::size_t stride_;
  std::vector<float> values_;
  std::int64_t left_ = 0, top_ = 0;
};

/// Source position of each pixel of the result, as 32.32 fixed-point numbers.
struct Mapping {
  std::int64_t u0, v0;  ///< source position of pixel (0, 0)
  std::int64_t du, dv;  ///< step per column; the step per row is (-dv, du)
};

class Rotation {
 public:
  Rotation(const ConstPixels& in, const Pixels& out, const Mapping& mapping, Pixel background)
      : in_(in),
        out_(out),
        mapping_(mapping),
        edge_(in, background),
        background_(background.a == 0 ? Pixel{} : background),
        stream_(exceedsCaches(out.stride * static_cast<std::size_t>(out.height))) {}

  /// Computes the rows of a band tile by tile: each source tile is premultiplied once and stays in cache.
  void makeRows(std::int32_t first, std::int32_t last) const {
    SourceTile tile(kTile);
    std::vector<Row> rows;
    for (std::int32_t top = first; top < last; top += kTile) {
      rows.clear();
      for (std::int32_t y = top; y < std::min(top + kTile, last); ++y) rows.push_back(rowAt(y));
      for (std::int32_t left = 0; left < out_.width; left += kTile) {
        const Span columns{left, std::min(left + kTile, out_.width)};
        copySourceTile(rows, columns, tile);
        for (std::size_t i = 0; i < rows.size(); ++i) {
          makePiece(rows[i], columns, tile, out_.row(top + static_cast<std::int32_t>(i)));
        }
      }
    }
    if (stream_) storeFence();
  }

 private:
  static constexpr std::int32_t kTile = 64;

  /// A row of the result in source coordinates.
  struct Row {
    std::int64_t u = 0, v = 0;  ///< source position of its first pixel
    Span touched, inside;       ///< columns with some, or with all, taps inside the source
  };

  Row rowAt(std::int32_t y) const {
    Row row{mapping_.u0 - y * mapping_.dv, mapping_.v0 + y * mapping_.du, {}, {}};
    // The taps are one pixel before the position's integer part to two after.
    row.touched = clipBoth(row, {0, out_.width}, -2, 1);
    row.inside = clipBoth(row, row.touched, 1, -2);
    if (row.inside.empty()) row.inside = {row.touched.last, row.touched.last};
    return row;
  }

  /// The part of `span` whose source positions are from `low` to the source's sides plus `high`.
  Span clipBoth(const Row& row, Span span, std::int64_t low, std::int64_t high) const {
    constexpr std::int64_t kPixel = std::int64_t{1} << 32;
    const Span across = clip(span, row.u, mapping_.du, low * kPixel, (in_.width + high) * kPixel);
    return clip(across, row.v, mapping_.dv, low * kPixel, (in_.height + high) * kPixel);
  }

  static Span common(Span a, Span b) {
    return {std::clamp(a.first, b.first, b.last), std::clamp(a.last, b.first, b.last)};
  }

  /// Loads all taps of the interior samples of these rows and columns.
  void copySourceTile(const std::vector<Row>& rows, Span columns, SourceTile& tile) const {
    std::int64_t left = INT64_MAX, right = INT64_MIN, top = INT64_MAX, bottom = INT64_MIN;
    for (const Row& row : rows) {
      const Span inside = common(row.inside, columns);
      if (inside.empty()) continue;
      for (const std::int32_t x : {inside.first, inside.last - 1}) {
        const std::int64_t u = (row.u + x * mapping_.du) >> 32, v = (row.v + x * mapping_.dv) >> 32;
        left = std::min(left, u - 1);
        right = std::max(right, u + 2);
        top = std::min(top, v - 1);
        bottom = std::max(bottom, v + 2);
      }
    }
    if (left <= right) tile.take(in_, left, right, top, bottom);
  }

  void makePiece(const Row& row, Span columns, const SourceTile& tile, std::uint8_t* out) const {
    const Span touched = common(row.touched, columns), inside = common(row.inside, columns);
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
    tile.sample(row.u + inside.first * mapping_.du, row.v + inside.first * mapping_.dv, mapping_.du,
                mapping_.dv, inside.last - inside.first, at(inside.first));
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
  bool stream_;
};

/// Side of the rotated bounding box. Rounding errors must not add a pixel to an exact fit.
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
  // Both centers coincide; a pixel's center is half a pixel to the right of and below its corner.
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
