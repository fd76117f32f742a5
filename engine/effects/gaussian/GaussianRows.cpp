#include "GaussianRows.h"

#include <algorithm>
#include <cstddef>

#include "engine/effects/rows/FloatRows.h"
#include "reference/GaussianRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/gaussian/GaussianRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/FloatPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void HalveRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  reference::halveRow(in, count, channels, out);
}
void DoubleRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  reference::doubleRow(in, count, channels, out);
}
void SmoothRow(const float* in, const float* weights, std::int32_t taps, std::int32_t count,
               std::int32_t channels, float* out) {
  reference::smoothRow(in, weights, taps, count, channels, out);
}
void SumRowsTwice(const float* const* in, const float* firstWeights, const float* secondWeights,
                  std::int32_t rows, std::size_t values, float* first, float* second) {
  reference::sumRowsTwice(in, firstWeights, secondWeights, rows, values, first, second);
}

#else

/// Permutes a vector's pixels of four floats from 0 1 2 3 to 0 2 1 3. Its own inverse.
HWY_INLINE hn::Vec<Floats> swapMiddle(hn::Vec<Floats> v) {
  const Floats d;
  const hn::RebindToSigned<Floats> di;
  if constexpr (hn::MaxLanes(d) < 16) {
    return v;
  } else {
    alignas(64) static constexpr std::int32_t kOrder[] = {0, 1, 2, 3, 8,  9,  10, 11,
                                                          4, 5, 6, 7, 12, 13, 14, 15};
    return hn::TableLookupLanes(v, hn::IndicesFromVec(d, hn::Load(di, kOrder)));
  }
}

/// Loads two vectors of pixels and deinterleaves them into even and odd pixels.
template <int kChannels>
HWY_INLINE void loadParted(const float* in, hn::Vec<Floats>& even, hn::Vec<Floats>& odd) {
  const Floats d;
  if constexpr (kChannels == 1) {
    hn::LoadInterleaved2(d, in, even, odd);
  } else if constexpr (hn::MaxLanes(d) == 4) {
    even = hn::LoadU(d, in);
    odd = hn::LoadU(d, in + 4);
  } else {
    const auto a = swapMiddle(hn::LoadU(d, in));
    const auto b = swapMiddle(hn::LoadU(d, in + hn::Lanes(d)));
    even = hn::ConcatLowerLower(d, b, a);
    odd = hn::ConcatUpperUpper(d, b, a);
  }
}

/// Interleaves even and odd pixels and stores them.
template <int kChannels>
HWY_INLINE void storeJoined(hn::Vec<Floats> even, hn::Vec<Floats> odd, float* out) {
  const Floats d;
  if constexpr (kChannels == 1) {
    hn::StoreInterleaved2(even, odd, d, out);
  } else if constexpr (hn::MaxLanes(d) == 4) {
    hn::StoreU(even, d, out);
    hn::StoreU(odd, d, out + 4);
  } else {
    hn::StoreU(swapMiddle(hn::ConcatLowerLower(d, odd, even)), d, out);
    hn::StoreU(swapMiddle(hn::ConcatUpperUpper(d, odd, even)), d, out + hn::Lanes(d));
  }
}

template <int kChannels>
void halve(const float* HWY_RESTRICT in, std::int32_t count, float* HWY_RESTRICT out) {
  const Floats d;
  // Deinterleave into buffers, piece by piece: each pixel is read at two positions, not aligned to vectors.
  constexpr std::ptrdiff_t kPiece = 256;
  HWY_ALIGN float evens[kPiece + kRowSlack], odds[kPiece + kRowSlack];
  const std::ptrdiff_t lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  const std::ptrdiff_t values = std::ptrdiff_t{count} * kChannels;
  const auto outer = hn::Set(d, 0.0625F), inner = hn::Set(d, 0.25F), middle = hn::Set(d, 0.375F);
  for (std::ptrdiff_t first = 0; first < values; first += kPiece) {
    const std::ptrdiff_t piece = std::min(kPiece, values - first);
    for (std::ptrdiff_t i = 0; i < piece + 2 * kChannels; i += lanes) {
      auto even = hn::Undefined(d), odd = hn::Undefined(d);
      loadParted<kChannels>(in + 2 * (first + i), even, odd);
      hn::Store(even, d, evens + i);
      hn::Store(odd, d, odds + i);
    }
    for (std::ptrdiff_t i = 0; i < piece; i += lanes) {
      const auto far = hn::Add(hn::Load(d, evens + i), hn::LoadU(d, evens + i + 2 * kChannels));
      const auto near = hn::Add(hn::Load(d, odds + i), hn::LoadU(d, odds + i + kChannels));
      const auto here = hn::LoadU(d, evens + i + kChannels);
      hn::StoreU(hn::MulAdd(far, outer, hn::MulAdd(near, inner, hn::Mul(here, middle))), d, out + first + i);
    }
  }
}

void HalveRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  channels == 4 ? halve<4>(in, count, out) : halve<1>(in, count, out);
}

