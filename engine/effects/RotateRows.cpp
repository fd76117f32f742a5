#include "RotateRows.h"

#include "reference/TurnRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/RotateRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/FloatPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void SampleLine(const float* in, std::size_t stride, std::int64_t u, std::int64_t v, std::int64_t du,
                std::int64_t dv, std::int32_t count, float* out) {
  reference::sampleLine(in, stride, u, v, du, dv, count, out);
}

#else

void SampleLine(const float* HWY_RESTRICT in, std::size_t stride, std::int64_t u, std::int64_t v,
                std::int64_t du, std::int64_t dv, std::int32_t count, float* HWY_RESTRICT out) {
  const Floats d;
  constexpr auto kPixels = static_cast<std::int32_t>(hn::MaxLanes(d) / 4);
  const auto& weights = reference::cubicWeights();
  const auto step = static_cast<std::ptrdiff_t>(stride);
  for (std::int32_t i = 0; i < count; ++i, u += du, v += dv, out += 4) {
    const auto across = hn::LoadDup128(d, weights[reference::phaseOf(u)].data());
    const float* const down = weights[reference::phaseOf(v)].data();
    const float* const corner = in + ((v >> 32) - 1) * step + 4 * ((u >> 32) - 1);
    auto sum = hn::Zero(d);
    for (std::int32_t x = 0; x < 4; x += kPixels) {
      const float* const p = corner + std::ptrdiff_t{4} * x;
      auto column = hn::Mul(hn::LoadU(d, p), hn::Set(d, down[0]));
      column = hn::MulAdd(hn::LoadU(d, p + step), hn::Set(d, down[1]), column);
      column = hn::MulAdd(hn::LoadU(d, p + 2 * step), hn::Set(d, down[2]), column);
      column = hn::MulAdd(hn::LoadU(d, p + 3 * step), hn::Set(d, down[3]), column);
      sum = hn::MulAdd(column, hn::TableLookupLanes(across, spread(d, x)), sum);
    }
    hn::StoreU(sumOfPixels(d, sum), FloatPixel(), out);
  }
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(SampleLine);

void sampleLine(const float* in, std::size_t stride, std::int64_t u, std::int64_t v, std::int64_t du,
                std::int64_t dv, std::int32_t count, float* out) {
  HWY_DYNAMIC_DISPATCH(SampleLine)(in, stride, u, v, du, dv, count, out);
}

}  // namespace kestrel::engine
#endif
