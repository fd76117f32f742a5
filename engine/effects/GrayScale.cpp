#include "GrayScale.h"

#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/WriteRows.h"
#include "engine/effects/rows/reference/PixelRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/GrayScale.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/PutPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

/// Processes whole vectors: rows are padded to 64 bytes, so the padding may be written.
void grayRow(const std::uint8_t* HWY_RESTRICT in, std::int32_t count, [[maybe_unused]] bool stream,
             std::uint8_t* HWY_RESTRICT out) {
#if HWY_TARGET == HWY_SCALAR
  reference::grayRow(in, count, out);
#else
  const hn::CappedTag<std::uint32_t, 16> d;
  const hn::Repartition<std::uint16_t, decltype(d)> d16;
  const hn::Repartition<std::uint8_t, decltype(d)> d8;
  const auto lowBytes = hn::Set(d16, 0x00FF);
  const auto highBytes = hn::Set(d16, 0xFF00);
  const auto redBlue = hn::BitCast(d16, hn::Set(d, reference::kLumaRed | reference::kLumaBlue << 16));
  const auto green = hn::BitCast(d16, hn::Set(d, reference::kLumaGreen));
  const auto half = hn::Set(d, 128);
  const auto byte = hn::Set(d, 0xFF);
  const auto alpha = hn::Set(d, 0xFF000000);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  for (std::int32_t x = 0; x < count; x += lanes) {
    const auto pixels = hn::Load(d8, in + std::ptrdiff_t{4} * x);
    const auto pairs = hn::BitCast(d16, pixels);
    // Each product is a channel times its weight, in 1/256 levels: (c * 256) * weight >> 16.
    const auto rb = hn::MulHigh(hn::ShiftLeft<8>(hn::And(pairs, lowBytes)), redBlue);
    const auto ga = hn::MulHigh(hn::And(pairs, highBytes), green);
    const auto sums = hn::BitCast(d, hn::Add(rb, ga));
    const auto total = hn::Add(hn::Add(sums, hn::ShiftRight<16>(sums)), half);
    const auto luma = hn::And(hn::ShiftRight<8>(total), byte);
    const auto gray = hn::Or(hn::Or(luma, hn::ShiftLeft<8>(luma)), hn::ShiftLeft<16>(luma));
    const auto result = hn::Or(gray, hn::And(hn::BitCast(d, pixels), alpha));
    putPixels(d, result, stream, out + std::ptrdiff_t{4} * x);
  }
#endif
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(grayRow);

Bitmap grayScale(const Bitmap& source) {
  requirePicture(source);
  Bitmap result = Bitmap::uninitialized(source.width(), source.height());
  const ConstPixels from = source.pixels();
  const Pixels to = result.writable();
  writeRows(to, [&](std::int32_t y, bool stream) {
    HWY_DYNAMIC_DISPATCH(grayRow)(from.row(y), to.width, stream, to.row(y));
  });
  return result;
}

}  // namespace kestrel::engine
#endif
