#include "ClipboardPictures.h"

#include <QBuffer>
#include <QPainter>
#include <utility>

namespace kestrel::qt {
namespace {

const QString kPng = QStringLiteral("image/png");
const QString kBitmap = QStringLiteral("image/bmp");
// The format that the toolkit requests for an image.
const QString kToolkitImage = QStringLiteral("application/x-qt-image");

QByteArray encoded(const QImage& picture, const char* format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  picture.save(&buffer, format);
  return bytes;
}

}  // namespace

bool holdsPicture(const QMimeData& data) {
  if (data.hasUrls()) return false;
  return data.hasFormat(kPng) || data.hasFormat(kBitmap) || data.hasImage();
}

QImage pictureOf(const QMimeData& data) {
  if (!holdsPicture(data)) return {};
  QImage picture;
  if (data.hasFormat(kPng)) picture.loadFromData(data.data(kPng), "PNG");
  if (picture.isNull()) picture = qvariant_cast<QImage>(data.imageData());
  if (picture.isNull()) picture.loadFromData(data.data(kBitmap), "BMP");
  return picture;
}

PictureMimeData::PictureMimeData(QImage picture) : picture_(std::move(picture)) {}

QStringList PictureMimeData::formats() const { return {kPng, kBitmap, kToolkitImage}; }

bool PictureMimeData::hasFormat(const QString& format) const { return formats().contains(format); }

QVariant PictureMimeData::retrieveData(const QString& format, QMetaType /*type*/) const {
  if (format == kPng) return encoded(picture_, "PNG");
  if (format == kBitmap) {
    // Readers ignore transparency in a bitmap: flatten it on white.
    QImage opaque(picture_.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(0, 0, picture_);
    return encoded(opaque, "BMP");
  }
  return format == kToolkitImage ? QVariant(picture_) : QVariant();
}

}  // namespace kestrel::qt
