#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A button; as one of a group that shows a state it can stay pressed.
class CommandButton : public Control {
 public:
  virtual std::string Caption() const = 0;
  virtual bool Pressed() const = 0;
  /// Changes the looks alone.
  virtual void Pressed(bool value) = 0;
  /// The colour of its face, -1 for the desktop's own.
  virtual OLE_COLOR BackColor() const = 0;
  virtual void BackColor(OLE_COLOR value) = 0;
  /// Does what a click does: raises `Click` if the button is enabled.
  virtual void Press() = 0;

  Event<> Click;
};

}  // namespace kestrel
