#include "StoredIcon.h"

#include <QImage>
#include <QPixmap>

#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {
namespace {

QPixmap pixmapOf(const docking::StoredPicture& picture, OLE_COLOR transparent) {
  QImage image(picture.rgb.data(), picture.width, picture.height, qsizetype{picture.width} * 3,
               QImage::Format_RGB888);
  image = image.convertToFormat(QImage::Format_ARGB32);
  const QRgb hole = toColor(transparent).rgb();
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) == hole) image.setPixel(x, y, qRgba(0, 0, 0, 0));
    }
  }
  return QPixmap::fromImage(image);
}

}  // namespace

QIcon storedIcon(const docking::StoredImage& image) {
  if (image.normal.rgb.empty()) return {};
  QIcon icon(pixmapOf(image.normal, image.transparent));
  if (!image.disabled.rgb.empty())
    icon.addPixmap(pixmapOf(image.disabled, image.transparent), QIcon::Disabled);
  return icon;
}

}  // namespace kestrel::qt
