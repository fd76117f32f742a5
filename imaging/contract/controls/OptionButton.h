#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// One of several choices; choosing it takes the choice from the others of its container.
class OptionButton : public Control {
 public:
  virtual std::string Caption() const = 0;
  /// The text stored with it.
  virtual std::string Tag() const = 0;
  virtual bool Value() const = 0;
  /// Raises `Click` when it becomes the chosen one.
  virtual void Value(bool value) = 0;

  Event<> Click;
};

}  // namespace kestrel
