#pragma once

#include <cstdint>
#include <vector>

#include "Decoded.h"

namespace kestrel::engine {

/// A picture of palette indices.
struct Indexed {
  std::vector<Pixel> palette;          ///< opaque colors, then the transparent entry if there is one
  std::int32_t transparentIndex = -1;  ///< the index of see-through pixels, -1 if there are none
  std::vector<std::uint8_t> indices;   ///< row by row without gaps
};

/// Finds the palette of at most 256 colors that suits the picture, and the index of each pixel. A picture
/// with no more colors than that keeps them exactly; others are dithered. Pixels of less than half the full
/// alpha become transparent, others are flattened on white.
///
/// The palette comes from splitting the box of greatest variance (after X. Wu, 1991) over a histogram of 6
/// bits per color, refined by k-means; the dithering is error diffusion (Floyd and Steinberg, 1976) along a
/// snaking path.
Indexed quantize(const Bitmap& bitmap);

/// Dithers the picture, flattened on white, to black (index 0) and white (index 1) by its lightness.
std::vector<std::uint8_t> ditherToBlackAndWhite(const Bitmap& bitmap);

}  // namespace kestrel::engine
