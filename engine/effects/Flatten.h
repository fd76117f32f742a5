#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture composited over an opaque color: c' = (c * a + background * (255 - a)) / 255, rounded to the
/// nearest. The alpha of `background` is ignored.
Bitmap flatten(const Bitmap& source, Pixel background);

}  // namespace kestrel::engine
