#include "CommandItemsModel.h"

#include <cstddef>

#include "base/RuntimeError.h"

namespace kestrel::docking {

const CommandItem& CommandItemsModel::Item(std::int32_t index) const {
  if (index < 1 || index > Count()) {
    throw RuntimeError(err::kSubscript, "The list has no line " + std::to_string(index) + '.');
  }
  return items_[static_cast<std::size_t>(index - 1)];
}

void CommandItemsModel::Add(const std::string& text, const std::string& key) {
  items_.push_back({text, key});
  updated_();
}

void CommandItemsModel::Clear() {
  items_.clear();
  updated_();
}

}  // namespace kestrel::docking
