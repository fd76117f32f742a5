#include "MemoryStore.h"

#include "base/Numbers.h"

namespace kestrel::store {

Variant MemoryStore::ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  const auto found = values_.find({{Hive, LowerCase(Key)}, LowerCase(ValueName)});
  return found == values_.end() ? Variant() : found->second;
}

void MemoryStore::WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                             const Variant& Value, std::int32_t Kind) {
  Variant stored = asStored(Value, Kind);
  CreateKey(Hive, Key);
  values_.insert_or_assign({{Hive, LowerCase(Key)}, LowerCase(ValueName)}, std::move(stored));
}

void MemoryStore::DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  values_.erase({{Hive, LowerCase(Key)}, LowerCase(ValueName)});
}

void MemoryStore::CreateKey(std::int32_t Hive, const std::string& Key) {
  keys_.emplace(Hive, LowerCase(Key));
}

bool MemoryStore::hasKey(std::int32_t hive, const std::string& key) const {
  return keys_.contains({hive, LowerCase(key)});
}

}  // namespace kestrel::store
