// Stores for the row kernels that process pixels as bytes. Included once per vector target.

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

/// Stores a vector of pixels, non-temporally if `stream`. `out` must be aligned to the vector's length.
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
