#include "Composite.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/RuntimeError.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/WriteRows.h"
#include "engine/effects/rows/reference/PixelRows.h"
#include "engine/parallel/Parallel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/Composite.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/PutPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void compositeSpan(const std::uint8_t* top, const std::uint8_t* under, std::int32_t count,
                   std::uint8_t opacity, const std::optional<Pixel>& mask, bool, std::uint8_t* out) {
  reference::compositeRow(top, under, count, opacity, mask, out);
}

#else

/// a * b for numbers of at most 255.
template <class D, class V>
HWY_INLINE V product(D d, V a, V b) {
  const hn::Repartition<std::uint16_t, D> d16;
  return hn::BitCast(d, hn::Mul(hn::BitCast(d16, a), hn::BitCast(d16, b)));
}

/// a / 255 rounded to the nearest.
template <class D, class V>
HWY_INLINE V by255(D d, V a) {
  const auto rounded = hn::Add(a, hn::Set(d, 128));
  return hn::ShiftRight<8>(hn::Add(rounded, hn::ShiftRight<8>(rounded)));
}

/// `over` of Blend.h, with the alpha of `top` given separately.
template <class D, class V>
HWY_INLINE V overPixels(D d, V top, V alpha, V under) {
  const hn::RebindToFloat<D> df;
  const hn::RebindToSigned<D> di;
  const hn::Repartition<std::int16_t, D> d16;
  const auto byte = hn::Set(d, 0xFF);
  const auto underWeight = product(d, hn::ShiftRight<24>(under), hn::Xor(alpha, byte));
  const auto topWeight = product(d, alpha, byte);
  const auto total = hn::Max(hn::Add(topWeight, underWeight), hn::Set(d, 1));
  const auto toFloat = [&](V v) HWY_ATTR { return hn::ConvertTo(df, hn::BitCast(di, v)); };
  const auto quotient = hn::NearestInt(hn::Div(toFloat(hn::ShiftLeft<15>(topWeight)), toFloat(total)));
  const auto share = hn::Min(hn::BitCast(d, quotient), hn::Set(d, 32767));
  const auto shares = hn::BitCast(d16, hn::Or(share, hn::ShiftLeft<16>(share)));

  // A channel in each half of a pixel's 32 bits.
  const auto mix = [&](V t, V u) HWY_ATTR {
    const auto u16 = hn::BitCast(d16, u);
    const auto difference = hn::Sub(hn::BitCast(d16, t), u16);
    return hn::BitCast(d, hn::Add(u16, hn::MulFixedPoint15(difference, shares)));
  };
  const auto low = hn::Set(d, 0x00FF00FF);
  const auto redBlue = mix(hn::And(top, low), hn::And(under, low));
  const auto green = mix(hn::And(hn::ShiftRight<8>(top), byte), hn::And(hn::ShiftRight<8>(under), byte));
  const auto mixedAlpha = hn::Add(alpha, by255(d, underWeight));
  return hn::Or(hn::Or(redBlue, hn::ShiftLeft<8>(green)), hn::ShiftLeft<24>(mixedAlpha));
}

