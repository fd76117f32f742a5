#include "FloatRows.h"

#include "reference/FloatRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/rows/FloatRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "FloatPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void PremultiplyRow(const std::uint8_t* in, std::int32_t count, float* out) {
  reference::premultiplyRow(in, count, out);
}
void SumPictureRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                    std::int32_t count, bool, float* out) {
  reference::sumPictureRows(in, stride, weights, rows, count, out);
}
void SumAlphaRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                  std::int32_t count, float* out) {
  reference::sumAlphaRows(in, stride, weights, rows, count, out);
}
void SumFloatRows(const float* const* in, const float* weights, std::int32_t rows, std::size_t values,
                  float* out) {
  reference::sumFloatRows(in, weights, rows, values, out);
}
void FilterColumns(const float* in, const FilterTable& table, float* out) {
  reference::filterColumns(in, table, out);
}
void StoreStraightRow(const float* in, std::int32_t count, std::uint8_t* out) {
  reference::storeStraightRow(in, count, out);
}
void TintRow(const float* in, std::int32_t count, std::uint32_t color, float opacity, std::uint8_t* out) {
  reference::tintRow(in, count, color, opacity, out);
}

#else

void PremultiplyRow(const std::uint8_t* HWY_RESTRICT in, std::int32_t count, float* HWY_RESTRICT out) {
  const Floats d;
  const auto alphas = alphaLanes(d);
  const std::size_t values = std::size_t{4} * static_cast<std::size_t>(count);
  for (std::size_t i = 0; i < values; i += hn::Lanes(d)) {
    hn::StoreU(premultiply(d, loadPixels(d, in + i), alphas), d, out + i);
  }
}

template <bool kOpaque>
void sumRows(const std::uint8_t* HWY_RESTRICT in, std::size_t stride, const float* HWY_RESTRICT weights,
             std::int32_t rows, std::int32_t count, float* HWY_RESTRICT out) {
  const Floats d;
  const auto alphas = alphaLanes(d);
  const auto scale = kOpaque ? opaqueScale(d) : hn::Set(d, 1.0F);
  const std::size_t lanes = hn::Lanes(d);
  const std::size_t values = std::size_t{4} * static_cast<std::size_t>(count);
  // Four independent sums, so that they do not stall each other. Steps of 64 bytes may read the padding of a
  // picture row.
  const std::size_t step = lanes * 4;
  for (std::size_t i = 0; i < values; i += step) {
    auto sum0 = hn::Zero(d), sum1 = hn::Zero(d), sum2 = hn::Zero(d), sum3 = hn::Zero(d);
    const std::uint8_t* p = in + i;
    for (std::int32_t row = 0; row < rows; ++row, p += stride) {
      const auto weight = hn::Set(d, weights[row]);
      const auto add = [&](hn::Vec<Floats> sum, std::size_t at) HWY_ATTR {
        const auto pixels = loadPixels(d, p + at);
        return hn::MulAdd(weight, kOpaque ? pixels : premultiply(d, pixels, alphas), sum);
      };
      sum0 = add(sum0, 0);
      sum1 = add(sum1, lanes);
      sum2 = add(sum2, 2 * lanes);
      sum3 = add(sum3, 3 * lanes);
    }
    hn::StoreU(hn::Mul(sum0, scale), d, out + i);
    hn::StoreU(hn::Mul(sum1, scale), d, out + i + lanes);
    hn::StoreU(hn::Mul(sum2, scale), d, out + i + 2 * lanes);
    hn::StoreU(hn::Mul(sum3, scale), d, out + i + 3 * lanes);
  }
}

void SumPictureRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                    std::int32_t count, bool opaque, float* out) {
  (opaque ? sumRows<true> : sumRows<false>)(in, stride, weights, rows, count, out);
}

void SumAlphaRows(const std::uint8_t* HWY_RESTRICT in, std::size_t stride, const float* HWY_RESTRICT weights,
                  std::int32_t rows, std::int32_t count, float* HWY_RESTRICT out) {
  const Floats d;
  const hn::RebindToUnsigned<Floats> du;
  const hn::RebindToSigned<Floats> di;
  const hn::Repartition<std::uint8_t, Floats> d8;
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  for (std::int32_t x = 0; x < count; x += lanes) {
    auto sum = hn::Zero(d);
    const std::uint8_t* p = in + std::ptrdiff_t{4} * x;
    for (std::int32_t row = 0; row < rows; ++row, p += stride) {
      const auto alpha = hn::ShiftRight<24>(hn::BitCast(du, hn::LoadU(d8, p)));
      sum = hn::MulAdd(hn::Set(d, weights[row]), hn::ConvertTo(d, hn::BitCast(di, alpha)), sum);
    }
    hn::StoreU(sum, d, out + x);
  }
}

