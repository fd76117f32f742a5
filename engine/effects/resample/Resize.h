#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// How new pixels are made of old ones; the numbers are those that callers pass.
///
/// All but `Pixel` weigh by alpha, so that transparent pixels add no color, and take every old pixel into
/// account when they shrink.
enum class ResampleMethod {
  Bilinear = 0,  ///< linear interpolation; widened to the new pixel's size when shrinking
  Bicubic = 1,   ///< Catmull-Rom; widened likewise
  Pixel = 2,     ///< the old pixel under the new one's center
  Decimate = 3,  ///< the average of the area that the new pixel covers
  Lanczos3 = 13  ///< sinc over three lobes; widened likewise: the sharpest
};

/// The picture scaled to `width` x `height` pixels. Height 0 keeps the proportion, rounded to the nearest and
/// at least 1. Raises RuntimeError 5 for a width below 1, a height below 0 or an unknown method, 7 for a size
/// beyond the limits of a bitmap.
Bitmap resize(const Bitmap& source, std::int32_t width, std::int32_t height, ResampleMethod method);

}  // namespace kestrel::engine
