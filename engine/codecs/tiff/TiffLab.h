#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine::tiff {

/// Converts L*, a* + 128 and b* + 128 in the first three bytes of each pixel to sRGB; the fourth is
/// unchanged. The Lab white point is mapped to sRGB white, without chromatic adaptation: the result is exact
/// for D65.
void labToSrgb(Bitmap& bitmap);

}  // namespace kestrel::engine::tiff
