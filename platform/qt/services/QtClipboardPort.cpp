#include "QtClipboardPort.h"

#include <QClipboard>
#include <QGuiApplication>
#include <cstring>
#include <memory>

#include "ClipboardPictures.h"
#include "base/RuntimeError.h"

namespace kestrel::qt {
namespace {

constexpr std::int32_t kClipboardUnreadable = 521;

/// The bitmap's pixels as an image, which shares and keeps them.
QImage sharedImage(const engine::Bitmap& bitmap) {
  auto kept = std::make_unique<engine::Bitmap>(bitmap);
  const engine::ConstPixels pixels = kept->pixels();
  const auto release = [](void* held) { delete static_cast<engine::Bitmap*>(held); };
  return QImage(pixels.data, pixels.width, pixels.height, static_cast<qsizetype>(pixels.stride),
                QImage::Format_RGBA8888, release, kept.release());
}

}  // namespace

void QtClipboardPort::offer(const engine::Bitmap& bitmap) {
  QGuiApplication::clipboard()->setMimeData(new PictureMimeData(sharedImage(bitmap)));
}

bool QtClipboardPort::hasBitmap() {
  const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
  return data && holdsPicture(*data);
}

engine::Bitmap QtClipboardPort::take() {
  const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
  const QImage picture = data ? pictureOf(*data).convertToFormat(QImage::Format_RGBA8888) : QImage();
  if (picture.isNull()) {
    throw RuntimeError(kClipboardUnreadable, "The clipboard holds no picture that can be read.");
  }
  engine::Bitmap bitmap = engine::Bitmap::uninitialized(picture.width(), picture.height());
  const engine::Pixels target = bitmap.writable();
  for (std::int32_t y = 0; y < target.height; ++y) {
    std::memcpy(target.row(y), picture.constScanLine(y), static_cast<std::size_t>(target.width) * 4);
  }
  return bitmap;
}

}  // namespace kestrel::qt
