#pragma once

#include <cstdint>
#include <optional>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Options of compositing.
struct CompositeOptions {
  /// Factor for the alpha of the top picture, 0 to 1 in steps of 1/255; values outside are clamped.
  double opacity = 1.0;
  /// Pixels with this red, green and blue are skipped; alpha is ignored.
  std::optional<Pixel> maskColor;
};

/// `top` composited over `under` with its top left pixel at (x, y): "over" with straight alpha, see Blend.h.
/// The result has the size of `under`; `top` is clipped to it. Raises RuntimeError 5 for an opacity that is
/// not a number.
Bitmap composite(const Bitmap& under, const Bitmap& top, std::int32_t x, std::int32_t y,
                 const CompositeOptions& options = {});

/// The same in place; `under` and `top` must not overlap in memory. Errors are raised before the first pixel
/// is written.
void compositeOnto(const Pixels& under, const ConstPixels& top, std::int32_t x, std::int32_t y,
                   const CompositeOptions& options = {});

/// Composites one row over another in place; `opacity` is 0 to 255. The rows need no padding.
void compositeRow(const std::uint8_t* top, std::uint8_t* under, std::int32_t count,
                  std::uint8_t opacity = 255, std::optional<Pixel> maskColor = {});

}  // namespace kestrel::engine
