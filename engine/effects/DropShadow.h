#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The standard deviation in pixels that a blur number stands for: blur / 32, so that 128 is 4 pixels, a soft
/// edge some 16 pixels wide, and 255 nearly 8. Numbers above 255 count as 255.
double shadowSigma(double blur);

/// The picture with its shadow under it.
///
/// The shadow is the picture's alpha, moved by the offsets (right and down for positive ones), blurred by a
/// Gaussian of `shadowSigma(blur)`, in the red, green and blue of `color` and with its alpha as the opacity.
/// Blur 0 is a hard shadow.
///
/// The picture grows on each side just as far as the shadow of its visible part reaches beyond it, three
/// standard deviations of blur included, and never shrinks; what is new is transparent but for the shadow.
/// How far it grew to the left and above is where the old top left pixel stands. A picture that is nowhere
/// visible casts no shadow and stays as it is. Raises RuntimeError 5 for a blur that is negative or not a
/// number, 7 for a result beyond the limits of a bitmap.
Bitmap dropShadow(const Bitmap& source, std::int32_t offsetX, std::int32_t offsetY, Pixel color, double blur,
                  bool grow = true);

}  // namespace kestrel::engine
