#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>

namespace kestrel::tools {

/// Paints a drawn icon into a square of `size` pixels on a transparent ground, its neutral strokes in
/// `neutral`. Raises RuntimeError if the text is no SVG picture.
QImage paintIcon(const QByteArray& svg, int size, const QColor& neutral);

/// An icon as it is kept in a layout block: `size` rows from top to bottom, opaque, 32 bits a pixel, with
/// `transparent` wherever less than a third of the pixel is covered. The rest is mixed with a light ground,
/// as a picture without an alpha channel can have one ground only.
QImage paintOpaqueIcon(const QByteArray& svg, int size, bool disabled, const QColor& transparent);

}  // namespace kestrel::tools
