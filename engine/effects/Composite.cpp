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

void compositeRow(const std::uint8_t* top, std::uint8_t* under, std::int32_t count, std::uint8_t opacity,
                  std::optional<Pixel> maskColor) {
  HWY_DYNAMIC_DISPATCH(compositeSpan)(top, count, opacity, maskColor, under);
}

Bitmap composite(Bitmap under, const Bitmap& top, std::int32_t x, std::int32_t y,
                 const CompositeOptions& options) {
  requirePicture(under);
  requirePicture(top);
  if (std::isnan(options.opacity)) {
    throw RuntimeError(err::kInvalidCall, "The opacity must be a number from 0 to 1.");
  }
  const auto opacity = static_cast<std::uint8_t>(std::lrint(std::clamp(options.opacity, 0.0, 1.0) * 255));
  const std::int64_t left = std::max(0, x);
  const std::int64_t upper = std::max(0, y);
  const std::int64_t right = std::min<std::int64_t>(under.width(), std::int64_t{x} + top.width());
  const std::int64_t lower = std::min<std::int64_t>(under.height(), std::int64_t{y} + top.height());
  if (opacity == 0 || left >= right || upper >= lower) return under;

  const ConstPixels from = top.pixels();
  const Pixels to = under.writable();
  const auto width = static_cast<std::int32_t>(right - left);
  const auto height = static_cast<std::int32_t>(lower - upper);
  forRows(height, rowsPerTask(width), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t row = first; row < last; ++row) {
      compositeRow(from.row(static_cast<std::int32_t>(upper - y + row)) + (left - x) * 4,
                   to.row(static_cast<std::int32_t>(upper + row)) + left * 4, width, opacity,
                   options.maskColor);
    }
  });
  return under;
}

}  // namespace kestrel::engine
#endif
