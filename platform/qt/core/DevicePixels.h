#pragma once

#include <QPainter>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <QWidget>

/// Device pixels of a widget, counted from its first whole one. At a fractional scale the widget may begin
/// inside a device pixel of its window.
namespace kestrel::qt {

/// The size of the widget. The window system rounds both edges, so the size depends on the position.
QSize deviceSizeOf(const QWidget& widget);

QPointF toDevicePixels(const QWidget& widget, const QPointF& position);

/// The smallest rectangle of the widget that contains the area.
QRect fromDevicePixels(const QWidget& widget, const QRect& area);

/// From now on the painter, which must be a new one of the widget, draws in device pixels.
void useDevicePixels(QPainter& painter);

}  // namespace kestrel::qt
