#pragma once

#include <vector>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Graphics.h"

namespace kestrel::headless {

/// The surface of a window as pixels that a test can read.
class Graphics final : public kestrel::Graphics {
 public:
  /// Resizes to the window's size and clears.
  void resize(std::int32_t width, std::int32_t height);
  /// The pixels, transparent where nothing is drawn; empty for a window without an area.
  const engine::Bitmap& face() const { return face_; }

  void Clear() override;
  /// Raises RuntimeError 380 for a mode other than 6 and 13.
  void DrawMode(std::int32_t value) override;
  void Ground(const PicturePtr& tile) override { ground_ = tile; }
  void PaintPicture(const Picture& picture, const Rectangle& destination, const Rectangle& source) override;
  void DrawBox(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
               OLE_COLOR color) override;
  void Refresh() override {}

 private:
  /// The ground's pixel at that position; transparent without a ground.
  engine::Pixel groundAt(std::int32_t x, std::int32_t y) const;
  void plot(const engine::Pixels& pixels, std::int32_t x, std::int32_t y, OLE_COLOR color) const;

  engine::Bitmap face_;
  PicturePtr ground_;
  std::int32_t mode_ = kDrawCopy;
};

}  // namespace kestrel::headless
