#include "ImageConversion.h"

#include <QColorSpace>
#include <cstring>
#include <memory>
#include <utility>

#include "base/RuntimeError.h"
#include "engine/codecs/common/Metadata.h"

namespace kestrel::qt {
namespace {

constexpr double kInchesPerMeter = 1000 / 25.4;

/// Ends the image's share of the pixels.
void release(void* bitmap) { delete static_cast<engine::Bitmap*>(bitmap); }

}  // namespace

QImage imageOf(const engine::PictureState& picture) {
  if (picture.bitmap.empty()) return {};
  auto kept = std::make_unique<engine::Bitmap>(picture.bitmap);
  const engine::ConstPixels pixels = kept->pixels();
  // Of constant data, so that the image copies the pixels before it changes them.
  QImage image(pixels.data, pixels.width, pixels.height, static_cast<qsizetype>(pixels.stride),
               QImage::Format_RGBA8888, &release, kept.get());
  if (image.isNull()) throw RuntimeError(err::kOutOfMemory, "There is not enough memory.");
  kept.release();
  image.setColorSpace(QColorSpace(QColorSpace::SRgb));
  if (picture.metadata && picture.metadata->resolutionX > 0 && picture.metadata->resolutionY > 0) {
    image.setDotsPerMeterX(qRound(picture.metadata->resolutionX * kInchesPerMeter));
    image.setDotsPerMeterY(qRound(picture.metadata->resolutionY * kInchesPerMeter));
  }
  return image;
}

engine::PictureState pictureOf(const QImage& image) {
  if (image.isNull()) throw RuntimeError(err::kInvalidCall, "The image is null.");
  engine::Bitmap bitmap = engine::Bitmap::uninitialized(image.width(), image.height());
  QImage source = image;
  const QColorSpace sRgb(QColorSpace::SRgb);
  if (source.colorSpace().isValid() && source.colorSpace() != sRgb) source.convertToColorSpace(sRgb);
  source.convertTo(QImage::Format_RGBA8888);
  if (source.isNull()) throw RuntimeError(err::kOutOfMemory, "There is not enough memory.");
  const engine::Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::memcpy(pixels.row(y), source.constScanLine(y), 4 * static_cast<std::size_t>(pixels.width));
  }

  auto metadata = std::make_shared<engine::Metadata>();
  metadata->resolutionX = image.dotsPerMeterX() / kInchesPerMeter;
  metadata->resolutionY = image.dotsPerMeterY() / kInchesPerMeter;
  engine::PictureState picture{std::move(bitmap)};
  picture.metadata = std::move(metadata);
  return picture;
}

}  // namespace kestrel::qt
