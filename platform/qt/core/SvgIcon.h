#pragma once

#include <QIcon>
#include <string_view>

namespace kestrel::qt {

/// The SVG icon of that name, rendered at any size in the current theme's colors; null if there is none.
QIcon svgIcon(std::string_view name);

}  // namespace kestrel::qt
