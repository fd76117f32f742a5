#pragma once

#include "FormWindow.h"
#include "imaging/contract/Graphics.h"

namespace kestrel::qt {

/// Draws on the surface of a form's window, in logical pixels at device resolution.
class FaceGraphics final : public Graphics {
 public:
  explicit FaceGraphics(FormWindow& window) : window_(window) {}

  void Clear() override;
  void DrawMode(std::int32_t value) override;
  void Ground(const PicturePtr& tile) override { ground_ = tile; }
  void PaintPicture(const Picture& picture, const Rectangle& destination, const Rectangle& source) override;
  void DrawBox(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
               OLE_COLOR color) override;
  void Refresh() override { window_.update(); }

 private:
  FormWindow& window_;
  PicturePtr ground_;
  std::int32_t drawMode_ = kDrawCopy;
};

}  // namespace kestrel::qt
