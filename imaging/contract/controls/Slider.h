#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A number chosen between two bounds.
class Slider : public Control {
 public:
  virtual std::int32_t Min() const = 0;
  virtual std::int32_t Max() const = 0;
  virtual std::int32_t Value() const = 0;
  /// A value outside the bounds becomes the nearer bound. Raises `Change` if the value differs.
  virtual void Value(std::int32_t value) = 0;

  Event<> Change;
};

}  // namespace kestrel
