#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A radio button, exclusive within its container.
class OptionButton : public Control {
 public:
  virtual std::string Caption() const = 0;
  /// The text stored with it.
  virtual std::string Tag() const = 0;
  virtual bool Value() const = 0;
  /// Raises `Click` when it becomes selected.
  virtual void Value(bool value) = 0;

  Event<> Click;
};

}  // namespace kestrel
