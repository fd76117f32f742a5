#pragma once

namespace kestrel::engine {

/// The keys that a view answers to.
enum class ViewKey { left, right, up, down, pageUp, pageDown, home, end, escape };

/// What a view wants to be woken for.
enum class ViewTimer {
  march,      ///< about every 120 ms: the marching rectangle moves on
  autoScroll  ///< about every 30 ms: a drag beyond the edge scrolls
};

/// The pointer that a view wants to be shown over it.
enum class ViewCursor {
  arrow,
  custom,  ///< the stored one, `MousePointer` 99
  hand,
  grabbing,
  move,
  sizeHorizontal,
  sizeVertical,
  sizeFalling,  ///< from top left to bottom right
  sizeRising    ///< from bottom left to top right
};

}  // namespace kestrel::engine
