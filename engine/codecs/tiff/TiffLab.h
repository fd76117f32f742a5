#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine::tiff {

/// Turns L*, a* + 128 and b* + 128 in the first three bytes of each pixel into sRGB; the fourth stays. The
/// white that the colors refer to becomes that of the screen: of one like daylight (D65) the result is
/// exact.
void labToSrgb(Bitmap& bitmap);

}  // namespace kestrel::engine::tiff
