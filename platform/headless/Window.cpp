#include "Window.h"

#include <algorithm>

namespace kestrel::headless {

Window::Window(Desktop& desktop, Window* parent, std::string name, std::int32_t index)
    : desktop_(desktop), parent_(parent), name_(std::move(name)), index_(index), handle_(desktop.add(*this)) {
  if (parent_) parent_->children_.push_back(this);
}

Window::~Window() {
  if (parent_) std::erase(parent_->children_, this);
  for (Window* child : children_) child->parent_ = nullptr;
  desktop_.remove(handle_);
}

void Window::place(const Rectangle& value) {
  const Rectangle old = place_;
  place_ = {value.Left, value.Top, std::max(value.Width, 0), std::max(value.Height, 0)};
  if (place_.Width == old.Width && place_.Height == old.Height) return;
  resized();
  layOutChildren();
}

void Window::layOutChildren() const {
  if (!isShown()) return;
  // A child may change the order of its siblings.
  const std::vector<Window*> children = children_;
  for (Window* child : children) child->containerLaidOut();
}

bool Window::isShown() const { return visible_ && (!container() || container()->isShown()); }

bool Window::isUsable() const { return enabled_ && (!container() || container()->isUsable()); }

Point Window::origin() const {
  const Point outer = container() ? container()->origin() : Point{};
  return {outer.X + place_.Left, outer.Y + place_.Top};
}

void Window::bringToFront() {
  if (!parent_) return;
  auto& siblings = parent_->children_;
  std::rotate(std::find(siblings.begin(), siblings.end(), this),
              std::find(siblings.begin(), siblings.end(), this) + 1, siblings.end());
}

}  // namespace kestrel::headless
