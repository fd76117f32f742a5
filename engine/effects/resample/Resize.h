#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Resampling methods; hosts pass the numbers.
///
/// All but `Pixel` filter in premultiplied alpha and, when they reduce, use every source pixel.
enum class ResampleMethod {
  Bilinear = 0,  ///< linear interpolation; widened to the new pixel's size when reducing
  Bicubic = 1,   ///< Catmull-Rom; widened likewise
  Pixel = 2,     ///< nearest neighbor: the source pixel under the new one's center
  Decimate = 3,  ///< box kernel: the average of the area that the new pixel covers
  Lanczos3 = 13  ///< windowed sinc over three lobes; widened likewise: the sharpest
};

/// The picture scaled to `width` x `height` pixels. Height 0 keeps the proportion, rounded to the nearest and
/// at least 1. Raises RuntimeError 5 for a width below 1, a height below 0 or an unknown method, 7 for a size
/// beyond the limits of a bitmap.
Bitmap resize(const Bitmap& source, std::int32_t width, std::int32_t height, ResampleMethod method);

}  // namespace kestrel::engine
