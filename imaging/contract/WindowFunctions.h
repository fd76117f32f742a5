#pragma once

#include <cstdint>

#include "Types.h"

namespace kestrel {

/// The edit style that accepts only digits from the keyboard.
inline constexpr std::int32_t kStyleDigitsOnly = 8192;

/// Queries and requests to the desktop about windows. One per process.
class WindowFunctions {
 public:
  virtual ~WindowFunctions() = default;

  virtual void AddWindowStyle(WindowHandle window, std::int32_t style) = 0;
  /// Whether the window and all its containers are shown.
  virtual bool IsWindowVisible(WindowHandle window) = 0;
  /// The pointer's position on the screen.
  virtual Point GetCursorPos() = 0;
  /// A screen position in the window's own pixels, the unit of its events and positions: device pixels for an
  /// image view.
  virtual Point ScreenToClient(WindowHandle window, const Point& screen) = 0;
  /// Suspends painting of one window until a call with 0.
  virtual void LockWindowUpdate(WindowHandle window) = 0;
  /// The number of screens, and the rectangle of each that windows may cover, in desktop pixels. Screen 0 is
  /// the first.
  virtual std::int32_t ScreenCount() = 0;
  virtual Rectangle ScreenArea(std::int32_t index) = 0;
  /// The frame that the desktop adds around a top-level window, title bar included; zero while it is unknown,
  /// as before the window is shown.
  virtual Margins FrameOf(WindowHandle window) = 0;
};

}  // namespace kestrel
