#include "RotateRows.h"

#include "reference/TurnRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/RotateRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

void SampleLine(const ConstPixels& in, std::int64_t u, std::int64_t v, std::int64_t du, std::int64_t dv,
                std::int32_t count, float* HWY_RESTRICT out) {
#if HWY_TARGET == HWY_SCALAR
  reference::sampleLine(in, u, v, du, dv, count, out);
#else
  namespace hn = hwy::HWY_NAMESPACE;
  // One pixel's four floats in a vector; a row's four pixels make four vectors.
  const hn::FixedTag<float, 4> d;
  const hn::Rebind<std::uint8_t, decltype(d)> d8;
  const hn::RebindToSigned<decltype(d)> di;
  const auto alphaLane = hn::RebindMask(d, hn::Eq(hn::Iota(di, 0), hn::Set(di, 3)));
  const auto one = hn::Set(d, 1.0F);
  for (std::int32_t i = 0; i < count; ++i, u += du, v += dv, out += 4) {
    const float* const across = reference::cubicWeights(u);
    const float* const down = reference::cubicWeights(v);
    const std::uint8_t* p = in.row(static_cast<std::int32_t>(v >> 32) - 1) + 4 * ((u >> 32) - 1);
    auto sum = hn::Zero(d);
    for (int y = 0; y < 4; ++y, p += in.stride) {
      const auto weighted = [&](int x) HWY_ATTR {
        const auto pixel = hn::ConvertTo(d, hn::PromoteTo(di, hn::LoadU(d8, p + 4 * x)));
        const auto alpha = hn::IfThenElse(alphaLane, one, hn::Broadcast<3>(pixel));
        return hn::Mul(pixel, hn::Mul(alpha, hn::Set(d, across[x])));
      };
      const auto row = hn::Add(hn::Add(weighted(0), weighted(1)), hn::Add(weighted(2), weighted(3)));
      sum = hn::MulAdd(row, hn::Set(d, down[y]), sum);
    }
    hn::StoreU(sum, d, out);
  }
#endif
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(SampleLine);

void sampleLine(const ConstPixels& in, std::int64_t u, std::int64_t v, std::int64_t du, std::int64_t dv,
                std::int32_t count, float* out) {
  HWY_DYNAMIC_DISPATCH(SampleLine)(in, u, v, du, dv, count, out);
}

}  // namespace kestrel::engine
#endif
