#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "StoredLayout.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

class CommandModel;
class HotKeysModel;

class HotKeyModel : public HotKey {
 public:
  HotKeyModel(HotKeysModel& owner, const StoredHotKey& stored) : owner_(owner), stored_(stored) {}

  std::int32_t Shift() const override { return stored_.shift; }
  std::int32_t KeyCode() const override { return stored_.keyCode; }
  void Remove() override;

  /// Whether it has neither Ctrl nor Alt.
  bool unmodified() const { return (stored_.shift & (kCtrlMask | kAltMask)) == 0; }
  bool matches(std::int32_t shift, std::int32_t keyCode) const {
    return stored_ == StoredHotKey{shift, keyCode};
  }

 private:
  HotKeysModel& owner_;
  StoredHotKey stored_;
};

/// The hot keys of one command.
class HotKeysModel : public HotKeys {
 public:
  HotKeysModel(CommandModel& command, const std::vector<StoredHotKey>& stored);

  std::int32_t Count() const override { return static_cast<std::int32_t>(keys_.size()); }
  HotKeyModel& Item(std::int32_t index) override;

  /// The key of that mask and code, or nullptr.
  HotKeyModel* find(std::int32_t shift, std::int32_t keyCode) const;
  void remove(const HotKeyModel& key);

 private:
  CommandModel& command_;
  std::vector<std::unique_ptr<HotKeyModel>> keys_;
};

}  // namespace kestrel::docking
