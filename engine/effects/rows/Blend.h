#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// a * b / 255 rounded to the nearest, for a and b of 0 to 255.
constexpr std::uint8_t mul255(std::uint32_t a, std::uint32_t b) {
  const std::uint32_t t = a * b + 128;
  return static_cast<std::uint8_t>((t + (t >> 8)) >> 8);
}

/// `top` over `under`, both with straight alpha (Porter and Duff's "over").
///
/// A channel is u + (t - u) * share, rounded to the nearest; `share` is the top's fraction of the resulting
/// color, in Q15. So each is within 0.51 levels of the exact value, equal colors are unchanged, an opaque top
/// replaces, and a fully transparent one has no effect. The only division is of two numbers that a float
/// holds exactly, so the result is the same on every machine.
inline Pixel over(Pixel under, Pixel top) {
  const std::uint32_t topWeight = 255U * top.a;
  const std::uint32_t underWeight = static_cast<std::uint32_t>(under.a) * (255U - top.a);
  const std::uint32_t total = std::max(topWeight + underWeight, 1U);
  const long share =
      std::min(std::lrint(static_cast<float>(topWeight << 15) / static_cast<float>(total)), 32767L);
  const auto mix = [=](int t, int u) {
    return static_cast<std::uint8_t>(u + (((t - u) * share + 0x4000) >> 15));
  };
  return {mix(top.r, under.r), mix(top.g, under.g), mix(top.b, under.b),
          static_cast<std::uint8_t>(top.a + mul255(under.a, 255U - top.a))};
}

}  // namespace kestrel::engine
