#include "Desktop.h"

namespace kestrel::headless {

WindowHandle Desktop::add(Window& window) {
  windows_.emplace(++last_, &window);
  return last_;
}

void Desktop::remove(WindowHandle handle) {
  windows_.erase(handle);
  if (focus == handle) focus = 0;
}

Window* Desktop::find(WindowHandle handle) const {
  const auto found = windows_.find(handle);
  return found == windows_.end() ? nullptr : found->second;
}

}  // namespace kestrel::headless
