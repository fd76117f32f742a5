#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "TemporaryFolder.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/store/MemoryStore.h"

namespace kestrel {
namespace {

constexpr std::int32_t kUser = HKEY_CURRENT_USER;

int numberRaisedBy(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.Number();
  }
  return 0;
}

/// Tests for every key store.
class Store : public testing::TestWithParam<bool> {
 protected:
  Store() {
    if (GetParam()) {
      store_ = std::make_unique<sqlite::SqliteStore>(folder_ / "a.store");
    } else {
      store_ = std::make_unique<store::MemoryStore>();
    }
    store_->RootKey("Software\\Test");
  }

  void write(const char* name, std::int32_t value) {
    store_->WriteValue(kUser, "k", name, value, kStoreNumber);
  }
  /// The values "a", "b" and "c", a dash for none.
  std::string values() {
    const auto text = [&](const char* name) {
      const Variant value = store_->ReadValue(kUser, "k", name);
      return value.TypeCode() == 0 ? std::string("-") : value.ToString();
    };
    return text("a") + " " + text("b") + " " + text("c");
  }

  TemporaryFolder folder_;
  std::unique_ptr<RegistryStore> store_;
};

TEST_P(Store, ReturnsTheDefaultForAMissingValue) {
  EXPECT_EQ(store_->GetSetting("Quality", 75, kStoreNumber, "JPEG", kUser).ToInt32(), 75);
  EXPECT_EQ(store_->GetSetting("Name", "none", kStoreString, "JPEG", kUser).ToString(), "none");
}

TEST_P(Store, ReturnsTheWrittenValue) {
  store_->SetSetting("Quality", 40, kStoreNumber, "JPEG", kUser);
  store_->SetSetting("Name", "a \xC3\xA4 '\"; b", kStoreString, "JPEG", kUser);
  EXPECT_EQ(store_->GetSetting("Quality", 75, kStoreNumber, "JPEG", kUser).ToInt32(), 40);
  EXPECT_EQ(store_->GetSetting("Name", "", kStoreString, "JPEG", kUser).ToString(), "a \xC3\xA4 '\"; b");
}

TEST_P(Store, HoldsAllNumbersOf32Bits) {
  for (const std::int32_t number : {0, -1, 0x7FFFFFFF, static_cast<std::int32_t>(0x80000000)}) {
    store_->SetSetting("n", number, kStoreNumber, "s", kUser);
    EXPECT_EQ(store_->GetSetting("n", 5, kStoreNumber, "s", kUser).ToInt32(), number);
  }
}

TEST_P(Store, HoldsAnEmptyTextAndOneWithANul) {
  const std::string withNul("a\0b", 3);
  store_->SetSetting("empty", "", kStoreString, "s", kUser);
  store_->SetSetting("nul", withNul, kStoreString, "s", kUser);
  EXPECT_EQ(store_->GetSetting("empty", "default", kStoreString, "s", kUser).ToString(), "");
  EXPECT_EQ(store_->GetSetting("nul", "default", kStoreString, "s", kUser).ToString(), withNul);
}

TEST_P(Store, DoesNotFindAValueOfTheOtherKind) {
  store_->SetSetting("n", 40, kStoreNumber, "s", kUser);
  store_->SetSetting("t", "40", kStoreString, "s", kUser);
  EXPECT_EQ(store_->GetSetting("n", "default", kStoreString, "s", kUser).ToString(), "default");
  EXPECT_EQ(store_->GetSetting("t", 7, kStoreNumber, "s", kUser).ToInt32(), 7);
}

TEST_P(Store, ReplacesAValueByOneOfTheOtherKind) {
  store_->SetSetting("v", 40, kStoreNumber, "s", kUser);
  store_->SetSetting("v", "forty", kStoreString, "s", kUser);
  EXPECT_EQ(store_->GetSetting("v", 7, kStoreNumber, "s", kUser).ToInt32(), 7);
  EXPECT_EQ(store_->GetSetting("v", "", kStoreString, "s", kUser).ToString(), "forty");
  store_->SetSetting("v", 41, kStoreNumber, "s", kUser);
  EXPECT_EQ(store_->GetSetting("v", 7, kStoreNumber, "s", kUser).ToInt32(), 41);
}

TEST_P(Store, ConvertsToTheKindOnWriting) {
  store_->SetSetting("true", true, kStoreNumber, "s", kUser);
  store_->SetSetting("text", -1, kStoreString, "s", kUser);
  EXPECT_EQ(store_->GetSetting("true", 0, kStoreNumber, "s", kUser).ToInt32(), -1);
  EXPECT_EQ(store_->GetSetting("text", "", kStoreString, "s", kUser).ToString(), "-1");
}

TEST_P(Store, RefusesInvalidValuesAndKeepsTheOldOne) {
  store_->SetSetting("n", 40, kStoreNumber, "s", kUser);
  EXPECT_EQ(numberRaisedBy([&] { store_->SetSetting("n", "abc", kStoreNumber, "s", kUser); }), 13);
  EXPECT_EQ(numberRaisedBy([&] { store_->SetSetting("n", 3e9, kStoreNumber, "s", kUser); }), 6);
  EXPECT_EQ(numberRaisedBy([&] { store_->SetSetting("n", 1, 3, "s", kUser); }), 5);
  EXPECT_EQ(store_->GetSetting("n", 7, kStoreNumber, "s", kUser).ToInt32(), 40);
}

TEST_P(Store, SeparatesValuesByHiveKeySectionAndName) {
  store_->SetSetting("Width", 1, kStoreNumber, "Resize", kUser);
  store_->SetSetting("Width", 2, kStoreNumber, "ResizeCanvas", kUser);
  store_->SetSetting("Width", 3, kStoreNumber, "Resize", kUser, "Software\\Other");
  store_->SetSetting("Width", 4, kStoreNumber, "Resize", kUser + 1);
  store_->SetSetting("Height", 5, kStoreNumber, "Resize", kUser);
  EXPECT_EQ(store_->ReadValue(kUser, "Software\\Test\\Resize", "Width").ToInt32(), 1);
  EXPECT_EQ(store_->ReadValue(kUser, "Software\\Test\\ResizeCanvas", "Width").ToInt32(), 2);
  EXPECT_EQ(store_->ReadValue(kUser, "Software\\Other\\Resize", "Width").ToInt32(), 3);
  EXPECT_EQ(store_->ReadValue(kUser + 1, "Software\\Test\\Resize", "Width").ToInt32(), 4);
  EXPECT_EQ(store_->ReadValue(kUser, "Software\\Test\\Resize", "Height").ToInt32(), 5);
}

TEST_P(Store, IgnoresTheCaseOfKeysAndNames) {
  store_->WriteValue(kUser, "Software\\Test", "Quality", 40, kStoreNumber);
  EXPECT_EQ(store_->ReadValue(kUser, "SOFTWARE\\test", "qUALITY").ToInt32(), 40);
  store_->WriteValue(kUser, "software\\TEST", "QUALITY", 41, kStoreNumber);
  EXPECT_EQ(store_->ReadValue(kUser, "Software\\Test", "Quality").ToInt32(), 41);
}

TEST_P(Store, DeletesAValueAndIgnoresAMissingOne) {
  store_->WriteValue(kUser, "k", "a", 1, kStoreNumber);
  store_->WriteValue(kUser, "k", "b", 2, kStoreNumber);
  store_->DeleteValue(kUser, "k", "A");
  store_->DeleteValue(kUser, "k", "a");
  store_->DeleteValue(kUser, "no such key", "a");
  EXPECT_EQ(store_->ReadValue(kUser, "k", "a").TypeCode(), 0);
  EXPECT_EQ(store_->ReadValue(kUser, "k", "b").ToInt32(), 2);
}

TEST_P(Store, CreatesAKeyOnceAndKeepsItsValues) {
  store_->CreateKey(kUser, "k");
  store_->WriteValue(kUser, "k", "a", 1, kStoreNumber);
  store_->CreateKey(kUser, "K");
  EXPECT_EQ(store_->ReadValue(kUser, "k", "a").ToInt32(), 1);
}

TEST_P(Store, StoresTheWritesOfABatchAtItsCommit) {
  write("a", 1);
  write("b", 2);
  StoreBatch batch(*store_);
  write("a", 10);
  store_->DeleteValue(kUser, "k", "b");
  write("c", 30);
  EXPECT_EQ(values(), "10 - 30") << "the batch itself sees its writes";
  batch.Commit();
  EXPECT_EQ(values(), "10 - 30");
}

TEST_P(Store, DropsTheWritesOfABatchWithoutACommit) {
  write("a", 1);
  write("b", 2);
  {
    const StoreBatch batch(*store_);
    store_->CreateKey(kUser, "new");
    write("a", 10);
    store_->DeleteValue(kUser, "k", "b");
    write("c", 30);
  }
  EXPECT_EQ(values(), "1 2 -");
  write("c", 3);
  EXPECT_EQ(values(), "1 2 3");
}

TEST_P(Store, MakesABatchInABatchAPartOfIt) {
  {
    const StoreBatch outer(*store_);
    write("a", 1);
    StoreBatch inner(*store_);
    write("b", 2);
    inner.Commit();
    write("c", 3);
    EXPECT_EQ(values(), "1 2 3");
  }
  EXPECT_EQ(values(), "- - -");

  StoreBatch outer(*store_);
  write("a", 1);
  { const StoreBatch dropped(*store_); }
  write("b", 2);
  EXPECT_EQ(numberRaisedBy([&] { outer.Commit(); }), 57);
  EXPECT_EQ(values(), "- - -");

  StoreBatch next(*store_);
  write("a", 5);
  next.Commit();
  EXPECT_EQ(values(), "5 - -");
}

INSTANTIATE_TEST_SUITE_P(Of, Store, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "Sqlite" : "Memory"; });

TEST(MemoryStore, CreatesNothingByReading) {
  store::MemoryStore memory;
  memory.GetSetting("Quality", 75, kStoreNumber, "JPEG", kUser);
  memory.DeleteValue(kUser, "k", "a");
  EXPECT_TRUE(memory.isEmpty());
  memory.CreateKey(kUser, "Software\\k");
  EXPECT_TRUE(memory.hasKey(kUser, "SOFTWARE\\K"));
}

}  // namespace
}  // namespace kestrel
