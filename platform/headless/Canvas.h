#pragma once

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Canvas.h"

namespace kestrel::headless {

class Canvas final : public kestrel::Canvas {
 public:
  /// Initially white. Raises RuntimeError 5 for a side below 1.
  Canvas(std::int32_t width, std::int32_t height);

  std::int32_t Width() const override { return bitmap_.width(); }
  std::int32_t Height() const override { return bitmap_.height(); }
  void FillRectangle(const Rectangle& rectangle, OLE_COLOR color) override;
  /// A snapshot of the canvas; later drawing does not change it.
  PicturePtr Picture() const override;

 private:
  engine::Bitmap bitmap_;
};

}  // namespace kestrel::headless
