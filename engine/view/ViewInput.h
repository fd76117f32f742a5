#pragma once

namespace kestrel::engine {

/// Keys that a view handles.
enum class ViewKey { left, right, up, down, pageUp, pageDown, home, end, escape };

/// Timers of a view.
enum class ViewTimer {
  march,      ///< about every 120 ms: animates the marching ants
  autoScroll  ///< about every 30 ms: scrolls during a drag beyond the edge
};

/// Pointer shapes of a view.
enum class ViewCursor {
  arrow,
  custom,  ///< the stored picture, `MousePointer` 99
  hand,
  grabbing,
  move,
  sizeHorizontal,
  sizeVertical,
  sizeFalling,  ///< from top left to bottom right
  sizeRising    ///< from bottom left to top right
};

}  // namespace kestrel::engine
