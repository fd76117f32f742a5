#pragma once

#include <QIcon>

namespace kestrel::qt {

/// The program's icon at the sizes that desktops request.
QIcon applicationIcon();

}  // namespace kestrel::qt
