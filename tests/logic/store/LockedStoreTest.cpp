// A store file that another program holds locked.

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <string>

#include "TemporaryFolder.h"
#include "platform/sqlite/SqliteStore.h"

namespace kestrel {
namespace {

constexpr std::int32_t kUser = HKEY_CURRENT_USER;

/// The connection of another program.
class ForeignProgram {
 public:
  explicit ForeignProgram(const std::filesystem::path& file) {
    EXPECT_EQ(sqlite3_open(file.c_str(), &connection_), SQLITE_OK);
  }
  ~ForeignProgram() { sqlite3_close(connection_); }
  ForeignProgram(const ForeignProgram&) = delete;
  ForeignProgram& operator=(const ForeignProgram&) = delete;

  /// Keeps all others from writing until `letGo`.
  void keepFromWriting() { run("BEGIN IMMEDIATE"); }
  /// Keeps all others from reading and writing, until this object ends.
  void keepFromReading() {
    run("PRAGMA locking_mode = EXCLUSIVE");
    run("BEGIN IMMEDIATE");
    run("DELETE FROM StoreValue WHERE name = 'nothing'");
  }
  void letGo() { run("ROLLBACK"); }

 private:
  void run(const char* sql) {
    EXPECT_EQ(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }

  sqlite3* connection_ = nullptr;
};

/// A store that counts its pauses instead of making them.
class LockedStore : public testing::Test {
 protected:
  LockedStore() { sqlite::SqliteStore(file_).WriteValue(kUser, "Key", "Stored", 7, kStoreNumber); }

  std::int32_t read() {
    const Variant value = store_.ReadValue(kUser, "Key", "Stored");
    return value.TypeCode() == 0 ? -1 : value.ToInt32();
  }
  /// The description of what the call raises, empty where it raises nothing.
  static std::string raisedBy(const std::function<void()>& call) {
    try {
      call();
      return {};
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kPermissionDenied);
      return error.Description();
    }
  }
  std::string write(std::int32_t value) {
    return raisedBy([&] { store_.WriteValue(kUser, "Key", "Stored", value, kStoreNumber); });
  }

  const TemporaryFolder folder_;
  const std::filesystem::path file_ = folder_ / "a.store";
  int pauses_ = 0;
  std::function<void()> atPause_ = [] {};
  sqlite::SqliteStore store_{file_, sqlite::Patience([this] {
                               ++pauses_;
                               atPause_();
                             })};
};

constexpr char kLocked[] = "The settings could not be read or written: another program keeps them locked.";

TEST_F(LockedStore, IsWaitedForTenThousandTimesAFifthOfAMillisecond) {
  EXPECT_EQ(sqlite::Patience::kPauses, 10'000);
  ForeignProgram other(file_);
  other.keepFromWriting();
  EXPECT_EQ(write(8), kLocked);
  EXPECT_EQ(pauses_, sqlite::Patience::kPauses);
}

TEST_F(LockedStore, IsWaitedForOnceByAllCallsOfASave) {
  ForeignProgram other(file_);
  other.keepFromWriting();
  EXPECT_EQ(raisedBy([&] { store_.CreateKey(kUser, "List"); }), kLocked);
  EXPECT_EQ(raisedBy([&] { store_.DeleteValue(kUser, "List", "MRU1"); }), kLocked);
  for (int i = 2; i <= 10; ++i) store_.DeleteValue(kUser, "List", "MRU" + std::to_string(i));
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(write(i), "") << "the run has been reported";
  EXPECT_EQ(raisedBy([&] { store_.CreateKey(kUser, "List"); }), kLocked);
  EXPECT_EQ(pauses_, sqlite::Patience::kPauses);
}

TEST_F(LockedStore, IsReadWhileItIsLockedForWriting) {
  ForeignProgram other(file_);
  other.keepFromWriting();
  EXPECT_EQ(read(), 7);
  EXPECT_EQ(pauses_, 0);
  EXPECT_EQ(write(8), kLocked);
  EXPECT_EQ(read(), 7);
  write(8);
  EXPECT_EQ(pauses_, sqlite::Patience::kPauses) << "reads do not renew the patience with writers";
}

TEST_F(LockedStore, IsWrittenWhenTheOtherProgramLetsGoInTime) {
  ForeignProgram other(file_);
  other.keepFromWriting();
  atPause_ = [&] {
    if (pauses_ == 9'000) other.letGo();
  };
  EXPECT_EQ(write(8), "");
  EXPECT_EQ(read(), 8);
  EXPECT_EQ(pauses_, 9'000);
}

TEST_F(LockedStore, IsWaitedForAgainAfterASuccess) {
  ForeignProgram other(file_);
  other.keepFromWriting();
  EXPECT_EQ(write(8), kLocked);
  other.letGo();
  EXPECT_EQ(write(9), "");
  other.keepFromWriting();
  EXPECT_EQ(write(10), kLocked) << "a new run";
  EXPECT_EQ(pauses_, 2 * sqlite::Patience::kPauses);
  EXPECT_EQ(read(), 9);
}

TEST_F(LockedStore, KnowsThatAReadHasFailed) {
  {
    ForeignProgram other(file_);
    other.keepFromReading();
    EXPECT_EQ(read(), -1);
    EXPECT_TRUE(store_.ReadFailed());
    EXPECT_EQ(read(), -1);
    EXPECT_EQ(pauses_, sqlite::Patience::kPauses);
  }
  EXPECT_EQ(read(), 7);
  EXPECT_FALSE(store_.ReadFailed());
  EXPECT_EQ(store_.ReadValue(kUser, "Key", "None").TypeCode(), 0);
  EXPECT_FALSE(store_.ReadFailed()) << "a value that is not there is no failure";
}

}  // namespace
}  // namespace kestrel
