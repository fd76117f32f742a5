#pragma once

#include <cstdint>

#include "Picture.h"
#include "Types.h"

namespace kestrel {

/// Values of `Graphics::DrawMode`.
inline constexpr std::int32_t kDrawInvert = 6;
inline constexpr std::int32_t kDrawCopy = 13;

/// The drawing primitives of a window. The drawing is retained until it is cleared or drawn over.
class Graphics {
 public:
  virtual ~Graphics() = default;

  virtual void Clear() = 0;
  /// How `DrawBox` combines with the existing pixels: 13 replaces them, 6 inverts them.
  virtual void DrawMode(std::int32_t value) = 0;
  /// The picture tiled from the window's corner behind the pictures that `PaintPicture` paints; null for
  /// none. The window keeps a reference.
  virtual void Ground(const PicturePtr& tile) = 0;
  /// Replaces the destination rectangle with the source rectangle of the picture, scaled by nearest neighbor.
  /// The ground shows through transparent pixels, outside the picture, and for an empty source; without a
  /// ground these parts become transparent.
  virtual void PaintPicture(const Picture& picture, const Rectangle& destination,
                            const Rectangle& source) = 0;
  /// A one-pixel outline from any corner to the opposite one, both included.
  virtual void DrawBox(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                       OLE_COLOR color) = 0;
  virtual void Refresh() = 0;
};

}  // namespace kestrel
