#pragma once

#include <QBrush>
#include <QColor>
#include <QPainter>
#include <QRect>

namespace kestrel::qt {

/// Fills the area, and draws a frame of one logical pixel along the inside of its edges. At fractional and
/// whole scale factors alike nothing of the filling is outside of the frame, as it is with a rectangle drawn
/// by a pen.
void fillFramed(QPainter& painter, const QRect& area, const QBrush& filling, const QColor& frame);

}  // namespace kestrel::qt
