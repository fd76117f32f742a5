#include "ControlTable.h"

#include "base/Numbers.h"

namespace kestrel::qt {

void ControlTable::add(std::unique_ptr<Control> control) {
  controls_.insert_or_assign({LowerCase(control->Name()), control->Index()}, std::move(control));
}

Control* ControlTable::find(std::string_view name, std::int32_t index) const {
  const auto found = controls_.find({LowerCase(name), index});
  return found == controls_.end() ? nullptr : found->second.get();
}

std::int32_t ControlTable::upperBound(std::string_view name) const {
  const std::string wanted = LowerCase(name);
  std::int32_t highest = -1;
  for (const auto& [id, control] : controls_) {
    if (id.first == wanted && id.second > highest) highest = id.second;
  }
  return highest;
}

}  // namespace kestrel::qt
