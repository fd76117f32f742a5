#pragma once

#include <cstdint>

#include "DeviceContext.h"

namespace kestrel {

/// The blit side of a free-standing picture.
class Surface {
 public:
  virtual ~Surface() = default;

  /// Copies the picture, unscaled, with its top left corner at (x, y). What lies outside the target is cut.
  virtual void DrawTo(DeviceContext& target, std::int32_t x, std::int32_t y,
                      std::uint32_t rasterOperation = kSourceCopy) = 0;
};

}  // namespace kestrel
