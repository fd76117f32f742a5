#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture rotated clockwise about its center by `degrees`, taken modulo 360; negative angles rotate
/// counterclockwise.
///
/// 90, 180 and 270 degrees are lossless; a full turn is the picture itself. Any other angle enlarges the
/// picture to its rotated bounding box, samples with Catmull-Rom interpolation (Keys 1981, a = -1/2) in
/// premultiplied alpha, and antialiases the edges over one pixel. `background` fills the corners outside the
/// rotated picture; it does not show through transparent parts. Raises RuntimeError 5 for an angle that is
/// not finite, 7 for a result beyond the limits of a bitmap.
Bitmap rotate(const Bitmap& source, double degrees, Pixel background = {});

}  // namespace kestrel::engine
