#pragma once

#include "Types.h"
#include "base/Event.h"

namespace kestrel {

/// Watches one window for the pointer resting on it and leaving it. Each start arms both events once.
class MouseTracker {
 public:
  virtual ~MouseTracker() = default;
  virtual WindowHandle hWnd() const = 0;
  /// Binds it to a window and stops tracking; 0 binds it to none.
  virtual void hWnd(WindowHandle value) = 0;
  virtual bool Tracking() const = 0;
  virtual void StartTracking() = 0;
  virtual void StopTracking() = 0;

  Event<> MouseHover;
  Event<> MouseLeave;
};

}  // namespace kestrel
