#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Gaussian blur with standard deviation `sigma`, in pixels; the size is unchanged.
///
/// Filters premultiplied pixels. At the picture's edges the weights inside are normalized to 1, so that edges
/// neither darken nor turn transparent. The result is within one level of direct convolution. The time does
/// not grow with sigma: a wide kernel is applied to a reduced picture, which is then enlarged (see
/// GaussianAxis.h). Sigma 0 returns the picture unchanged. Raises RuntimeError 5 for a sigma that is negative
/// or not finite.
Bitmap blur(const Bitmap& source, double sigma);

}  // namespace kestrel::engine
