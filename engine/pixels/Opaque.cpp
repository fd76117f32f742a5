#include "Opaque.h"

#include <algorithm>
#include <atomic>

#include "engine/parallel/Parallel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/pixels/Opaque.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

bool OpaqueRow(const std::uint8_t* in, std::int32_t count) {
  namespace hn = hwy::HWY_NAMESPACE;
  const hn::ScalableTag<std::uint32_t> d;
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  const auto* const pixels = reinterpret_cast<const std::uint32_t*>(in);
  auto all = hn::Set(d, 0xFF000000);
  std::int32_t x = 0;
  for (; x + lanes <= count; x += lanes) all = hn::And(all, hn::LoadU(d, pixels + x));
  bool opaque = hn::AllTrue(d, hn::Eq(all, hn::Set(d, 0xFF000000)));
  for (; x < count; ++x) opaque = opaque && in[std::ptrdiff_t{4} * x + 3] == 255;
  return opaque;
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(OpaqueRow);

bool isOpaqueRow(const std::uint8_t* rgba, std::int32_t count) {
  return HWY_DYNAMIC_DISPATCH(OpaqueRow)(rgba, count);
}

bool isOpaque(const ConstPixels& picture) {
  constexpr std::int32_t kPixelsPerBand = 128 * 1024;
  std::atomic<bool> opaque{true};
  forRows(picture.height, 1 + kPixelsPerBand / std::max(1, picture.width),
          [&](std::int32_t first, std::int32_t last) {
            for (std::int32_t y = first; y < last && opaque.load(std::memory_order_relaxed); ++y) {
              if (!isOpaqueRow(picture.row(y), picture.width)) opaque.store(false, std::memory_order_relaxed);
            }
          });
  return opaque.load();
}

}  // namespace kestrel::engine
#endif
