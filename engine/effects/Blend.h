#pragma once

#include <cmath>
#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// a * b / 255 rounded to the nearest, for a and b of 0 to 255.
constexpr std::uint8_t mul255(std::uint32_t a, std::uint32_t b) {
  const std::uint32_t t = a * b + 128;
  return static_cast<std::uint8_t>((t + (t >> 8)) >> 8);
}

/// `top` laid over `under`, both with straight alpha (Porter and Duff's "over"). Where both are fully
/// transparent, `under` stays as it is. Each channel is the exact quotient rounded to the nearest, halves to
/// the even number: products and sums stay below 2^24, so the float arithmetic is the same on every machine.
inline Pixel over(Pixel under, Pixel top) {
  const std::uint32_t topWeight = 255U * top.a;
  const std::uint32_t underWeight = static_cast<std::uint32_t>(under.a) * (255U - top.a);
  const std::uint32_t total = topWeight + underWeight;
  if (top.a == 0 || total == 0) return under;
  const auto mix = [=](std::uint32_t t, std::uint32_t u) {
    const std::uint32_t sum = t * topWeight + u * underWeight;
    return static_cast<std::uint8_t>(std::lrint(static_cast<float>(sum) / static_cast<float>(total)));
  };
  return {mix(top.r, under.r), mix(top.g, under.g), mix(top.b, under.b),
          static_cast<std::uint8_t>(top.a + mul255(under.a, 255U - top.a))};
}

}  // namespace kestrel::engine
