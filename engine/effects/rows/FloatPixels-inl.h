// What the kernels that work on pixels as floats share. Included once for each kind of vectors.

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

/// Vectors of 1 to 4 whole pixels, four floats each.
#if HWY_HAVE_SCALABLE
using Floats = hn::FixedTag<float, 4>;
#else
using Floats = hn::CappedTag<float, 16>;
#endif
using FloatPixel = hn::FixedTag<float, 4>;

/// The bytes of as many pixels as the vector holds, as floats.
template <class D>
hn::Vec<D> loadPixels(D d, const std::uint8_t* in) {
  const hn::Rebind<std::uint8_t, D> bytes;
  const hn::RebindToSigned<D> di;
  return hn::ConvertTo(d, hn::PromoteTo(di, hn::LoadU(bytes, in)));
}

/// Each pixel's fourth lane.
template <class D>
hn::Mask<D> alphaLanes(D d) {
  const hn::RebindToUnsigned<D> du;
  const auto three = hn::Set(du, 3);
  return hn::RebindMask(d, hn::Eq(hn::And(hn::Iota(du, 0), three), three));
}

/// Red, green and blue times alpha; alpha as it is.
template <class D>
hn::Vec<D> premultiply(D d, hn::Vec<D> pixels, hn::Mask<D> alphas) {
  return hn::Mul(pixels, hn::IfThenElse(alphas, hn::Set(d, 1.0F), hn::Broadcast<3>(pixels)));
}

/// What opaque pixels, and sums of them, are to be multiplied with to be weighed by their alpha.
template <class D>
hn::Vec<D> opaqueScale(D d) {
  return hn::IfThenElse(alphaLanes(d), hn::Set(d, 1.0F), hn::Set(d, 255.0F));
}

/// The alphas of four vectors of pixels side by side: lane i of a block of four is that of vector i's pixel
/// there. So what is to be divided by them takes one division for all.
template <class D>
hn::Vec<D> alphasOf(D d, hn::Vec<D> a, hn::Vec<D> b, hn::Vec<D> c, hn::Vec<D> e) {
  const hn::Repartition<std::uint64_t, D> d64;
  const auto ab = hn::BitCast(d64, hn::InterleaveUpper(d, a, b));
  const auto ce = hn::BitCast(d64, hn::InterleaveUpper(d, c, e));
  return hn::BitCast(d, hn::InterleaveUpper(d64, ab, ce));
}

/// For each pixel of a vector its number, times four lanes, counted from `first`: how four weights are
/// spread.
template <class D>
auto spread(D d, std::int32_t first) {
  const hn::RebindToSigned<D> di;
  return hn::IndicesFromVec(d, hn::Add(hn::ShiftRight<2>(hn::Iota(di, 0)), hn::Set(di, first)));
}

/// The sum of a vector's pixels.
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