/// `out` may equal `under`: then vectors of transparent pixels are skipped. Otherwise it must be the start of
/// a bitmap row.
void compositeSpan(const std::uint8_t* top, const std::uint8_t* under, std::int32_t count,
                   std::uint8_t opacity, const std::optional<Pixel>& mask, bool stream, std::uint8_t* out) {
  const hn::CappedTag<std::uint32_t, 16> d;
  const hn::Repartition<std::uint8_t, decltype(d)> d8;
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  const bool inPlace = out == under;
  const bool wholeAlpha = opacity == 255 && !mask;
  const auto strength = hn::Set(d, opacity);
  const auto colorBits = hn::Set(d, 0x00FFFFFF);
  // Compared pixels have 0 in the alpha byte, so this value matches none when there is no mask color.
  std::uint32_t maskValue = 0xFF000000;
  if (mask)
    maskValue =
        mask->r | static_cast<std::uint32_t>(mask->g) << 8 | static_cast<std::uint32_t>(mask->b) << 16;
  const auto masked = hn::Set(d, maskValue);

  std::int32_t x = 0;
  for (; x + lanes <= count; x += lanes) {
    const auto t = hn::BitCast(d, hn::LoadU(d8, top + std::ptrdiff_t{4} * x));
    auto alpha = hn::ShiftRight<24>(t);
    if (!wholeAlpha) {
      alpha = by255(d, product(d, alpha, strength));
      alpha = hn::IfThenZeroElse(hn::Eq(hn::And(t, colorBits), masked), alpha);
    }
    if (inPlace && hn::AllTrue(d, hn::Eq(alpha, hn::Zero(d)))) continue;
    if (inPlace && hn::AllTrue(d, hn::Eq(alpha, hn::Set(d, 255)))) {
      hn::StoreU(hn::BitCast(d8, t), d8, out + std::ptrdiff_t{4} * x);
      continue;
    }
    const auto u = hn::BitCast(d, hn::LoadU(d8, under + std::ptrdiff_t{4} * x));
    const auto mixed = overPixels(d, t, alpha, u);
    if (inPlace) {
      hn::StoreU(hn::BitCast(d8, mixed), d8, out + std::ptrdiff_t{4} * x);
    } else {
      putPixels(d, mixed, stream, out + std::ptrdiff_t{4} * x);
    }
  }
  const std::ptrdiff_t done = std::ptrdiff_t{4} * x;
  reference::compositeRow(top + done, under + done, count - x, opacity, mask, out + done);
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(compositeSpan);

namespace {

/// A picture placed over another, and the rectangle in which they overlap.
class Overlay {
 public:
  Overlay(const ConstPixels& under, const ConstPixels& top, std::int32_t x, std::int32_t y,
          const CompositeOptions& options)
      : top_(top), x_(x), y_(y), maskColor_(options.maskColor) {
    if (std::isnan(options.opacity)) {
      throw RuntimeError(err::kInvalidCall, "The opacity must be a number from 0 to 1.");
    }
    opacity_ = static_cast<std::uint8_t>(std::lrint(std::clamp(options.opacity, 0.0, 1.0) * 255));
    left_ = std::max(0, x);
    width_ = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(std::int64_t{x} + top.width - left_, 0, std::max(0, under.width - left_)));
    firstRow_ = std::max(0, y);
    lastRow_ =
        static_cast<std::int32_t>(std::clamp<std::int64_t>(std::int64_t{y} + top.height, 0, under.height));
  }

  std::int32_t width() const { return width_; }
  std::int32_t firstRow() const { return firstRow_; }
  std::int32_t rows() const { return std::max(0, lastRow_ - firstRow_); }

  /// Whether it overlaps row y.
  bool touches(std::int32_t y) const { return y >= firstRow_ && y < lastRow_ && width_ > 0; }

  /// Composites its part of row y in place. Row y must overlap.
  void layOver(std::uint8_t* row, std::int32_t y) const {
    compositeRow(partOf(y), row + std::ptrdiff_t{4} * left_, width_, opacity_, maskColor_);
  }

  /// The same into another row; the overlap must span the whole width.
  void layOver(const std::uint8_t* under, std::int32_t y, bool stream, std::uint8_t* out) const {
    HWY_DYNAMIC_DISPATCH(compositeSpan)(partOf(y), under, width_, opacity_, maskColor_, stream, out);
  }

 private:
  const std::uint8_t* partOf(std::int32_t y) const {
    return top_.row(static_cast<std::int32_t>(std::int64_t{y} - y_)) + 4 * (std::int64_t{left_} - x_);
  }

  ConstPixels top_;
  std::int32_t x_, y_;
  std::optional<Pixel> maskColor_;
  std::uint8_t opacity_ = 0;
  std::int32_t left_ = 0, width_ = 0, firstRow_ = 0, lastRow_ = 0;
};

}  // namespace

void compositeRow(const std::uint8_t* top, std::uint8_t* under, std::int32_t count, std::uint8_t opacity,
                  std::optional<Pixel> maskColor) {
  HWY_DYNAMIC_DISPATCH(compositeSpan)(top, under, count, opacity, maskColor, false, under);
}

Bitmap composite(const Bitmap& under, const Bitmap& top, std::int32_t x, std::int32_t y,
                 const CompositeOptions& options) {
  requirePicture(under);
  requirePicture(top);
  const ConstPixels from = under.pixels();
  const Overlay overlay(from, top.pixels(), x, y, options);
  Bitmap result = Bitmap::uninitialized(from.width, from.height);
  const Pixels to = result.writable();
  const bool wholeRows = overlay.width() == to.width;
  writeRows(to, [&](std::int32_t row, bool stream) {
    if (!overlay.touches(row)) {
      copyRow(from.row(row), to.width, stream, to.row(row));
    } else if (wholeRows) {
      overlay.layOver(from.row(row), row, stream, to.row(row));
    } else {
      copyRow(from.row(row), to.width, false, to.row(row));
      overlay.layOver(to.row(row), row);
    }
  });
  return result;
}

void compositeOnto(const Pixels& under, const ConstPixels& top, std::int32_t x, std::int32_t y,
                   const CompositeOptions& options) {
  const Overlay overlay(under, top, x, y, options);
  forRows(overlay.rows(), rowsPerTask(overlay.width()), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t row = overlay.firstRow() + first; row < overlay.firstRow() + last; ++row) {
      overlay.layOver(under.row(row), row);
    }
  });
}

}  // namespace kestrel::engine
#endif
