#include "Flatten.h"

#include <cstring>

#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/WriteRows.h"
#include "engine/effects/rows/reference/PixelRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/Flatten.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/PutPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

/// Processes whole vectors: rows are padded to 64 bytes, so the padding may be written.
void flattenRow(const std::uint8_t* HWY_RESTRICT in, std::int32_t count, Pixel background,
                [[maybe_unused]] bool stream, std::uint8_t* HWY_RESTRICT out) {
#if HWY_TARGET == HWY_SCALAR
  reference::flattenRow(in, count, background, out);
#else
  const hn::CappedTag<std::uint32_t, 16> d;
  const hn::Repartition<std::uint16_t, decltype(d)> d16;
  const hn::Repartition<std::uint8_t, decltype(d)> d8;
  background.a = 255;
  std::uint32_t value;
  std::memcpy(&value, &background, sizeof value);
  const auto low = hn::Set(d16, 0x00FF);
  const auto opaque = hn::Set(d, 0xFF000000);
  const auto half = hn::Set(d16, 128);
  const auto ground = hn::BitCast(d16, hn::Set(d, value));
  const auto groundRB = hn::And(ground, low);
  const auto groundGA = hn::ShiftRight<8>(ground);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));

  // The weighted sum of two channels in each pair of bytes, divided by 255 and rounded.
  const auto mix = [&](auto channels, auto a, auto groundChannels) HWY_ATTR {
    const auto sum = hn::Add(hn::Add(hn::Mul(channels, a), hn::Mul(groundChannels, hn::Xor(a, low))), half);
    return hn::ShiftRight<8>(hn::Add(sum, hn::ShiftRight<8>(sum)));
  };
  for (std::int32_t x = 0; x < count; x += lanes) {
    const auto pixels = hn::BitCast(d, hn::Load(d8, in + std::ptrdiff_t{4} * x));
    const auto alpha = hn::ShiftRight<24>(pixels);
    const auto a = hn::BitCast(d16, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
    const auto channels = hn::BitCast(d16, hn::Or(pixels, opaque));
    const auto rb = mix(hn::And(channels, low), a, groundRB);
    const auto ga = mix(hn::ShiftRight<8>(channels), a, groundGA);
    putPixels(d, hn::Or(rb, hn::ShiftLeft<8>(ga)), stream, out + std::ptrdiff_t{4} * x);
  }
#endif
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(flattenRow);

Bitmap flatten(const Bitmap& source, Pixel background) {
  requirePicture(source);
  Bitmap result = Bitmap::uninitialized(source.width(), source.height());
  const ConstPixels from = source.pixels();
  const Pixels to = result.writable();
  writeRows(to, [&](std::int32_t y, bool stream) {
    HWY_DYNAMIC_DISPATCH(flattenRow)(from.row(y), to.width, background, stream, to.row(y));
  });
  return result;
}

}  // namespace kestrel::engine
#endif
