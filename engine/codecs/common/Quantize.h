#pragma once

#include <cstdint>
#include <vector>

#include "Decoded.h"

namespace kestrel::engine {

/// A picture of palette indices.
struct Indexed {
  std::vector<Pixel> palette;          ///< opaque colors, then the transparent entry if there is one
  std::int32_t transparentIndex = -1;  ///< index of transparent pixels, -1 if there are none
  std::vector<std::uint8_t> indices;   ///< row by row without padding
};

/// Quantizes a picture to a palette of at most 256 entries. A picture with no more colors keeps them exactly;
/// others are dithered. Pixels with alpha below 128 become transparent, others are composited over white.
///
/// The palette comes from repeated splitting of the box of greatest variance (after X. Wu, 1991) in a
/// histogram of 6 bits per channel, refined by k-means. Dithering is error diffusion (Floyd and Steinberg,
/// 1976) in serpentine order.
Indexed quantize(const Bitmap& bitmap);

/// Composites the picture over white and dithers its luma to black (index 0) and white (index 1).
std::vector<std::uint8_t> ditherToBlackAndWhite(const Bitmap& bitmap);

}  // namespace kestrel::engine
