#include "MemoryStore.h"

#include "base/Numbers.h"

namespace kestrel::store {

Variant MemoryStore::ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  const auto found = content_.values.find({{Hive, LowerCase(Key)}, LowerCase(ValueName)});
  return found == content_.values.end() ? Variant() : found->second;
}

void MemoryStore::WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                             const Variant& Value, std::int32_t Kind) {
  Variant stored = asStored(Value, Kind);
  CreateKey(Hive, Key);
  content_.values.insert_or_assign({{Hive, LowerCase(Key)}, LowerCase(ValueName)}, std::move(stored));
}

void MemoryStore::DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  content_.values.erase({{Hive, LowerCase(Key)}, LowerCase(ValueName)});
}

void MemoryStore::CreateKey(std::int32_t Hive, const std::string& Key) {
  content_.keys.emplace(Hive, LowerCase(Key));
}

bool MemoryStore::hasKey(std::int32_t hive, const std::string& key) const {
  return content_.keys.contains({hive, LowerCase(key)});
}

}  // namespace kestrel::store
