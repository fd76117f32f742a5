#pragma once

#include <cstdint>

namespace kestrel::qt {

class ThumbnailArea;

/// From now on assistive technology sees the widgets of thumbnail views as lists of their items.
void useAccessibleThumbnails();

// Notifications to assistive technology; they do nothing where there is none.
void reportItems(ThumbnailArea& area);
void reportSelection(ThumbnailArea& area);
void reportFocus(ThumbnailArea& area, std::int32_t item);

}  // namespace kestrel::qt
