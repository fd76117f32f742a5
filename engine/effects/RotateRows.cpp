#include "RotateRows.h"

#include "reference/TurnRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/RotateRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "FloatPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void SampleLine(const ConstPixels& in, bool, std::int64_t u, std::int64_t v, std::int64_t du, std::int64_t dv,
                std::int32_t count, float* out) {
  reference::sampleLine(in, u, v, du, dv, count, out);
}

#else

template <bool kOpaque>
void sampleLine(const ConstPixels& in, std::int64_t u, std::int64_t v, std::int64_t du, std::int64_t dv,
                std::int32_t count, float* HWY_RESTRICT out) {
  const Floats d;
  const FloatPixel pixel;
  constexpr auto kPixels = static_cast<std::int32_t>(hn::MaxLanes(d) / 4);
  const auto alphas = alphaLanes(d);
  const auto scale = opaqueScale(pixel);
  const auto& weights = reference::cubicWeights();
  for (std::int32_t i = 0; i < count; ++i, u += du, v += dv, out += 4) {
    const auto across = hn::LoadDup128(d, weights[reference::phaseOf(u)].data());
    const float* const down = weights[reference::phaseOf(v)].data();
    const std::uint8_t* const corner = in.row(static_cast<std::int32_t>(v >> 32) - 1) + 4 * ((u >> 32) - 1);
    auto sum = hn::Zero(d);
    for (std::int32_t x = 0; x < 4; x += kPixels) {
      const auto weighted = [&](int y) HWY_ATTR {
        const auto pixels = loadPixels(d, corner + static_cast<std::size_t>(y) * in.stride + 4 * x);
        return hn::Mul(kOpaque ? pixels : premultiply(d, pixels, alphas), hn::Set(d, down[y]));
      };
      const auto column = hn::Add(hn::Add(weighted(0), weighted(1)), hn::Add(weighted(2), weighted(3)));
      sum = hn::MulAdd(column, hn::TableLookupLanes(across, spread(d, x)), sum);
    }
    const auto sample = sumOfPixels(d, sum);
    hn::StoreU(kOpaque ? hn::Mul(sample, scale) : sample, pixel, out);
  }
}

void SampleLine(const ConstPixels& in, bool opaque, std::int64_t u, std::int64_t v, std::int64_t du,
                std::int64_t dv, std::int32_t count, float* out) {
  (opaque ? sampleLine<true> : sampleLine<false>)(in, u, v, du, dv, count, out);
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(SampleLine);

void sampleLine(const ConstPixels& in, bool opaque, std::int64_t u, std::int64_t v, std::int64_t du,
                std::int64_t dv, std::int32_t count, float* out) {
  HWY_DYNAMIC_DISPATCH(SampleLine)(in, opaque, u, v, du, dv, count, out);
}

}  // namespace kestrel::engine
#endif
