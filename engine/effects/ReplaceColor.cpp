#include "ReplaceColor.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/RuntimeError.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/WriteRows.h"
#include "engine/effects/rows/reference/PixelRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/ReplaceColor.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/PutPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

/// Processes whole vectors: rows are padded to 64 bytes, so the padding may be written.
void replaceRow(const std::uint8_t* HWY_RESTRICT in, std::int32_t count, Pixel from, Pixel to,
                std::uint8_t tolerance, [[maybe_unused]] bool stream, std::uint8_t* HWY_RESTRICT out) {
#if HWY_TARGET == HWY_SCALAR
  reference::replaceRow(in, count, from, to, tolerance, out);
#else
  const hn::CappedTag<std::uint32_t, 16> d;
  const hn::Repartition<std::uint8_t, decltype(d)> d8;
  std::uint32_t fromValue, toValue;
  std::memcpy(&fromValue, &from, sizeof fromValue);
  std::memcpy(&toValue, &to, sizeof toValue);
  const auto wanted = hn::BitCast(d8, hn::Set(d, fromValue));
  const auto replacement = hn::Set(d, toValue);
  const auto allowed = hn::Set(d8, tolerance);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  // Pixels below this value have alpha 0; they match if `from` is transparent, too.
  const auto invisibleBelow = hn::Set(d, from.a == 0 ? 0x01000000U : 0U);
  for (std::int32_t x = 0; x < count; x += lanes) {
    const auto bytes = hn::Load(d8, in + std::ptrdiff_t{4} * x);
    const auto pixels = hn::BitCast(d, bytes);
    const auto difference = hn::Or(hn::SaturatedSub(bytes, wanted), hn::SaturatedSub(wanted, bytes));
    const auto beyond = hn::BitCast(d, hn::SaturatedSub(difference, allowed));
    const auto matches = hn::Or(hn::Eq(beyond, hn::Zero(d)), hn::Lt(pixels, invisibleBelow));
    putPixels(d, hn::IfThenElse(matches, replacement, pixels), stream, out + std::ptrdiff_t{4} * x);
  }
#endif
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(replaceRow);

Bitmap replaceColor(const Bitmap& source, Pixel from, Pixel to, double tolerance) {
  requirePicture(source);
  if (!(tolerance >= 0)) {
    throw RuntimeError(err::kInvalidCall, "The tolerance of a color must be 0 or more.");
  }
  const auto levels = static_cast<std::uint8_t>(std::min(std::floor(tolerance), 255.0));
  Bitmap result = Bitmap::uninitialized(source.width(), source.height());
  const ConstPixels in = source.pixels();
  const Pixels out = result.writable();
  writeRows(out, [&](std::int32_t y, bool stream) {
    HWY_DYNAMIC_DISPATCH(replaceRow)(in.row(y), out.width, from, to, levels, stream, out.row(y));
  });
  return result;
}

}  // namespace kestrel::engine
#endif