void SumFloatRows(const float* const* HWY_RESTRICT in, const float* HWY_RESTRICT weights, std::int32_t rows,
                  std::size_t values, float* HWY_RESTRICT out) {
  const Floats d;
  const std::size_t lanes = hn::Lanes(d);
  // Four vectors at a time, so that each weight is loaded once for four; the slack absorbs the overrun.
  for (std::size_t i = 0; i < values; i += 4 * lanes) {
    auto sum0 = hn::Zero(d), sum1 = hn::Zero(d), sum2 = hn::Zero(d), sum3 = hn::Zero(d);
    for (std::int32_t row = 0; row < rows; ++row) {
      const float* const p = in[row] + i;
      const auto weight = hn::Set(d, weights[row]);
      sum0 = hn::MulAdd(weight, hn::LoadU(d, p), sum0);
      sum1 = hn::MulAdd(weight, hn::LoadU(d, p + lanes), sum1);
      sum2 = hn::MulAdd(weight, hn::LoadU(d, p + 2 * lanes), sum2);
      sum3 = hn::MulAdd(weight, hn::LoadU(d, p + 3 * lanes), sum3);
    }
    hn::StoreU(sum0, d, out + i);
    hn::StoreU(sum1, d, out + i + lanes);
    hn::StoreU(sum2, d, out + i + 2 * lanes);
    hn::StoreU(sum3, d, out + i + 3 * lanes);
  }
}

/// Adds four pixels times their weights to the sum, in as many vectors as they fill.
template <class D>
HWY_INLINE hn::Vec<D> addFourPixels(D d, const float* HWY_RESTRICT pixels, const float* HWY_RESTRICT weights,
                                    hn::Vec<D> sum) {
  constexpr auto kPixels = static_cast<std::int32_t>(hn::MaxLanes(d) / 4);
  const auto four = hn::LoadDup128(d, weights);
  for (std::int32_t i = 0; i < 4; i += kPixels) {
    sum = hn::MulAdd(hn::TableLookupLanes(four, spread(d, i)), hn::LoadU(d, pixels + 4 * i), sum);
  }
  return sum;
}

/// Horizontal pass for one output pixel.
HWY_INLINE void filterPixel(const float* HWY_RESTRICT in, const FilterTable& table, std::int32_t x,
                            float* HWY_RESTRICT out) {
  const Floats d;
  const FilterTable::Run& run = table.run(x);
  const float* const weights = table.weights(run);
  const float* const p = in + std::ptrdiff_t{4} * run.first;
  // Weights are padded with zeros to fours; the row's slack makes the reads beyond the run valid.
  auto even = hn::Zero(d), odd = hn::Zero(d);
  std::int32_t i = 0;
  for (; i + 4 < run.count; i += 8) {
    even = addFourPixels(d, p + std::ptrdiff_t{4} * i, weights + i, even);
    odd = addFourPixels(d, p + std::ptrdiff_t{4} * i + 16, weights + i + 4, odd);
  }
  if (i < run.count) even = addFourPixels(d, p + std::ptrdiff_t{4} * i, weights + i, even);
  hn::StoreU(sumOfPixels(d, hn::Add(even, odd)), FloatPixel(), out + std::ptrdiff_t{4} * x);
}

void FilterColumns(const float* HWY_RESTRICT in, const FilterTable& table, float* HWY_RESTRICT out) {
  for (std::int32_t x = 0; x < table.outputs(); ++x) filterPixel(in, table, x, out);
}

