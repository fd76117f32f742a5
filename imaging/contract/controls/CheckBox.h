#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A check box: 0 unchecked, 1 checked.
class CheckBox : public Control {
 public:
  virtual std::string Caption() const = 0;
  virtual void Caption(const std::string& value) = 0;
  virtual std::int32_t Value() const = 0;
  /// Raises `Click` if the value differs.
  virtual void Value(std::int32_t value) = 0;

  Event<> Click;
};

}  // namespace kestrel
