#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture in gray: each pixel's red, green and blue become its luma, its alpha stays.
///
/// Luma is that of ITU-R BT.709, 0.2126 R + 0.7152 G + 0.0722 B, on the stored (gamma-encoded) values. It is
/// summed in 1/256 levels, so the result is within 0.51 levels of the exact value, and gray stays itself.
Bitmap grayScale(const Bitmap& source);

}  // namespace kestrel::engine
