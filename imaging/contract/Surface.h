#pragma once

#include <cstdint>

#include "DeviceContext.h"

namespace kestrel {

/// Blits a free-standing picture.
class Surface {
 public:
  virtual ~Surface() = default;

  /// Copies the picture, unscaled, with its top left corner at (x, y), clipped to the target.
  virtual void DrawTo(DeviceContext& target, std::int32_t x, std::int32_t y,
                      std::uint32_t rasterOperation = kSourceCopy) = 0;
};

}  // namespace kestrel
