// A store file that another program has locked.

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

  /// Locks the file for writing until `unlock`.
  void lockForWriting() { run("BEGIN IMMEDIATE"); }
  /// Locks the file for reading and writing until this object ends.
  void lockForReading() {
    run("PRAGMA locking_mode = EXCLUSIVE");
    run("BEGIN IMMEDIATE");
    run("DELETE FROM StoreValue WHERE name = 'nothing'");
  }
  void unlock() { run("ROLLBACK"); }

 private:
  void run(const char* sql) {
    EXPECT_EQ(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }

  sqlite3* connection_ = nullptr;
};

/// A store that counts its pauses instead of sleeping.
class LockedStore : public testing::Test {
 protected:
  LockedStore() { sqlite::SqliteStore(file_).WriteValue(kUser, "Key", "Stored", 7, kStoreNumber); }

  std::int32_t read() {
    const Variant value = store_.ReadValue(kUser, "Key", "Stored");
    return value.TypeCode() == 0 ? -1 : value.ToInt32();
  }
  /// The description of the error that the call raises, empty if none.
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
  other.lockForWriting();
  EXPECT_EQ(write(8), kLocked);
  EXPECT_EQ(pauses_, sqlite::Patience::kPauses);
}

TEST_F(LockedStore, IsWaitedForOnceByAllCallsOfASave) {
  ForeignProgram other(file_);
  other.lockForWriting();
  EXPECT_EQ(raisedBy([&] { store_.CreateKey(kUser, "List"); }), kLocked);
  EXPECT_EQ(raisedBy([&] { store_.DeleteValue(kUser, "List", "MRU1"); }), kLocked);
  for (int i = 2; i <= 10; ++i) store_.DeleteValue(kUser, "List", "MRU" + std::to_string(i));
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(write(i), "") << "the run has been reported";
  EXPECT_EQ(raisedBy([&] { store_.CreateKey(kUser, "List"); }), kLocked);
  EXPECT_EQ(pauses_, sqlite::Patience::kPauses);
}

TEST_F(LockedStore, IsWaitedForOnceByABatchAndReportedOnce) {
  ForeignProgram other(file_);
  other.lockForWriting();
  const auto save = [&] {
    StoreBatch batch(store_);
    EXPECT_EQ(raisedBy([&] { store_.CreateKey(kUser, "List"); }), kLocked) << "which the caller ignores";
    for (int i = 1; i <= 10; ++i) store_.DeleteValue(kUser, "List", "MRU" + std::to_string(i));
    store_.WriteValue(kUser, "List", "MRU1", "a", kStoreString);
    batch.Commit();
  };
  EXPECT_EQ(raisedBy(save), kLocked);
  EXPECT_EQ(raisedBy(save), "") << "the run has been reported";
  EXPECT_EQ(pauses_, sqlite::Patience::kPauses);
  other.unlock();
  StoreBatch batch(store_);
  store_.WriteValue(kUser, "Key", "Stored", 8, kStoreNumber);
  batch.Commit();
  other.lockForWriting();
  EXPECT_EQ(write(9), kLocked) << "a new run";
  EXPECT_EQ(pauses_, 2 * sqlite::Patience::kPauses);
}

TEST_F(LockedStore, IsReadWhileItIsLockedForWriting) {
  ForeignProgram other(file_);
  other.lockForWriting();
  EXPECT_EQ(read(), 7);
  EXPECT_EQ(pauses_, 0);
  EXPECT_EQ(write(8), kLocked);
  EXPECT_EQ(read(), 7);
  write(8);
  EXPECT_EQ(pauses_, sqlite::Patience::kPauses) << "reads do not renew the patience with writers";
}

TEST_F(LockedStore, IsWrittenWhenTheOtherProgramUnlocksItInTime) {
  ForeignProgram other(file_);
  other.lockForWriting();
  atPause_ = [&] {
    if (pauses_ == 9'000) other.unlock();
  };
  EXPECT_EQ(write(8), "");
  EXPECT_EQ(read(), 8);
  EXPECT_EQ(pauses_, 9'000);
}

TEST_F(LockedStore, IsWaitedForAgainAfterASuccess) {
  ForeignProgram other(file_);
  other.lockForWriting();
  EXPECT_EQ(write(8), kLocked);
  other.unlock();
  EXPECT_EQ(write(9), "");
  other.lockForWriting();
  EXPECT_EQ(write(10), kLocked) << "a new run";
  EXPECT_EQ(pauses_, 2 * sqlite::Patience::kPauses);
  EXPECT_EQ(read(), 9);
}

TEST_F(LockedStore, ReportsThatAReadHasFailed) {
  {
    ForeignProgram other(file_);
    other.lockForReading();
    EXPECT_EQ(read(), -1);
    EXPECT_TRUE(store_.ReadFailed());
    EXPECT_EQ(read(), -1);
    EXPECT_EQ(pauses_, sqlite::Patience::kPauses);
  }
  EXPECT_EQ(read(), 7);
  EXPECT_FALSE(store_.ReadFailed());
  EXPECT_EQ(store_.ReadValue(kUser, "Key", "None").TypeCode(), 0);
  EXPECT_FALSE(store_.ReadFailed()) << "a missing value is no failure";
}

}  // namespace
}  // namespace kestrel
