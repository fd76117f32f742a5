#pragma once

#include <string>
#include <vector>

#include "platform/store/MemoryStore.h"

namespace kestrel {

/// A settings store that lists the names of the values that are stored together.
class BatchStore final : public store::MemoryStore {
 public:
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override {
    (inBatch_ ? batches.back() : alone).push_back(ValueName);
    MemoryStore::WriteValue(Hive, Key, ValueName, Value, Kind);
  }

  /// The values of each batch that was stored.
  std::vector<std::vector<std::string>> batches;
  /// The values that were stored outside a batch.
  std::vector<std::string> alone;

 protected:
  void beginWrites() override {
    inBatch_ = true;
    batches.emplace_back();
    MemoryStore::beginWrites();
  }
  void endWrites(bool store) override {
    inBatch_ = false;
    if (!store) batches.pop_back();
    MemoryStore::endWrites(store);
  }

 private:
  bool inBatch_ = false;
};

}  // namespace kestrel
