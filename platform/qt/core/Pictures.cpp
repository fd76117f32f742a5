#include "Pictures.h"

namespace kestrel::qt {

ImagePicture::ImagePicture(const QImage& image) : image_(image.convertToFormat(QImage::Format_RGBA8888)) {}

PixelRows ImagePicture::Pixels() const {
  return {image_.constBits(), static_cast<std::size_t>(image_.bytesPerLine()), image_.width(),
          image_.height()};
}

QImage toImage(const PixelRows& rows) { return borrowedImage(rows).copy(); }

QImage borrowedImage(const PixelRows& rows) {
  return QImage(rows.Data, rows.Width, rows.Height, static_cast<qsizetype>(rows.Stride),
                QImage::Format_RGBA8888);
}

QColor toColor(OLE_COLOR color) {
  if (color == kNoColor) return {};
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

OLE_COLOR fromColor(const QColor& color) { return color.red() | color.green() << 8 | color.blue() << 16; }

}  // namespace kestrel::qt
