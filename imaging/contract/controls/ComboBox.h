#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A drop-down list; entries are counted from 0.
class ComboBox : public Control {
 public:
  virtual std::int32_t ListCount() const = 0;
  virtual std::string List(std::int32_t index) const = 0;
  /// The number stored with an entry; raises RuntimeError 381 outside the list.
  virtual std::int32_t ItemData(std::int32_t index) const = 0;
  /// -1 while nothing is selected.
  virtual std::int32_t ListIndex() const = 0;
  /// Raises `Click` if the selection differs, RuntimeError 380 outside the list.
  virtual void ListIndex(std::int32_t value) = 0;

  Event<> Click;
};

}  // namespace kestrel
