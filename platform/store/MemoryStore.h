#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "SectionedStore.h"

namespace kestrel::store {

/// A key store in memory: for tests, and for runs that leave no trace.
class MemoryStore : public SectionedStore {
 public:
  Variant ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override;
  void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  void CreateKey(std::int32_t Hive, const std::string& Key) override;

  bool hasKey(std::int32_t hive, const std::string& key) const;
  /// Whether it contains no key.
  bool isEmpty() const { return keys_.empty(); }

 private:
  using Address = std::pair<std::int32_t, std::string>;  // hive and path, in lower case like all names here

  std::set<Address> keys_;
  std::map<std::pair<Address, std::string>, Variant> values_;
};

}  // namespace kestrel::store
