#pragma once

#include "Types.h"
#include "base/Event.h"

namespace kestrel {

/// Detects that the pointer rests on or leaves one window. Each start arms both events once.
class MouseTracker {
 public:
  virtual ~MouseTracker() = default;
  virtual WindowHandle hWnd() const = 0;
  /// Binds the tracker to a window and stops tracking; 0 unbinds it.
  virtual void hWnd(WindowHandle value) = 0;
  virtual bool Tracking() const = 0;
  virtual void StartTracking() = 0;
  virtual void StopTracking() = 0;

  Event<> MouseHover;
  Event<> MouseLeave;
};

}  // namespace kestrel
