#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Decoded.h"

namespace kestrel::engine {

/// What the stored pixels were before they stood in the bitmap.
enum class PixelKind {
  rgb,
  gray,  ///< r, g and b hold the same value
  lab,   ///< r, g and b hold CIE L, a and b as ICC encodes them in 8 bits; becomes RGB
  cmyk   ///< r, g, b and a hold cyan, magenta, yellow and black, 0 for no ink; becomes opaque RGB
};

/// Brings the bitmap's pixels from the profile in `decoded.metadata` to sRGB, in place, and puts in the
/// profile that describes them then (see `Metadata::iccProfile`). A profile that is damaged or made for
/// another kind of pixel is dropped. Without one, rgb and gray stay as they are and cmyk is converted by
/// plain arithmetic.
void convertToSrgb(Decoded& decoded, PixelKind kind);

/// The primaries and the transfer exponent that a file names in place of a profile.
struct Colorimetry {
  double gamma = 2.2;  ///< the exponent that turns stored values to light
  double whiteX = 0.3127, whiteY = 0.3290;
  double redX = 0.64, redY = 0.33;
  double greenX = 0.30, greenY = 0.60;
  double blueX = 0.15, blueY = 0.06;
};

/// As `convertToSrgb` for rgb pixels (gray ones included) that are described by numbers.
void convertToSrgb(Decoded& decoded, const Colorimetry& colorimetry);

/// An ICC profile of sRGB.
std::span<const std::uint8_t> srgbProfile();

}  // namespace kestrel::engine
