#include "HotKeysModel.h"

#include <cstddef>
#include <string>

#include "CommandModel.h"
#include "base/RuntimeError.h"

namespace kestrel::docking {

void HotKeyModel::Remove() { owner_.remove(*this); }

HotKeysModel::HotKeysModel(CommandModel& command, const std::vector<StoredHotKey>& stored)
    : command_(command) {
  for (const StoredHotKey& key : stored) keys_.push_back(std::make_unique<HotKeyModel>(*this, key));
}

HotKeyModel& HotKeysModel::Item(std::int32_t index) {
  if (index < 1 || index > Count()) {
    throw RuntimeError(err::kSubscript, "The command has no hot key " + std::to_string(index) + '.');
  }
  return *keys_[static_cast<std::size_t>(index - 1)];
}

HotKeyModel* HotKeysModel::find(std::int32_t shift, std::int32_t keyCode) const {
  for (const auto& key : keys_) {
    if (key->matches(shift, keyCode)) return key.get();
  }
  return nullptr;
}

void HotKeysModel::remove(const HotKeyModel& key) {
  std::erase_if(keys_, [&](const auto& own) { return own.get() == &key; });
  command_.updated();
}

}  // namespace kestrel::docking
