#pragma once

#include <functional>
#include <utility>

#include "imaging/contract/MouseTracker.h"

namespace kestrel::headless {

/// Tracks one window; the platform reports where the pointer rests or leaves.
class MouseTracker final : public kestrel::MouseTracker {
 public:
  explicit MouseTracker(std::function<void(MouseTracker&)> died) : died_(std::move(died)) {}
  ~MouseTracker() override { died_(*this); }

  WindowHandle hWnd() const override { return window_; }
  void hWnd(WindowHandle value) override {
    StopTracking();
    window_ = value;
  }
  bool Tracking() const override { return hoverArmed_ || leaveArmed_; }
  void StartTracking() override { hoverArmed_ = leaveArmed_ = window_ != 0; }
  void StopTracking() override { hoverArmed_ = leaveArmed_ = false; }

  /// The pointer came to rest on the window.
  void pointerRests() {
    if (std::exchange(hoverArmed_, false)) MouseHover();
  }
  /// The pointer left the window; disarms both events.
  void pointerLeaves() {
    hoverArmed_ = false;
    if (std::exchange(leaveArmed_, false)) MouseLeave();
  }

 private:
  std::function<void(MouseTracker&)> died_;
  WindowHandle window_ = 0;
  bool hoverArmed_ = false;
  bool leaveArmed_ = false;
};

}  // namespace kestrel::headless
