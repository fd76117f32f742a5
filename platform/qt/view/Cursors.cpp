#include "Cursors.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>

namespace kestrel::qt {
namespace {

// The magnifying glass, in logical pixels.
constexpr int kGlassSize = 24;
constexpr QPointF kLensCenter(9.5, 9.5);
constexpr double kLensRadius = 6.5;
constexpr QPointF kHandleStart(14.4, 14.4);
constexpr QPointF kHandleEnd(20.5, 20.5);

void drawGlass(QPainter& painter, const QColor& color, double lens, double handle) {
  painter.setPen(QPen(color, lens));
  painter.drawEllipse(kLensCenter, kLensRadius, kLensRadius);
  painter.setPen(QPen(color, handle, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(kHandleStart, kHandleEnd);
}

QCursor magnifyingGlass() {
  const double factor = qGuiApp->devicePixelRatio();
  QPixmap glass(QSize(kGlassSize, kGlassSize) * factor);
  glass.setDevicePixelRatio(factor);
  glass.fill(Qt::transparent);
  QPainter painter(&glass);
  painter.setRenderHint(QPainter::Antialiasing);
  drawGlass(painter, Qt::white, 4.0, 5.5);  // outline for dark pictures
  drawGlass(painter, QColor(32, 36, 41), 1.8, 3.2);
  painter.end();
  return QCursor(glass, static_cast<int>(kLensCenter.x()), static_cast<int>(kLensCenter.y()));
}

}  // namespace

QCursor cursorOf(engine::ViewCursor cursor) {
  using engine::ViewCursor;
  switch (cursor) {
    case ViewCursor::custom:
      return magnifyingGlass();
    case ViewCursor::hand:
      return Qt::OpenHandCursor;
    case ViewCursor::grabbing:
      return Qt::ClosedHandCursor;
    case ViewCursor::move:
      return Qt::SizeAllCursor;
    case ViewCursor::sizeHorizontal:
      return Qt::SizeHorCursor;
    case ViewCursor::sizeVertical:
      return Qt::SizeVerCursor;
    case ViewCursor::sizeFalling:
      return Qt::SizeFDiagCursor;
    case ViewCursor::sizeRising:
      return Qt::SizeBDiagCursor;
    case ViewCursor::arrow:
      break;
  }
  return Qt::ArrowCursor;
}

}  // namespace kestrel::qt
