#include "FramedFill.h"

namespace kestrel::qt {

void fillFramed(QPainter& painter, const QRect& area, const QBrush& filling, const QColor& frame) {
  // The frame first: the rounding of the inner edges then only makes it a device pixel thinner or thicker.
  painter.fillRect(area, frame);
  painter.fillRect(area.adjusted(1, 1, -1, -1), filling);
}

}  // namespace kestrel::qt
