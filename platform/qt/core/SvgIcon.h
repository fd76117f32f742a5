#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <string_view>

namespace kestrel::qt {

/// The program's icon of that name, a null icon if there is none. It is rendered in the colors of the theme's
/// windows, and for `QIcon::Selected` in those of a selection.
QIcon svgIcon(std::string_view name);

/// An icon of `svgIcon` for a place in which texts have the color `text` on the color `ground`. The lines
/// contrast with the ground in every theme: at least 3:1 if enabled, 1.5:1 if not, where the color of the
/// texts does. Null for another icon. `size` is in device pixels.
QPixmap svgPixmap(const QIcon& icon, const QSize& size, const QColor& text, const QColor& ground,
                  bool enabled);

/// The contrast ratio of two opaque colors by WCAG 2.1: from 1 for equal ones to 21 for black and white.
double contrastOf(const QColor& one, const QColor& other);

}  // namespace kestrel::qt
