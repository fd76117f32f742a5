#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/posix/LineTable.h"
#include "platform/store/MemoryStore.h"
#include "platform/store/StoredPositions.h"
#include "settings/modProcessing.h"
#include "tests/logic/fakes/FakeForm.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {

inline const std::string kRoot = "Software\\Brindlewick\\Common\\ImageProcessing";

/// A key store in memory whose calls are recorded and can fail.
class FailingStore : public store::MemoryStore {
 public:
  Variant ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override {
    ++reads;
    if (readsFail || readsLeft == 0) throw RuntimeError(err::kDeviceIO, "The store can't be read.");
    if (readsLeft > 0) --readsLeft;
    return MemoryStore::ReadValue(Hive, Key, ValueName);
  }
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override {
    if (writesFail) throw RuntimeError(err::kDiskFull, "The disk is full.");
    calls += "write " + ValueName + "=" + Value.ToString() + ";";
    MemoryStore::WriteValue(Hive, Key, ValueName, Value, Kind);
  }
  void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override {
    calls += "delete " + ValueName + ";";
    MemoryStore::DeleteValue(Hive, Key, ValueName);
  }
  void CreateKey(std::int32_t Hive, const std::string& Key) override {
    if (createFails) throw RuntimeError(err::kPermissionDenied, "The key can't be created.");
    MemoryStore::CreateKey(Hive, Key);
  }

  bool readsFail = false, writesFail = false, createFails = false;
  int reads = 0;
  int readsLeft = -1;  ///< number of reads that still succeed; -1 for all
  std::string calls;
};

/// A process in which Main has run on the fake platform.
class Settings : public testing::Test {
 protected:
  Settings() {
    platform_.store = &store_;
    platform_.positions = &positions_;
    platform_.lines = &lines_;
    modProcessing::Attach(platform_);
    modProcessing::Main();
  }
  ~Settings() override { modProcessing::Detach(); }

  std::size_t reports() const { return platform_.boxes.boxes.size(); }

  FailingStore store_;
  fakes::FakeScreens screens_;
  store::StoredPositions positions_{store_, screens_};
  posix::LineTable lines_;
  fakes::FakePlatform platform_;
};

}  // namespace kestrel
