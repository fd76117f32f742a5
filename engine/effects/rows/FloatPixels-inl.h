// Shared by the row kernels that process pixels as floats. Included once per vector target.

#if defined(KESTREL_ENGINE_EFFECTS_FLOATPIXELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KESTREL_ENGINE_EFFECTS_FLOATPIXELS_INL_H_
#undef KESTREL_ENGINE_EFFECTS_FLOATPIXELS_INL_H_
#else
#define KESTREL_ENGINE_EFFECTS_FLOATPIXELS_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

/// Vectors of 1 to 4 pixels, four floats each.
#if HWY_HAVE_SCALABLE
using Floats = hn::FixedTag<float, 4>;
#else
using Floats = hn::CappedTag<float, 16>;
#endif
using FloatPixel = hn::FixedTag<float, 4>;

/// Loads a vector of pixels and converts their bytes to floats.
template <class D>
hn::Vec<D> loadPixels(D d, const std::uint8_t* in) {
  const hn::Rebind<std::uint8_t, D> bytes;
  const hn::RebindToSigned<D> di;
  return hn::ConvertTo(d, hn::PromoteTo(di, hn::LoadU(bytes, in)));
}

/// Mask of each pixel's alpha lane.
template <class D>
hn::Mask<D> alphaLanes(D d) {
  const hn::RebindToUnsigned<D> du;
  const auto three = hn::Set(du, 3);
  return hn::RebindMask(d, hn::Eq(hn::And(hn::Iota(du, 0), three), three));
}

/// Red, green and blue times alpha; alpha unchanged.
template <class D>
hn::Vec<D> premultiply(D d, hn::Vec<D> pixels, hn::Mask<D> alphas) {
  return hn::Mul(pixels, hn::IfThenElse(alphas, hn::Set(d, 1.0F), hn::Broadcast<3>(pixels)));
}

/// Factors that premultiply opaque pixels, or weighted sums of them.
template <class D>
hn::Vec<D> opaqueScale(D d) {
  return hn::IfThenElse(alphaLanes(d), hn::Set(d, 1.0F), hn::Set(d, 255.0F));
}

/// Gathers the alphas of four vectors: lane i of each block of four is the alpha of vector i's pixel there.
/// One division then serves all four vectors.
template <class D>
hn::Vec<D> alphasOf(D d, hn::Vec<D> a, hn::Vec<D> b, hn::Vec<D> c, hn::Vec<D> e) {
  const hn::Repartition<std::uint64_t, D> d64;
  const auto ab = hn::BitCast(d64, hn::InterleaveUpper(d, a, b));
  const auto ce = hn::BitCast(d64, hn::InterleaveUpper(d, c, e));
  return hn::BitCast(d, hn::InterleaveUpper(d64, ab, ce));
}

/// Lane indices that broadcast one of four weights to each pixel: pixel i of the vector gets weight `first` +
/// i.
template <class D>
auto spread(D d, std::int32_t first) {
  const hn::RebindToSigned<D> di;
  return hn::IndicesFromVec(d, hn::Add(hn::ShiftRight<2>(hn::Iota(di, 0)), hn::Set(di, first)));
}

/// Sum of a vector's pixels.
template <class D>
hn::Vec<FloatPixel> sumOfPixels(D d, hn::Vec<D> v) {
  if constexpr (hn::MaxLanes(d) <= 4) {
    return v;
  } else {
    const hn::Half<D> half;
    return sumOfPixels(half, hn::Add(hn::LowerHalf(half, v), hn::UpperHalf(half, v)));
  }
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
