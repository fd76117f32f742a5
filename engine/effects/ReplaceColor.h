#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Replaces all pixels of the color `from` by `to`, alpha included.
///
/// A pixel matches if its distance from `from` is at most `tolerance`: the largest difference among red,
/// green, blue and alpha, in levels of 0 to 255. So 0.0 matches the exact value only, 1.0 also pixels that
/// rounding has moved by one level, 255 all. The color of fully transparent pixels is ignored: they are equal
/// to each other, and differ from opaque colors by their alpha. Raises RuntimeError 5 for a tolerance that is
/// negative or not a number.
Bitmap replaceColor(const Bitmap& source, Pixel from, Pixel to, double tolerance);

}  // namespace kestrel::engine
