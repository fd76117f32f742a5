#pragma once

#include <cstdint>
#include <optional>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// How a picture is laid over another.
struct CompositeOptions {
  /// 0 to 1 multiplies the alpha of what is laid over, in steps of 1/255; values outside count as the
  /// nearest.
  double opacity = 1.0;
  /// Pixels with this red, green and blue are left out; the alpha plays no part.
  std::optional<Pixel> maskColor;
};

/// `top` laid over `under` with its top left pixel at (x, y), honoring the alpha of both ("over" with
/// straight alpha, see Blend.h). What reaches beyond `under` is clipped. Raises RuntimeError 5 for an opacity
/// that is not a number.
Bitmap composite(const Bitmap& under, const Bitmap& top, std::int32_t x, std::int32_t y,
                 const CompositeOptions& options = {});

/// The same in place, on pixels that are not those of `top`. Fails before the first pixel or not at all.
void compositeOnto(const Pixels& under, const ConstPixels& top, std::int32_t x, std::int32_t y,
                   const CompositeOptions& options = {});

/// The pixels of one row laid over others in place; `opacity` of 0 to 255. The rows may end anywhere.
void compositeRow(const std::uint8_t* top, std::uint8_t* under, std::int32_t count,
                  std::uint8_t opacity = 255, std::optional<Pixel> maskColor = {});

}  // namespace kestrel::engine
