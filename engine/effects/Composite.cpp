#include "Composite.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Common.h"
#include "base/RuntimeError.h"
#include "engine/Parallel.h"
#include "reference/PixelRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/Composite.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void compositeSpan(const std::uint8_t* top, std::int32_t count, std::uint8_t opacity,
                   const std::optional<Pixel>& mask, std::uint8_t* under) {
  reference::compositeRow(top, count, opacity, mask, under);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

/// `top` over opaque pixels: (t * a + u * (255 - a)) / 255, two channels in each 16-bit lane's turn.
template <class D, class V>
V overOpaque(D d, V top, V alpha, V under) {
  const hn::Repartition<std::uint16_t, D> d16;
  const auto low = hn::Set(d16, 0x00FF);
  const auto half = hn::Set(d16, 128);
  const auto a = hn::BitCast(d16, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
  const auto rest = hn::Xor(a, low);
  const auto t = hn::BitCast(d16, hn::Or(top, hn::Set(d, 0xFF000000)));
  const auto u = hn::BitCast(d16, under);
  const auto mix = [&](auto tc, auto uc) HWY_ATTR {
    const auto sum = hn::Add(hn::Add(hn::Mul(tc, a), hn::Mul(uc, rest)), half);
    return hn::ShiftRight<8>(hn::Add(sum, hn::ShiftRight<8>(sum)));
  };
  const auto rb = mix(hn::And(t, low), hn::And(u, low));
  const auto ga = mix(hn::ShiftRight<8>(t), hn::ShiftRight<8>(u));
  return hn::BitCast(d, hn::Or(rb, hn::ShiftLeft<8>(ga)));
}

/// The general case, as `over` in Blend.h tells it.
template <class D, class V>
V overAny(D d, V top, V alpha, V under) {
  const hn::RebindToFloat<D> df;
  const hn::RebindToSigned<D> di;
  const hn::Repartition<std::uint16_t, D> d16;
  const auto toFloat = [&](V v) HWY_ATTR { return hn::ConvertTo(df, hn::BitCast(di, v)); };
  const auto product = [&](V a, V b) HWY_ATTR {  // of two numbers of at most 255
    return hn::BitCast(d, hn::Mul(hn::BitCast(d16, a), hn::BitCast(d16, b)));
  };
  const auto byte = hn::Set(d, 0xFF);
  const auto underAlpha = hn::ShiftRight<24>(under);
  const auto underWeight = product(underAlpha, hn::Xor(alpha, byte));
  const auto topWeight = product(alpha, byte);
  const auto total = hn::Add(topWeight, underWeight);
  const auto tw = toFloat(topWeight);
  const auto uw = toFloat(underWeight);
  const auto divisor = toFloat(hn::Max(total, hn::Set(d, 1)));
  const auto mix = [&](V t, V u) HWY_ATTR {
    const auto sum = hn::MulAdd(toFloat(hn::And(t, byte)), tw, hn::Mul(toFloat(hn::And(u, byte)), uw));
    return hn::BitCast(d, hn::NearestInt(hn::Div(sum, divisor)));
  };
  const auto r = mix(top, under);
  const auto g = mix(hn::ShiftRight<8>(top), hn::ShiftRight<8>(under));
  const auto b = mix(hn::ShiftRight<16>(top), hn::ShiftRight<16>(under));
  const auto rounded = hn::Add(underWeight, hn::Set(d, 128));
  const auto rest = hn::ShiftRight<8>(hn::Add(rounded, hn::ShiftRight<8>(rounded)));
  const auto a = hn::Add(alpha, rest);
  const auto mixed =
      hn::Or(hn::Or(r, hn::ShiftLeft<8>(g)), hn::Or(hn::ShiftLeft<16>(b), hn::ShiftLeft<24>(a)));
  return hn::IfThenElse(hn::Eq(alpha, hn::Zero(d)), under, mixed);
}

void compositeSpan(const std::uint8_t* HWY_RESTRICT top, std::int32_t count, std::uint8_t opacity,
                   const std::optional<Pixel>& mask, std::uint8_t* HWY_RESTRICT under) {
  const hn::CappedTag<std::uint32_t, 16> d;
  const hn::Repartition<std::uint8_t, decltype(d)> d8;
  const hn::Repartition<std::uint16_t, decltype(d)> d16;
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  const auto opaque = hn::Set(d, 255);
  const auto strength = hn::BitCast(d16, hn::Set(d, opacity));
  const auto colorBits = hn::Set(d, 0x00FFFFFF);
  // No pixel's colour has a value in the fourth byte, so that without a mask colour none is equal.
  std::uint32_t maskValue = 0xFF000000;
  if (mask)
    maskValue =
        mask->r | static_cast<std::uint32_t>(mask->g) << 8 | static_cast<std::uint32_t>(mask->b) << 16;
  const auto masked = hn::Set(d, maskValue);

  std::int32_t x = 0;
  for (; x + lanes <= count; x += lanes) {
    const auto t = hn::BitCast(d, hn::LoadU(d8, top + std::ptrdiff_t{4} * x));
    const auto scaled =
        hn::Add(hn::BitCast(d, hn::Mul(hn::BitCast(d16, hn::ShiftRight<24>(t)), strength)), hn::Set(d, 128));
    const auto strong = hn::ShiftRight<8>(hn::Add(scaled, hn::ShiftRight<8>(scaled)));
    const auto alpha = hn::IfThenZeroElse(hn::Eq(hn::And(t, colorBits), masked), strong);
    if (hn::AllTrue(d, hn::Eq(alpha, hn::Zero(d)))) continue;
    std::uint8_t* const target = under + std::ptrdiff_t{4} * x;
    if (hn::AllTrue(d, hn::Eq(alpha, opaque))) {
      hn::StoreU(hn::BitCast(d8, t), d8, target);
      continue;
    }
    const auto u = hn::BitCast(d, hn::LoadU(d8, target));
    const bool overAllOpaque = hn::AllTrue(d, hn::Eq(hn::ShiftRight<24>(u), opaque));
    const auto mixed = overAllOpaque ? overOpaque(d, t, alpha, u) : overAny(d, t, alpha, u);
    hn::StoreU(hn::BitCast(d8, mixed), d8, target);
  }
  reference::compositeRow(top + std::ptrdiff_t{4} * x, count - x, opacity, mask,
                          under + std::ptrdiff_t{4} * x);
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(compositeSpan);

namespace {

/// One picture at its place over another, and the part of that which they share.
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

  /// Lays its part of row y over that of the lower picture, if it has any.
  void layOver(std::uint8_t* row, std::int32_t y) const {
    if (y < firstRow_ || y >= lastRow_ || width_ <= 0) return;
    const std::uint8_t* const from = top_.row(static_cast<std::int32_t>(std::int64_t{y} - y_));
    compositeRow(from + 4 * (std::int64_t{left_} - x_), row + std::ptrdiff_t{4} * left_, width_, opacity_,
                 maskColor_);
  }

 private:
  ConstPixels top_;
  std::int32_t x_, y_;
  std::optional<Pixel> maskColor_;
  std::uint8_t opacity_ = 0;
  std::int32_t left_ = 0, width_ = 0, firstRow_ = 0, lastRow_ = 0;
};

}  // namespace

void compositeRow(const std::uint8_t* top, std::uint8_t* under, std::int32_t count, std::uint8_t opacity,
                  std::optional<Pixel> maskColor) {
  HWY_DYNAMIC_DISPATCH(compositeSpan)(top, count, opacity, maskColor, under);
}

Bitmap composite(const Bitmap& under, const Bitmap& top, std::int32_t x, std::int32_t y,
                 const CompositeOptions& options) {
  requirePicture(under);
  requirePicture(top);
  const ConstPixels from = under.pixels();
  const Overlay overlay(from, top.pixels(), x, y, options);
  Bitmap result = Bitmap::uninitialized(from.width, from.height);
  const Pixels to = result.writable();
  forRows(to.height, rowsPerTask(to.width), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t row = first; row < last; ++row) {
      std::memcpy(to.row(row), from.row(row), static_cast<std::size_t>(to.width) * sizeof(Pixel));
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
