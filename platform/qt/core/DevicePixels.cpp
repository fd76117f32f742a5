#include "DevicePixels.h"

#include <QTransform>
#include <cmath>

namespace kestrel::qt {
namespace {

QPoint rounded(const QPointF& point) {
  return {static_cast<int>(std::lround(point.x())), static_cast<int>(std::lround(point.y()))};
}

QPointF deviceOrigin(const QWidget& widget) {
  return QPointF(widget.mapTo(widget.window(), QPoint())) * widget.devicePixelRatioF();
}

/// How far the widget begins after the begin of its first device pixel.
QPointF offset(const QWidget& widget) {
  const QPointF origin = deviceOrigin(widget);
  return origin - rounded(origin);
}

}  // namespace

QSize deviceSizeOf(const QWidget& widget) {
  const QPointF origin = deviceOrigin(widget);
  const QPointF end = origin + QPointF(widget.width(), widget.height()) * widget.devicePixelRatioF();
  const QPoint extent = rounded(end) - rounded(origin);
  return {extent.x(), extent.y()};
}

QPointF toDevicePixels(const QWidget& widget, const QPointF& position) {
  return position * widget.devicePixelRatioF() + offset(widget);
}

QRect fromDevicePixels(const QWidget& widget, const QRect& area) {
  const double factor = widget.devicePixelRatioF();
  const QPointF corner = (QPointF(area.topLeft()) - offset(widget)) / factor;
  return QRectF(corner, QSizeF(area.size()) / factor).toAlignedRect();
}

void useDevicePixels(QPainter& painter) {
  const QTransform toDevice = painter.deviceTransform();
  const QPoint origin = rounded(toDevice.map(QPointF()));
  painter.setWorldTransform(QTransform::fromTranslate(origin.x(), origin.y()) * toDevice.inverted());
}

}  // namespace kestrel::qt
