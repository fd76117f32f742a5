#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "imaging/contract/Control.h"

namespace kestrel::qt {

/// The controls of a form or surface, found by name and index.
class ControlTable {
 public:
  /// By lower-case name and index.
  using Controls = std::map<std::pair<std::string, std::int32_t>, std::unique_ptr<Control>>;

  void add(std::unique_ptr<Control> control);
  void clear() { controls_.clear(); }
  const Controls& all() const { return controls_; }

  /// Null if there is none.
  Control* find(std::string_view name, std::int32_t index) const;
  /// The highest index of the control array, -1 if there is none.
  std::int32_t upperBound(std::string_view name) const;

 private:
  Controls controls_;
};

}  // namespace kestrel::qt
