#include "PictureCache.h"

#include <QBrush>
#include <QPixmap>
#include <algorithm>

#include "engine/effects/resample/Resize.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::qt {
namespace {

/// Of the 16 that a frame has.
constexpr qint64 kMillisecondsPerFrame = 7;
/// The cache holds the viewport this many times.
constexpr qint64 kViewports = 2;
constexpr qint64 kLeastKiB = 8 * 1024;

QRect rectOf(const Rectangle& area) { return {area.Left, area.Top, area.Width, area.Height}; }

/// The bitmap's pixels without a copy; it must outlive the image.
QImage borrowed(const engine::Bitmap& bitmap) {
  const engine::ConstPixels pixels = bitmap.pixels();
  return QImage(pixels.data, pixels.width, pixels.height, static_cast<qsizetype>(pixels.stride),
                QImage::Format_RGBA8888);
}

bool isOpaque(const engine::Bitmap& bitmap) {
  const engine::ConstPixels pixels = bitmap.pixels();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    const std::uint8_t* const row = pixels.row(y);
    std::uint8_t all = 255;
    for (std::int32_t x = 0; x < pixels.width; ++x) all &= row[4 * x + 3];
    if (all != 255) return false;
  }
  return true;
}

}  // namespace

void PictureCache::setCheckers(const Checkers& checkers) {
  if (checkers == checkers_) return;
  checkers_ = checkers;
  kept_.clear();
}

void PictureCache::beginFrame(const QSize& viewport) {
  const qint64 pixels = qint64{viewport.width()} * viewport.height();
  kept_.setMaxCost(std::max(kLeastKiB, kViewports * pixels * 4 / 1024));
  frame_.start();
  late_ = false;
}

QImage PictureCache::onCheckers(const QImage& picture) const {
  QPixmap squares(2 * checkers_.side, 2 * checkers_.side);
  squares.fill(checkers_.one);
  {
    QPainter painter(&squares);
    painter.fillRect(checkers_.side, 0, checkers_.side, checkers_.side, checkers_.other);
    painter.fillRect(0, checkers_.side, checkers_.side, checkers_.side, checkers_.other);
  }
  QImage all(picture.size(), QImage::Format_RGB32);
  QPainter painter(&all);
  painter.fillRect(all.rect(), QBrush(squares));
  painter.drawImage(0, 0, picture);
  return all;
}

QImage PictureCache::made(const thumbnails::PaintedPicture& picture) const {
  const Rectangle& target = picture.target;
  engine::Bitmap bitmap = picture.bitmap;
  if (bitmap.width() != target.Width || bitmap.height() != target.Height) {
    bitmap = engine::resize(bitmap, target.Width, target.Height, engine::ResampleMethod::Lanczos3);
  }
  const QImage pixels = borrowed(bitmap);
  return isOpaque(bitmap) ? pixels.convertToFormat(QImage::Format_RGB32) : onCheckers(pixels);
}

void PictureCache::paint(QPainter& painter, const thumbnails::PaintedPicture& picture) {
  const QRect target = rectOf(picture.target);
  if (target.isEmpty()) return;
  const Key key{picture.version, target.size()};
  if (const QImage* const kept = kept_.object(key)) return painter.drawImage(target.topLeft(), *kept);

  if (frame_.elapsed() >= kMillisecondsPerFrame) {
    late_ = true;
    return painter.drawImage(target, borrowed(picture.bitmap));
  }
  QImage image = made(picture);
  painter.drawImage(target.topLeft(), image);
  const auto cost = static_cast<qsizetype>(image.sizeInBytes() / 1024 + 1);
  kept_.insert(key, new QImage(std::move(image)), cost);
}

}  // namespace kestrel::qt
