#pragma once

#include <cstdint>

#include "Types.h"

namespace kestrel {

/// The edit style that takes digits only from the keyboard.
inline constexpr std::int32_t kStyleDigitsOnly = 8192;

/// Questions to the desktop about windows, and what it is asked to do with them. One per process.
class WindowFunctions {
 public:
  virtual ~WindowFunctions() = default;

  virtual void AddWindowStyle(WindowHandle window, std::int32_t style) = 0;
  /// Whether the window and all it stands in are shown.
  virtual bool IsWindowVisible(WindowHandle window) = 0;
  /// The pointer's position on the screen.
  virtual Point GetCursorPos() = 0;
  /// A screen position in the window's own pixels: those that its events and positions are told in, so device
  /// pixels for an image view.
  virtual Point ScreenToClient(WindowHandle window, const Point& screen) = 0;
  /// Suspends painting of one window until it is called with 0.
  virtual void LockWindowUpdate(WindowHandle window) = 0;
  /// The rectangle of each screen that windows may cover, the first screen first; pixels of the desktop.
  virtual std::int32_t ScreenCount() = 0;
  virtual Rectangle ScreenArea(std::int32_t index) = 0;
  /// The frame, title bar included, that the desktop puts around a top-level window; none while it is not
  /// known, as before the window is shown.
  virtual Margins FrameOf(WindowHandle window) = 0;
};

}  // namespace kestrel
