#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture in gray: each pixel's red, green and blue become its luma; alpha is unchanged.
///
/// Luma is that of ITU-R BT.709, 0.2126 R + 0.7152 G + 0.0722 B, on the stored (gamma-encoded) values. It is
/// summed in units of 1/256 level, so the result is within 0.51 levels of the exact value, and gray pixels
/// are unchanged.
Bitmap grayScale(const Bitmap& source);

}  // namespace kestrel::engine
