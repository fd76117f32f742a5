#pragma once

#include <QColor>
#include <QImage>

#include "imaging/contract/Picture.h"

namespace kestrel::qt {

/// A picture object backed by an image of the toolkit.
class ImagePicture final : public Picture {
 public:
  explicit ImagePicture(const QImage& image);

  std::string TypeName() const override { return "Picture"; }
  std::int32_t Width() const override { return image_.width(); }
  std::int32_t Height() const override { return image_.height(); }
  PixelRows Pixels() const override;

 private:
  const QImage image_;  // RGBA, straight alpha
};

/// The rows as an image with a copy of the pixels.
QImage toImage(const PixelRows& rows);

/// The rows as an image without a copy; they must outlive it.
QImage borrowedImage(const PixelRows& rows);

/// Invalid for "no color".
QColor toColor(OLE_COLOR color);
OLE_COLOR fromColor(const QColor& color);

}  // namespace kestrel::qt
