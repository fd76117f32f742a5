#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Decoded.h"

namespace kestrel::engine {

/// Color model of the stored pixels.
enum class PixelKind {
  rgb,
  gray,  ///< r, g and b hold the same value
  lab,   ///< r, g and b hold CIE L, a and b as ICC encodes them in 8 bits; becomes RGB
  cmyk   ///< r, g, b and a hold cyan, magenta, yellow and black, 0 for none; becomes opaque RGB
};

/// Converts the bitmap in place from the profile in `decoded.metadata` to sRGB, and replaces the profile
/// accordingly (see `Metadata::iccProfile`). An invalid profile, or one for another color model, is dropped.
/// Without a profile, rgb and gray are unchanged, and cmyk is converted arithmetically.
void convertToSrgb(Decoded& decoded, PixelKind kind);

/// Primaries, white point and gamma that a file states instead of a profile.
struct Colorimetry {
  double gamma = 2.2;  ///< exponent from stored values to linear light
  double whiteX = 0.3127, whiteY = 0.3290;
  double redX = 0.64, redY = 0.33;
  double greenX = 0.30, greenY = 0.60;
  double blueX = 0.15, blueY = 0.06;
};

/// As above, for rgb and gray pixels described by a colorimetry.
void convertToSrgb(Decoded& decoded, const Colorimetry& colorimetry);

/// An ICC profile of sRGB.
std::span<const std::uint8_t> srgbProfile();

}  // namespace kestrel::engine
