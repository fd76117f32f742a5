#include "MemoryPass.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tests/bench/peers/pixels/MemoryPass.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "hwy/cache_control.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::bench::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

void OneInputPass(const std::uint8_t* HWY_RESTRICT in, std::size_t bytes, std::uint8_t* HWY_RESTRICT out) {
  const hn::CappedTag<std::uint8_t, 64> d;
  for (std::size_t i = 0; i < bytes; i += hn::Lanes(d)) hn::Stream(hn::LoadU(d, in + i), d, out + i);
}

void TwoInputPass(const std::uint8_t* HWY_RESTRICT first, const std::uint8_t* HWY_RESTRICT second,
                  std::size_t bytes, std::uint8_t* HWY_RESTRICT out) {
  const hn::CappedTag<std::uint8_t, 64> d;
  for (std::size_t i = 0; i < bytes; i += hn::Lanes(d))
    hn::Stream(hn::Xor(hn::Load(d, first + i), hn::Load(d, second + i)), d, out + i);
}

}  // namespace kestrel::bench::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::bench {

HWY_EXPORT(OneInputPass);
HWY_EXPORT(TwoInputPass);

void nonTemporalPass(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(OneInputPass)(in, bytes, out);
}

void nonTemporalPass(const std::uint8_t* first, const std::uint8_t* second, std::size_t bytes,
                     std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(TwoInputPass)(first, second, bytes, out);
}

void storeFence() { hwy::FlushStream(); }

}  // namespace kestrel::bench
#endif
