#include "IconPainter.h"

#include <QPainter>
#include <QSvgRenderer>

#include "Resources/Icons.h"
#include "base/RuntimeError.h"

namespace kestrel::tools {

namespace {

constexpr QRgb kGround = qRgb(0xf4, 0xf4, 0xf4);
constexpr int kLeastCover = 85;

int mix(int over, int under, int cover) { return (over * cover + under * (255 - cover) + 127) / 255; }

QRgb overGround(QRgb pixel, bool disabled) {
  const int cover = disabled ? qAlpha(pixel) / 2 : qAlpha(pixel);
  const int grey = qGray(pixel);
  const auto channel = [&](int value, int ground) { return mix(disabled ? grey : value, ground, cover); };
  return qRgb(channel(qRed(pixel), qRed(kGround)), channel(qGreen(pixel), qGreen(kGround)),
              channel(qBlue(pixel), qBlue(kGround)));
}

QByteArray bytesOf(std::string_view text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

}  // namespace

QImage paintIcon(const QByteArray& svg, int size, const QColor& neutral) {
  QByteArray coloured = svg;
  coloured.replace(bytesOf(resources::kIconNeutral), neutral.name().toUtf8());
  QSvgRenderer renderer(coloured);
  if (!renderer.isValid()) throw RuntimeError(err::kInvalidPicture, "The icon is not an SVG picture.");
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  return image;
}

QImage paintOpaqueIcon(const QByteArray& svg, int size, bool disabled, const QColor& transparent) {
  const QColor neutral = QColor::fromString(QString::fromUtf8(bytesOf(resources::kIconNeutral)));
  const QImage drawn = paintIcon(svg, size, neutral).convertToFormat(QImage::Format_ARGB32);
  QImage image(size, size, QImage::Format_RGB32);
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const QRgb pixel = drawn.pixel(x, y);
      image.setPixel(x, y, qAlpha(pixel) < kLeastCover ? transparent.rgb() : overGround(pixel, disabled));
    }
  }
  return image;
}

}  // namespace kestrel::tools
