#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A row of tabs, counted from 1.
class TabStrip : public Control {
 public:
  virtual std::int32_t Count() const = 0;
  virtual std::string Caption(std::int32_t index) const = 0;
  virtual std::int32_t SelectedIndex() const = 0;
  /// Raises `Click` if another tab was selected.
  virtual void SelectedIndex(std::int32_t value) = 0;

  Event<> Click;
};

}  // namespace kestrel
