#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "engine/effects/rows/Blend.h"
#include "engine/pixels/Bitmap.h"

/// Scalar reference of the vector kernels on pixels. It runs where the machine has no vectors and for the
/// rest of a row, and tests compare every vector target with it. All functions process `count` pixels of one
/// row.
namespace kestrel::engine::reference {

inline Pixel load(const std::uint8_t* row, std::int32_t x) {
  Pixel pixel;
  std::memcpy(&pixel, row + std::size_t{4} * static_cast<std::size_t>(x), sizeof pixel);
  return pixel;
}

inline void store(Pixel pixel, std::uint8_t* row, std::int32_t x) {
  std::memcpy(row + std::size_t{4} * static_cast<std::size_t>(x), &pixel, sizeof pixel);
}

inline void mirrorRow(const std::uint8_t* in, std::int32_t count, std::uint8_t* out) {
  for (std::int32_t x = 0; x < count; ++x) store(load(in, count - 1 - x), out, x);
}

/// Rec. 709 weights in 1/65536; they sum to 65536, so that gray is unchanged.
inline constexpr std::uint32_t kLumaRed = 13933, kLumaGreen = 46871, kLumaBlue = 4732;

inline void grayRow(const std::uint8_t* in, std::int32_t count, std::uint8_t* out) {
  for (std::int32_t x = 0; x < count; ++x) {
    const Pixel p = load(in, x);
    const std::uint32_t sum = (p.r * kLumaRed >> 8) + (p.g * kLumaGreen >> 8) + (p.b * kLumaBlue >> 8);
    const auto luma = static_cast<std::uint8_t>((sum + 128) >> 8);
    store({luma, luma, luma, p.a}, out, x);
  }
}

inline void flattenRow(const std::uint8_t* in, std::int32_t count, Pixel background, std::uint8_t* out) {
  for (std::int32_t x = 0; x < count; ++x) {
    const Pixel p = load(in, x);
    const auto mix = [&](std::uint32_t c, std::uint32_t ground) {
      return static_cast<std::uint8_t>((c * p.a + ground * (255U - p.a) + 127) / 255);
    };
    store({mix(p.r, background.r), mix(p.g, background.g), mix(p.b, background.b), 255}, out, x);
  }
}

/// The largest difference among the channels; the color of fully transparent pixels is ignored.
inline int distance(Pixel a, Pixel b) {
  if (a.a == 0 && b.a == 0) return 0;
  return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b), std::abs(a.a - b.a)});
}

inline void replaceRow(const std::uint8_t* in, std::int32_t count, Pixel from, Pixel to,
                       std::uint8_t tolerance, std::uint8_t* out) {
  for (std::int32_t x = 0; x < count; ++x) {
    const Pixel p = load(in, x);
    store(distance(p, from) <= tolerance ? to : p, out, x);
  }
}

inline void compositeRow(const std::uint8_t* top, const std::uint8_t* under, std::int32_t count,
                         std::uint8_t opacity, const std::optional<Pixel>& mask, std::uint8_t* out) {
  for (std::int32_t x = 0; x < count; ++x) {
    Pixel p = load(top, x);
    const bool masked = mask && p.r == mask->r && p.g == mask->g && p.b == mask->b;
    p.a = masked ? 0 : mul255(p.a, opacity);
    store(over(load(under, x), p), out, x);
  }
}

}  // namespace kestrel::engine::reference
