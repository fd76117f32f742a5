#pragma once

#include <QImage>

#include "imaging/contract/Canvas.h"

namespace kestrel::qt {

class QtCanvas final : public Canvas {
 public:
  /// An opaque white canvas. Raises RuntimeError 5 for a size that is not positive.
  QtCanvas(std::int32_t width, std::int32_t height);

  std::int32_t Width() const override { return image_.width(); }
  std::int32_t Height() const override { return image_.height(); }
  void FillRectangle(const Rectangle& rectangle, OLE_COLOR color) override;
  PicturePtr Picture() const override;

 private:
  QImage image_;
};

}  // namespace kestrel::qt
