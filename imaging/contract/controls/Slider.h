#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// Selects a number between two bounds.
class Slider : public Control {
 public:
  virtual std::int32_t Min() const = 0;
  virtual std::int32_t Max() const = 0;
  virtual std::int32_t Value() const = 0;
  /// The value is clamped to the bounds. Raises `Change` if it differs.
  virtual void Value(std::int32_t value) = 0;

  Event<> Change;
};

}  // namespace kestrel
