#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The picture blurred by a Gaussian of standard deviation `sigma` pixels, its size unchanged.
///
/// Pixels weigh by their alpha. Beyond the picture's edge there is nothing: the weights inside it count for
/// the whole, so that edges neither darken nor turn transparent. The result is within one level of direct
/// convolution, and the time does not grow with sigma: a wide bell is applied to the picture made smaller,
/// and the result brought back, which for so smooth a function loses nothing visible (see GaussianAxis.h).
/// Sigma 0 changes nothing. Raises RuntimeError 5 for one that is negative or not finite.
Bitmap blur(const Bitmap& source, double sigma);

}  // namespace kestrel::engine
