#pragma once

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Colour.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// No colour is transparent black.
inline Pixel pixelOf(const Colour& colour) {
  return {colour.Red(), colour.Green(), colour.Blue(), colour.Alpha()};
}

inline PixelRows rowsOf(const Bitmap& bitmap) {
  const ConstPixels pixels = bitmap.pixels();
  return {pixels.data, pixels.stride, pixels.width, pixels.height};
}

}  // namespace kestrel::engine
