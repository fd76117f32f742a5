#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "imaging/contract/Types.h"

namespace kestrel::headless {

class Window;

/// Stands in for the window system: names windows by handle and knows where the pointer is, which modifiers
/// are held and which window has the focus. Tests write its fields as a user would move and press.
class Desktop {
 public:
  /// Names a window; the handle is never given out twice.
  WindowHandle add(Window& window);
  void remove(WindowHandle handle);
  /// Null for a handle that names no window.
  Window* find(WindowHandle handle) const;

  /// Where the pointer is, in pixels of the screen.
  Point pointer;
  /// Mask of the modifiers that are held down.
  std::int32_t shift = 0;
  /// The window that takes keys; 0 while none does.
  WindowHandle focus = 0;
  /// What windows may cover of each screen.
  std::vector<Rectangle> screens = {{0, 0, 1920, 1040}};
  /// What it puts around each top-level window.
  Margins frame;

 private:
  std::map<WindowHandle, Window*> windows_;
  WindowHandle last_ = 0;
};

}  // namespace kestrel::headless
