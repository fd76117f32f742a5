#pragma once

namespace kestrel::qt {

/// From now on assistive technology sees the widgets of image views as graphics: the accessible name of the
/// widget, and a description of the picture in it.
void useAccessiblePictures();

}  // namespace kestrel::qt
