#pragma once

#include <cstdint>

namespace kestrel {

/// The screen as a whole.
class Screen {
 public:
  virtual ~Screen() = default;
  virtual std::int32_t MousePointer() const = 0;
  virtual void MousePointer(std::int32_t value) = 0;
  /// Container units per pixel. Containers of this system measure in pixels, so both are 1 unless a platform
  /// has a unit of its own.
  virtual std::int32_t TwipsPerPixelX() const = 0;
  virtual std::int32_t TwipsPerPixelY() const = 0;
};

}  // namespace kestrel
