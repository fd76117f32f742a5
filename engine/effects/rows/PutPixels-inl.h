// How the kernels that work on pixels as bytes write them. Included once for each kind of vectors.

#if defined(KESTREL_ENGINE_EFFECTS_PUTPIXELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KESTREL_ENGINE_EFFECTS_PUTPIXELS_INL_H_
#undef KESTREL_ENGINE_EFFECTS_PUTPIXELS_INL_H_
#else
#define KESTREL_ENGINE_EFFECTS_PUTPIXELS_INL_H_
#endif

#include <cstdint>

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Pixels for an address that is a multiple of the vector's length, past the caches or into them.
template <class D, class V>
HWY_INLINE void putPixels(D, V pixels, bool stream, std::uint8_t* out) {
  const hn::Repartition<std::uint8_t, D> bytes;
  if (stream) {
    hn::Stream(hn::BitCast(bytes, pixels), bytes, out);
  } else {
    hn::Store(hn::BitCast(bytes, pixels), bytes, out);
  }
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // KESTREL_ENGINE_EFFECTS_PUTPIXELS_INL_H_
