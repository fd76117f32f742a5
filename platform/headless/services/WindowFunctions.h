#pragma once

#include <cstdint>
#include <map>

#include "../Desktop.h"
#include "imaging/contract/WindowFunctions.h"

namespace kestrel::headless {

class WindowFunctions final : public kestrel::WindowFunctions {
 public:
  explicit WindowFunctions(Desktop& desktop) : desktop_(desktop) {}

  void AddWindowStyle(WindowHandle window, std::int32_t style) override { styles_[window] |= style; }
  bool IsWindowVisible(WindowHandle window) override;
  Point GetCursorPos() override { return desktop_.pointer; }
  /// Returns the position unchanged for an unknown handle.
  Point ScreenToClient(WindowHandle window, const Point& screen) override;
  void LockWindowUpdate(WindowHandle window) override { locked_ = window; }
  std::int32_t ScreenCount() override { return static_cast<std::int32_t>(desktop_.screens.size()); }
  /// Raises RuntimeError 9 for an unknown screen.
  Rectangle ScreenArea(std::int32_t index) override;
  Margins FrameOf(WindowHandle /*window*/) override { return desktop_.frame; }

  /// The styles added to a window.
  std::int32_t styles(WindowHandle window) const;
  WindowHandle locked() const { return locked_; }

 private:
  Desktop& desktop_;
  std::map<WindowHandle, std::int32_t> styles_;
  WindowHandle locked_ = 0;
};

}  // namespace kestrel::headless
