#pragma once

#include <cstdint>

#include "Types.h"

namespace kestrel {

/// The raster operation that replaces the destination.
inline constexpr std::uint32_t kSourceCopy = 0x00CC0020;

/// A destination for pixels: a view's back buffer during painting.
class DeviceContext {
 public:
  virtual ~DeviceContext() = default;

  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;

  /// Copies the rows with their top left corner at (x, y), clipped to the context. Raises RuntimeError 5 for
  /// a raster operation other than `kSourceCopy`.
  virtual void Blit(std::int32_t x, std::int32_t y, const PixelRows& source,
                    std::uint32_t rasterOperation = kSourceCopy) = 0;
};

}  // namespace kestrel
