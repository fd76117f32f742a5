#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>

namespace kestrel::tools {

/// Paints an SVG icon into a square of `size` pixels on a transparent background, its neutral strokes in
/// `neutral`. Raises RuntimeError for invalid SVG.
QImage paintIcon(const QByteArray& svg, int size, const QColor& neutral);

/// An icon as stored in a layout block: `size` rows from top to bottom, opaque, 32 bits per pixel, with
/// `transparent` where less than a third of the pixel is covered. The rest is blended with a light
/// background, since the format has no alpha channel.
QImage paintOpaqueIcon(const QByteArray& svg, int size, bool disabled, const QColor& transparent);

}  // namespace kestrel::tools
