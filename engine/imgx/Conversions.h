#pragma once

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Colour.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// `Colour` "none" becomes transparent black.
inline Pixel pixelOf(const Colour& color) {
  return {color.Red(), color.Green(), color.Blue(), color.Alpha()};
}

inline PixelRows rowsOf(const Bitmap& bitmap) {
  const ConstPixels pixels = bitmap.pixels();
  return {pixels.data, pixels.stride, pixels.width, pixels.height};
}

}  // namespace kestrel::engine
