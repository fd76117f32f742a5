#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Standard deviation in pixels for a blur number: blur / 32, so 128 is 4 pixels (an edge some 16 pixels
/// wide) and 255 nearly 8. Numbers above 255 count as 255.
double shadowSigma(double blur);

/// The picture with its shadow under it.
///
/// The shadow is the picture's alpha, moved by the offsets (positive: right and down), blurred by a Gaussian
/// kernel of `shadowSigma(blur)`, tinted with red, green and blue of `color`; the color's alpha is the
/// opacity. Blur 0 is a hard shadow.
///
/// With `grow` the picture is enlarged on each side as far as the shadow of its visible part extends beyond
/// it, three standard deviations of blur included; it never shrinks. The growth on the left and above is the
/// position of the source's top left pixel in the result. A wholly transparent picture casts no shadow and is
/// returned unchanged. Raises RuntimeError 5 for a blur that is negative or not a number, 7 for a result
/// beyond the limits of a bitmap.
Bitmap dropShadow(const Bitmap& source, std::int32_t offsetX, std::int32_t offsetY, Pixel color, double blur,
                  bool grow = true);

}  // namespace kestrel::engine
