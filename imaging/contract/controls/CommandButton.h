#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A push button; it can stay pressed as one of a group that shows a state.
class CommandButton : public Control {
 public:
  virtual std::string Caption() const = 0;
  virtual bool Pressed() const = 0;
  /// Changes the appearance only.
  virtual void Pressed(bool value) = 0;
  /// The background color, -1 for the desktop's own.
  virtual OLE_COLOR BackColor() const = 0;
  virtual void BackColor(OLE_COLOR value) = 0;
  /// Simulates a click: raises `Click` if the button is enabled.
  virtual void Press() = 0;

  Event<> Click;
};

}  // namespace kestrel
