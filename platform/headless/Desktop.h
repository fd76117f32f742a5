#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "imaging/contract/Types.h"

namespace kestrel::headless {

class Window;

/// Simulates the window system: assigns window handles and holds the pointer position, the pressed modifiers
/// and the focus. Tests write its fields to simulate the user.
class Desktop {
 public:
  /// Assigns a handle to a window; handles are not reused.
  WindowHandle add(Window& window);
  void remove(WindowHandle handle);
  /// Null for an unknown handle.
  Window* find(WindowHandle handle) const;

  /// The pointer position in screen pixels.
  Point pointer;
  /// Mask of the pressed modifiers.
  std::int32_t shift = 0;
  /// The window with the keyboard focus; 0 for none.
  WindowHandle focus = 0;
  /// The area of each screen that windows may cover.
  std::vector<Rectangle> screens = {{0, 0, 1920, 1040}};
  /// The frame around each top-level window.
  Margins frame;

 private:
  std::map<WindowHandle, Window*> windows_;
  WindowHandle last_ = 0;
};

}  // namespace kestrel::headless
