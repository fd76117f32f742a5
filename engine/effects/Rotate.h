#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture turned clockwise about its center by `degrees`, taken modulo 360; negative ones turn it back.
///
/// 90, 180 and 270 are exact and lose nothing; a full turn is the picture itself. Any other angle grows the
/// picture to the smallest size that holds the whole of it, takes new pixels from old ones by Catmull-Rom
/// interpolation (Keys 1981, a = -1/2) weighed by alpha, and smooths the edges over the width of one pixel.
/// `background` fills the corners that the turned picture leaves free; a transparent one leaves them
/// transparent. Transparent parts of the picture stay so.
/// Raises RuntimeError 5 for an angle that is not finite, 7 for a result beyond the limits of a bitmap.
Bitmap rotate(const Bitmap& source, double degrees, Pixel background = {});

}  // namespace kestrel::engine
