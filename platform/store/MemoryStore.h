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
  bool isEmpty() const { return content_.keys.empty(); }

 protected:
  void beginWrites() override { beforeBatch_ = content_; }
  void endWrites(bool store) override {
    if (!store) content_ = std::move(beforeBatch_);
  }

 private:
  using Address = std::pair<std::int32_t, std::string>;  // hive and path, in lower case like all names here
  struct Content {
    std::set<Address> keys;
    std::map<std::pair<Address, std::string>, Variant> values;
  };

  Content content_;
  Content beforeBatch_;
};

}  // namespace kestrel::store
