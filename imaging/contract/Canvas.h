#pragma once

#include <cstdint>

#include "Picture.h"
#include "Types.h"

namespace kestrel {

/// An off-screen bitmap to draw on.
class Canvas {
 public:
  virtual ~Canvas() = default;
  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;
  /// Fills the part of the rectangle that lies on the canvas.
  virtual void FillRectangle(const Rectangle& rectangle, OLE_COLOR color) = 0;
  virtual PicturePtr Picture() const = 0;
};

}  // namespace kestrel
