#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture with all pixels of the color `from` become `to`, its alpha included.
///
/// The distance of two colors is the largest difference among red, green, blue and alpha, in levels of 0 to
/// 255; a pixel is of the color if its distance is at most `tolerance`. So 0.0 takes the exact value only,
/// 1.0 also what rounding has moved by one level, 255 everything. What color stands under alpha 0 is never
/// seen and never counts: fully transparent pixels are equal to each other, and far from every opaque color.
/// Raises RuntimeError 5 for a tolerance that is negative or not a number.
Bitmap replaceColor(const Bitmap& source, Pixel from, Pixel to, double tolerance);

}  // namespace kestrel::engine
