#include "WindowFunctions.h"

#include <string>

#include "../Window.h"
#include "base/RuntimeError.h"

namespace kestrel::headless {

bool WindowFunctions::IsWindowVisible(WindowHandle window) {
  const Window* found = desktop_.find(window);
  return found && found->isShown();
}

Point WindowFunctions::ScreenToClient(WindowHandle window, const Point& screen) {
  const Window* found = desktop_.find(window);
  const Point origin = found ? found->origin() : Point{};
  return {screen.X - origin.X, screen.Y - origin.Y};
}

Rectangle WindowFunctions::ScreenArea(std::int32_t index) {
  if (index < 0 || index >= ScreenCount()) {
    throw RuntimeError(err::kSubscript, "There is no screen " + std::to_string(index) + ".");
  }
  return desktop_.screens[static_cast<std::size_t>(index)];
}

std::int32_t WindowFunctions::styles(WindowHandle window) const {
  const auto found = styles_.find(window);
  return found == styles_.end() ? 0 : found->second;
}

}  // namespace kestrel::headless