template <int kChannels>
void twofold(const float* HWY_RESTRICT in, std::int32_t count, float* HWY_RESTRICT out) {
  const Floats d;
  const std::ptrdiff_t lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  const std::ptrdiff_t values = std::ptrdiff_t{count} / 2 * kChannels;
  const auto outer = hn::Set(d, 0.125F), middle = hn::Set(d, 0.75F), half = hn::Set(d, 0.5F);
  for (std::ptrdiff_t i = 0; i < values; i += lanes) {
    const auto before = hn::LoadU(d, in + i);
    const auto here = hn::LoadU(d, in + i + kChannels);
    const auto after = hn::LoadU(d, in + i + 2 * kChannels);
    const auto even = hn::MulAdd(hn::Add(before, after), outer, hn::Mul(here, middle));
    const auto odd = hn::Mul(hn::Add(here, after), half);
    storeJoined<kChannels>(even, odd, out + 2 * i);
  }
}

void DoubleRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  channels == 4 ? twofold<4>(in, count, out) : twofold<1>(in, count, out);
}

void SmoothRow(const float* HWY_RESTRICT in, const float* HWY_RESTRICT weights, std::int32_t taps,
               std::int32_t count, std::int32_t channels, float* HWY_RESTRICT out) {
  const Floats d;
  const std::ptrdiff_t lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  const std::ptrdiff_t values = std::ptrdiff_t{count} * channels;
  // Four independent vectors: each weight is loaded once for four, and the sums do not stall.
  for (std::ptrdiff_t i = 0; i < values; i += 4 * lanes) {
    const float* p = in + i;
    auto sum0 = hn::Zero(d), sum1 = hn::Zero(d), sum2 = hn::Zero(d), sum3 = hn::Zero(d);
    for (std::int32_t k = 0; k < taps; ++k, p += channels) {
      const auto weight = hn::Set(d, weights[k]);
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

void SumRowsTwice(const float* const* HWY_RESTRICT in, const float* HWY_RESTRICT firstWeights,
                  const float* HWY_RESTRICT secondWeights, std::int32_t rows, std::size_t values,
                  float* HWY_RESTRICT first, float* HWY_RESTRICT second) {
  const Floats d;
  const std::size_t lanes = hn::Lanes(d);
  for (std::size_t i = 0; i < values; i += 4 * lanes) {
    auto a0 = hn::Zero(d), a1 = hn::Zero(d), a2 = hn::Zero(d), a3 = hn::Zero(d);
    auto b0 = hn::Zero(d), b1 = hn::Zero(d), b2 = hn::Zero(d), b3 = hn::Zero(d);
    for (std::int32_t row = 0; row < rows; ++row) {
      const float* const p = in[row] + i;
      const auto a = hn::Set(d, firstWeights[row]), b = hn::Set(d, secondWeights[row]);
      const auto v0 = hn::LoadU(d, p), v1 = hn::LoadU(d, p + lanes);
      const auto v2 = hn::LoadU(d, p + 2 * lanes), v3 = hn::LoadU(d, p + 3 * lanes);
      a0 = hn::MulAdd(a, v0, a0);
      a1 = hn::MulAdd(a, v1, a1);
      a2 = hn::MulAdd(a, v2, a2);
      a3 = hn::MulAdd(a, v3, a3);
      b0 = hn::MulAdd(b, v0, b0);
      b1 = hn::MulAdd(b, v1, b1);
      b2 = hn::MulAdd(b, v2, b2);
      b3 = hn::MulAdd(b, v3, b3);
    }
    hn::StoreU(a0, d, first + i);
    hn::StoreU(a1, d, first + i + lanes);
    hn::StoreU(a2, d, first + i + 2 * lanes);
    hn::StoreU(a3, d, first + i + 3 * lanes);
    hn::StoreU(b0, d, second + i);
    hn::StoreU(b1, d, second + i + lanes);
    hn::StoreU(b2, d, second + i + 2 * lanes);
    hn::StoreU(b3, d, second + i + 3 * lanes);
  }
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(HalveRow);
HWY_EXPORT(DoubleRow);
HWY_EXPORT(SmoothRow);
HWY_EXPORT(SumRowsTwice);

void halveRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  HWY_DYNAMIC_DISPATCH(HalveRow)(in, count, channels, out);
}
void doubleRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  HWY_DYNAMIC_DISPATCH(DoubleRow)(in, count, channels, out);
}
void smoothRow(const float* in, const float* weights, std::int32_t taps, std::int32_t count,
               std::int32_t channels, float* out) {
  HWY_DYNAMIC_DISPATCH(SmoothRow)(in, weights, taps, count, channels, out);
}
void sumRowsTwice(const float* const* in, const float* firstWeights, const float* secondWeights,
                  std::int32_t rows, std::size_t values, float* first, float* second) {
  HWY_DYNAMIC_DISPATCH(SumRowsTwice)(in, firstWeights, secondWeights, rows, values, first, second);
}

}  // namespace kestrel::engine
#endif
