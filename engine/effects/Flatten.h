#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture laid on a color and left opaque: c' = (c * a + background * (255 - a)) / 255, rounded to the
/// nearest; the alpha of `background` plays no part.
Bitmap flatten(const Bitmap& source, Pixel background);

}  // namespace kestrel::engine
