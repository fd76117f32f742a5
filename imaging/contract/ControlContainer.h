#pragma once

#include <cstdint>
#include <string_view>

#include "Control.h"
#include "base/RuntimeError.h"

namespace kestrel {

/// A container of named controls: a form, or the surface of one of our controls.
class ControlContainer {
 public:
  virtual ~ControlContainer() = default;

  /// The control of that name (and index, for an element of a control array), or null. Owned by the
  /// container, valid as long as it lives.
  virtual Control* Find(std::string_view name, std::int32_t index = -1) = 0;

  /// The highest index of the control array of that name, -1 if there is none.
  virtual std::int32_t UBound(std::string_view name) const = 0;
};

/// The control of that name as a `T`; for constructors, which bind their controls once. Raises RuntimeError
/// 730 if there is none, or if it is of another class.
template <typename T>
T& Bind(ControlContainer& container, std::string_view name, std::int32_t index = -1) {
  if (auto* control = dynamic_cast<T*>(container.Find(name, index))) return *control;
  throw RuntimeError(730, "The control \"" + std::string(name) + "\" was not found on its container.");
}

}  // namespace kestrel