void StoreStraightRow(const float* HWY_RESTRICT in, std::int32_t count, std::uint8_t* HWY_RESTRICT out) {
  const Floats d;
  const hn::RebindToSigned<Floats> di;
  const hn::Rebind<std::uint8_t, Floats> bytes;
  const auto alphas = alphaLanes(d);
  const auto half = hn::Set(d, 0.5F);
  const auto one = hn::Set(d, 1.0F);
  const std::size_t lanes = hn::Lanes(d);
  const auto inverse = [&](hn::Vec<Floats> alpha)
                           HWY_ATTR { return hn::IfThenElseZero(hn::Ge(alpha, half), hn::Div(one, alpha)); };
  const auto store = [&](hn::Vec<Floats> pixels, hn::Vec<Floats> factor, std::uint8_t* to) HWY_ATTR {
    // Adding 1.5 * 2^23 rounds to the nearest integer, which the low bits of the sum then hold.
    const auto whole = hn::Set(d, 12582912.0F);
    const auto straight = hn::Mul(pixels, hn::IfThenElse(alphas, one, factor));
    const auto level = hn::Sub(hn::BitCast(di, hn::Add(straight, whole)), hn::BitCast(di, whole));
    hn::StoreU(hn::DemoteTo(bytes, level), bytes, to);
  };
  const std::size_t values = std::size_t{4} * static_cast<std::size_t>(count);
  std::size_t i = 0;
  for (; i + 4 * lanes <= values; i += 4 * lanes) {
    const auto p0 = hn::LoadU(d, in + i), p1 = hn::LoadU(d, in + i + lanes);
    const auto p2 = hn::LoadU(d, in + i + 2 * lanes), p3 = hn::LoadU(d, in + i + 3 * lanes);
    const auto factors = inverse(alphasOf(d, p0, p1, p2, p3));
    store(p0, hn::Broadcast<0>(factors), out + i);
    store(p1, hn::Broadcast<1>(factors), out + i + lanes);
    store(p2, hn::Broadcast<2>(factors), out + i + 2 * lanes);
    store(p3, hn::Broadcast<3>(factors), out + i + 3 * lanes);
  }
  for (; i + lanes <= values; i += lanes) {
    const auto pixels = hn::LoadU(d, in + i);
    store(pixels, inverse(hn::Broadcast<3>(pixels)), out + i);
  }
  reference::storeStraightRow(in + i, static_cast<std::int32_t>((values - i) / 4), out + i);
}

void TintRow(const float* HWY_RESTRICT in, std::int32_t count, std::uint32_t color, float opacity,
             std::uint8_t* HWY_RESTRICT out) {
  const Floats d;
  const hn::RebindToUnsigned<Floats> du;
  const hn::Repartition<std::uint8_t, Floats> d8;
  const auto tint = hn::Set(du, color & 0x00FFFFFF);
  const auto strength = hn::Set(d, opacity);
  const auto limit = hn::Set(d, 255.0F);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  std::int32_t x = 0;
  for (; x + lanes <= count; x += lanes) {
    const auto scaled = hn::Mul(hn::LoadU(d, in + x), strength);
    const auto alpha = hn::NearestInt(hn::Min(hn::Max(scaled, hn::Zero(d)), limit));
    const auto pixels = hn::Or(tint, hn::ShiftLeft<24>(hn::BitCast(du, alpha)));
    hn::StoreU(hn::BitCast(d8, pixels), d8, out + std::ptrdiff_t{4} * x);
  }
  reference::tintRow(in + x, count - x, color, opacity, out + std::ptrdiff_t{4} * x);
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(PremultiplyRow);
HWY_EXPORT(SumPictureRows);
HWY_EXPORT(SumAlphaRows);
HWY_EXPORT(SumFloatRows);
HWY_EXPORT(FilterColumns);
HWY_EXPORT(StoreStraightRow);
HWY_EXPORT(TintRow);

void premultiplyRow(const std::uint8_t* in, std::int32_t count, float* out) {
  HWY_DYNAMIC_DISPATCH(PremultiplyRow)(in, count, out);
}
void sumPictureRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                    std::int32_t count, bool opaque, float* out) {
  HWY_DYNAMIC_DISPATCH(SumPictureRows)(in, stride, weights, rows, count, opaque, out);
}
void sumAlphaRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                  std::int32_t count, float* out) {
  HWY_DYNAMIC_DISPATCH(SumAlphaRows)(in, stride, weights, rows, count, out);
}
void sumFloatRows(const float* const* in, const float* weights, std::int32_t rows, std::size_t values,
                  float* out) {
  HWY_DYNAMIC_DISPATCH(SumFloatRows)(in, weights, rows, values, out);
}
void filterColumns(const float* in, const FilterTable& table, float* out) {
  HWY_DYNAMIC_DISPATCH(FilterColumns)(in, table, out);
}
void storeStraightRow(const float* in, std::int32_t count, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(StoreStraightRow)(in, count, out);
}
void tintRow(const float* in, std::int32_t count, std::uint32_t color, float opacity, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(TintRow)(in, count, color, opacity, out);
}

}  // namespace kestrel::engine
#endif
