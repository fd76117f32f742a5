#include "NonTemporal.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/pixels/NonTemporal.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "hwy/cache_control.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

void StreamBytes(const std::uint8_t* HWY_RESTRICT in, std::size_t bytes, std::uint8_t* HWY_RESTRICT out) {
  namespace hn = hwy::HWY_NAMESPACE;
  const hn::CappedTag<std::uint8_t, 64> d;
  std::size_t i = 0;
  for (; i + hn::Lanes(d) <= bytes; i += hn::Lanes(d)) hn::Stream(hn::LoadU(d, in + i), d, out + i);
  std::memcpy(out + i, in + i, bytes - i);
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(StreamBytes);

void copyNonTemporal(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(StreamBytes)(in, bytes, out);
}

void storeFence() { hwy::FlushStream(); }

}  // namespace kestrel::engine
#endif
