#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/sqlite/StorePath.h"

namespace kestrel {
namespace {

constexpr std::int32_t kUser = HKEY_CURRENT_USER;

/// Changes the store's file from outside, as another program could.
void tamper(const std::filesystem::path& file, const std::string& sql) {
  sqlite3* connection = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &connection), SQLITE_OK);
  sqlite3_exec(connection, "PRAGMA ignore_check_constraints = ON", nullptr, nullptr, nullptr);
  char* message = nullptr;
  sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, &message);
  EXPECT_EQ(message, nullptr) << message;
  sqlite3_free(message);
  sqlite3_close(connection);
}

/// The number of the error that a call raises, 0 if none.
template <typename Call>
std::int32_t raisedBy(Call call) {
  try {
    call();
    return 0;
  } catch (const RuntimeError& error) {
    return error.Number();
  }
}

/// A store whose reports are recorded.
struct WatchedStore {
  explicit WatchedStore(const std::filesystem::path& file) : store(file) {}
  sqlite::SqliteStore store;
  std::vector<std::int32_t> reports;
  Connection connection =
      store.Unavailable.Connect([this](const RuntimeError& error) { reports.push_back(error.Number()); });

  std::int32_t read() { return store.GetSetting("Quality", 75, kStoreNumber, "JPEG", kUser).ToInt32(); }
  void write(std::int32_t value) { store.SetSetting("Quality", value, kStoreNumber, "JPEG", kUser); }
  /// The number of the error that the write raises, 0 if none.
  std::int32_t tryWrite(std::int32_t value) {
    return raisedBy([&] { write(value); });
  }
};

TEST(SqliteStore, CreatesNothingByReading) {
  const TemporaryFolder folder;
  WatchedStore watched(folder / "sub" / "a.store");
  EXPECT_EQ(watched.read(), 75);
  watched.store.DeleteValue(kUser, "k", "a");
  EXPECT_TRUE(folder.isEmpty());
  EXPECT_TRUE(watched.reports.empty());
  watched.write(3);
  EXPECT_TRUE(std::filesystem::exists(folder / "sub" / "a.store"));
}

TEST(SqliteStore, SeesValuesOfAnotherConnection) {
  const TemporaryFolder folder;
  WatchedStore first(folder / "a.store"), second(folder / "a.store");
  EXPECT_EQ(first.read(), 75);
  second.write(40);
  EXPECT_EQ(first.read(), 40);
  first.write(41);
  EXPECT_EQ(second.read(), 41);
}

TEST(SqliteStore, KeepsValuesFromRunToRun) {
  const TemporaryFolder folder;
  WatchedStore(folder / "a.store").write(40);
  EXPECT_EQ(WatchedStore(folder / "a.store").read(), 40);
}

TEST(SqliteStore, ThatIsNoDatabaseGivesDefaultsAndOneReport) {
  const TemporaryFolder folder;
  std::ofstream(folder / "a.store") << std::string(5000, 'x');
  WatchedStore watched(folder / "a.store");
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.tryWrite(40), err::kDeviceIO);
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.reports, std::vector<std::int32_t>{err::kDeviceIO});
  EXPECT_EQ(std::filesystem::file_size(folder / "a.store"), 5000u);
}

TEST(SqliteStore, WhosePathIsAFolderGivesDefaultsAndOneReport) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "a.store");
  WatchedStore watched(folder / "a.store");
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.tryWrite(40), err::kPathFileAccess);
  EXPECT_EQ(watched.reports, std::vector<std::int32_t>{err::kPathFileAccess});
}

TEST(SqliteStore, WhoseFolderIsAFileGivesDefaultsAndRaisesOnWriting) {
  const TemporaryFolder folder;
  std::ofstream(folder / "file") << "x";
  WatchedStore watched(folder / "file" / "a.store");
  EXPECT_EQ(watched.tryWrite(40), err::kPathFileAccess);
  EXPECT_EQ(watched.read(), 75);
  EXPECT_TRUE(watched.reports.empty()) << "nothing to read";
}

TEST(SqliteStore, WithoutAPathGivesDefaultsAndOneReport) {
  WatchedStore watched("");
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.tryWrite(40), err::kPathNotFound);
  EXPECT_EQ(watched.reports, std::vector<std::int32_t>{err::kPathNotFound});
}

TEST(SqliteStore, ThatIsDamagedWhileOpenGivesDefaultsAndOneReport) {
  const TemporaryFolder folder;
  {
    WatchedStore filling(folder / "a.store");
    for (std::int32_t i = 0; i < 400; ++i) {
      filling.store.WriteValue(kUser, "key" + std::to_string(i), "name", std::string(200, 'v'), kStoreString);
    }
  }
  // The header and the schema stay, the pages with the values are overwritten.
  std::fstream file(folder / "a.store", std::ios::in | std::ios::out | std::ios::binary);
  const auto size = static_cast<std::streamoff>(std::filesystem::file_size(folder / "a.store"));
  file.seekp(4096);
  file << std::string(static_cast<std::size_t>(size - 4096), '\xFF');
  file.close();

  WatchedStore watched(folder / "a.store");
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.reports, std::vector<std::int32_t>{err::kDeviceIO});
}

TEST(SqliteStore, DoesNotFindInvalidValues) {
  const TemporaryFolder folder;
  WatchedStore watched(folder / "a.store");
  watched.write(1);
  for (const char* value : {"5000000000", "-2147483649", "9223372036854775807", "x'010203'", "2.5"}) {
    tamper(folder / "a.store", std::string("UPDATE StoreValue SET number = ") + value);
    EXPECT_EQ(watched.read(), 75) << value;
    EXPECT_EQ(watched.store.ReadValue(kUser, "\\JPEG", "Quality").TypeCode(), 0) << value;
  }
  tamper(folder / "a.store", "UPDATE StoreValue SET number = 4294967295");
  EXPECT_EQ(watched.read(), -1) << "a number without sign";
  tamper(folder / "a.store", "UPDATE StoreValue SET number = -2147483648");
  EXPECT_EQ(watched.read(), std::numeric_limits<std::int32_t>::min());
  tamper(folder / "a.store", "UPDATE StoreValue SET number = NULL, text = 'abc'");
  EXPECT_EQ(watched.read(), 75) << "a text where a number should be";
  watched.write(5);
  EXPECT_EQ(watched.read(), 5);
  EXPECT_TRUE(watched.reports.empty());
}

/// A store whose folder can be replaced by a file, so that the store can't be opened.
struct BlockedPlace {
  BlockedPlace() { block(); }
  void block() { std::ofstream(folder / "sub") << "x"; }
  void clear() { std::filesystem::remove(folder / "sub"); }

  const TemporaryFolder folder;
  WatchedStore watched{folder / "sub" / "a.store"};
};

TEST(SqliteStore, RaisesOnlyForTheFirstFailedWriteOfARun) {
  BlockedPlace place;
  EXPECT_EQ(place.watched.tryWrite(40), err::kPathFileAccess);
  EXPECT_EQ(place.watched.tryWrite(41), 0) << "the run was reported";
  place.clear();
  EXPECT_EQ(place.watched.tryWrite(42), 0);
  EXPECT_EQ(place.watched.read(), 42);
  std::filesystem::remove_all(place.folder / "sub");
  place.block();
  EXPECT_EQ(place.watched.tryWrite(43), err::kPathFileAccess) << "a new run";
  EXPECT_TRUE(place.watched.reports.empty());
}

TEST(SqliteStore, ReportsARunOfFailedReadsOnce) {
  BlockedPlace place;
  // With a file in place of its folder the store counts as missing; with a folder in its own place it can't
  // be read.
  place.clear();
  const std::filesystem::path file = place.folder / "sub" / "a.store";
  std::filesystem::create_directories(file);
  EXPECT_EQ(place.watched.read(), 75);
  EXPECT_EQ(place.watched.read(), 75);
  EXPECT_EQ(place.watched.reports.size(), 1u);
  std::filesystem::remove(file);
  WatchedStore(file).write(40);
  EXPECT_EQ(place.watched.read(), 40);
  std::filesystem::remove_all(place.folder / "sub");
  std::filesystem::create_directories(file);
  EXPECT_EQ(place.watched.read(), 75);
  EXPECT_EQ(place.watched.reports.size(), 2u) << "a new run";
}

TEST(SqliteStore, ReportsAFailedReadThoughAHandlerOfTheReportReadsWithSuccess) {
  const TemporaryFolder folder;
  WatchedStore watched(folder / "a.store");
  std::filesystem::create_directory(folder / "a.store");
  const Connection connection = watched.store.Unavailable.Connect([&](const RuntimeError&) {
    std::filesystem::remove(folder / "a.store");
    EXPECT_EQ(watched.read(), 75);
    EXPECT_FALSE(watched.store.ReadFailed()) << "nothing is stored";
  });
  EXPECT_EQ(watched.store.ReadValue(kUser, "k", "a").TypeCode(), 0);
  EXPECT_TRUE(watched.store.ReadFailed());
  EXPECT_EQ(watched.read(), 75);
  EXPECT_FALSE(watched.store.ReadFailed());
}

TEST(SqliteStore, ReportsAFailedReadOnceThoughItsHandlerReadsToo) {
  const TemporaryFolder folder;
  WatchedStore watched(folder / "a.store");
  std::filesystem::create_directory(folder / "a.store");
  const Connection connection =
      watched.store.Unavailable.Connect([&](const RuntimeError&) { EXPECT_EQ(watched.read(), 75); });
  EXPECT_EQ(watched.read(), 75);
  EXPECT_TRUE(watched.store.ReadFailed());
  EXPECT_EQ(watched.reports.size(), 1u);
}

TEST(SqliteStore, EndsARunOfFailedWritesByADeletionThatDeletes) {
  const TemporaryFolder folder;
  const std::filesystem::path place = folder / "sub", away = folder / "away";
  WatchedStore watched(place / "a.store");
  watched.write(40);
  const auto block = [&] {
    std::filesystem::rename(place, away);
    std::ofstream(place) << "x";
  };
  const auto clear = [&] {
    std::filesystem::remove(place);
    std::filesystem::rename(away, place);
  };
  block();
  EXPECT_EQ(watched.tryWrite(41), err::kPathFileAccess);
  clear();
  watched.store.DeleteValue(kUser, "\\JPEG", "none");
  block();
  EXPECT_EQ(watched.tryWrite(42), 0) << "nothing was deleted, so the run goes on";
  clear();
  watched.store.DeleteValue(kUser, "\\JPEG", "Quality");
  EXPECT_EQ(watched.read(), 75);
  block();
  EXPECT_EQ(watched.tryWrite(43), err::kPathFileAccess) << "a new run";
}

TEST(SqliteStore, RaisesForAWriteThatItsCallerAbandonsOncePerRun) {
  const TemporaryFolder folder;
  WatchedStore watched(folder / "a.store");
  const auto abandon = [&] { watched.store.AbandonWrite(RuntimeError(err::kDeviceIO, "Given up.")); };
  EXPECT_EQ(raisedBy(abandon), err::kDeviceIO);
  EXPECT_EQ(raisedBy(abandon), 0);
  watched.write(40);
  EXPECT_EQ(raisedBy(abandon), err::kDeviceIO) << "a new run";
}

/// A store that can write all values but those with the name "bad".
struct PartlyWritableStore : WatchedStore {
  explicit PartlyWritableStore(const std::filesystem::path& place) : WatchedStore(place), file(place) {
    for (const char* name : {"a", "b"}) write(name, 1);
    tamper(file,
           "CREATE TRIGGER Refusal BEFORE INSERT ON StoreValue WHEN NEW.name = 'bad' "
           "BEGIN SELECT RAISE(ABORT, 'refused'); END");
  }
  void repair() { tamper(file, "DROP TRIGGER Refusal"); }
  void write(const char* name, std::int32_t value) {
    store.WriteValue(kUser, "k", name, value, kStoreNumber);
  }
  /// Stores the values and a bad one together. Returns the error of the first failing call.
  std::int32_t saveAll() {
    return raisedBy([&] {
      StoreBatch batch(store);
      store.DeleteValue(kUser, "k", "a");
      write("b", 10);
      write("bad", 10);
      write("a", 10);
      batch.Commit();
    });
  }
  std::filesystem::path file;
};

TEST(SqliteStore, StoresNothingOfABatchThatFailsAndReportsItOncePerRun) {
  const TemporaryFolder folder;
  PartlyWritableStore watched(folder / "a.store");
  const auto values = [&] {
    return std::pair{watched.store.ReadValue(kUser, "k", "a").ToInt32(),
                     watched.store.ReadValue(kUser, "k", "b").ToInt32()};
  };
  EXPECT_EQ(watched.saveAll(), err::kDeviceIO);
  EXPECT_EQ(values(), std::pair(1, 1));
  EXPECT_EQ(watched.saveAll(), 0) << "the run was reported";
  EXPECT_EQ(values(), std::pair(1, 1));
  {
    StoreBatch batch(watched.store);
    watched.store.DeleteValue(kUser, "k", "none");
    batch.Commit();
  }
  EXPECT_EQ(watched.saveAll(), 0) << "a batch without effect does not end the run";
  watched.repair();
  EXPECT_EQ(watched.saveAll(), 0);
  EXPECT_EQ(values(), std::pair(10, 10));
  EXPECT_EQ(watched.store.ReadValue(kUser, "k", "bad").ToInt32(), 10);
}

TEST(SqliteStore, EndsARunOfFailedWritesByABatchOnlyAtItsCommit) {
  const TemporaryFolder folder;
  PartlyWritableStore watched(folder / "a.store");
  const auto writeBad = [&] { watched.write("bad", 1); };
  EXPECT_EQ(raisedBy(writeBad), err::kDeviceIO);
  {
    const StoreBatch batch(watched.store);
    watched.write("a", 2);
  }
  EXPECT_EQ(raisedBy(writeBad), 0) << "the batch was dropped";
  StoreBatch batch(watched.store);
  watched.write("a", 2);
  batch.Commit();
  EXPECT_EQ(raisedBy(writeBad), err::kDeviceIO) << "a new run";
}

TEST(SqliteStore, ShowsOtherConnectionsABatchAfterItsCommit) {
  const TemporaryFolder folder;
  WatchedStore first(folder / "a.store"), second(folder / "a.store");
  first.write(40);
  StoreBatch batch(first.store);
  first.write(41);
  EXPECT_EQ(first.read(), 41);
  EXPECT_EQ(second.read(), 40);
  batch.Commit();
  EXPECT_EQ(second.read(), 41);
}

TEST(SqliteStore, CreatesNoFileByABatchWithoutWrites) {
  const TemporaryFolder folder;
  WatchedStore watched(folder / "a.store");
  StoreBatch batch(watched.store);
  watched.store.DeleteValue(kUser, "k", "a");
  EXPECT_EQ(watched.read(), 75);
  batch.Commit();
  EXPECT_TRUE(folder.isEmpty());
}

TEST(SqliteStore, RaisesForAFailedWriteAfterAFailedRead) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "a.store");
  WatchedStore watched(folder / "a.store");
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.tryWrite(40), err::kPathFileAccess);
}

TEST(SqliteStore, RaisesForAFailedSaveAfterAFailedKey) {
  BlockedPlace place;
  const auto create = [&] { place.watched.store.CreateKey(kUser, "Root\\RecentFiles"); };
  EXPECT_EQ(raisedBy(create), err::kPathFileAccess);
  EXPECT_EQ(raisedBy(create), err::kPathFileAccess);
  EXPECT_EQ(place.watched.tryWrite(40), err::kPathFileAccess) << "a caller may do without the key";
}

TEST(SqliteStore, IsReopenedIfItsFileWasDeletedOrReplaced) {
  const TemporaryFolder folder;
  WatchedStore watched(folder / "a.store");
  watched.write(40);
  for (const auto& entry : std::filesystem::directory_iterator(folder / "")) {
    std::filesystem::remove(entry.path());
  }
  EXPECT_EQ(watched.read(), 75);
  watched.write(41);
  EXPECT_EQ(WatchedStore(folder / "a.store").read(), 41);
  EXPECT_TRUE(watched.reports.empty());
}

TEST(SqliteStore, WithAnUnknownSchemaGivesDefaultsAndOneReport) {
  const TemporaryFolder folder;
  tamper(folder / "a.store", "CREATE TABLE StoreValue (something TEXT)");
  WatchedStore watched(folder / "a.store");
  EXPECT_EQ(watched.read(), 75);
  EXPECT_EQ(watched.reports.size(), 1u);
}

class StorePath : public testing::Test {
 protected:
  StorePath() {
    for (const char* name : kVariables) {
      const char* value = getenv(name);
      saved_.push_back(value == nullptr ? std::nullopt : std::optional<std::string>(value));
      unsetenv(name);
    }
  }
  ~StorePath() override {
    for (std::size_t i = 0; i < saved_.size(); ++i) {
      if (saved_[i]) setenv(kVariables[i], saved_[i]->c_str(), 1);
    }
  }
  static constexpr const char* kVariables[] = {"KESTREL_STORE", "XDG_CONFIG_HOME", "HOME"};
  std::vector<std::optional<std::string>> saved_;
};

TEST_F(StorePath, IsBelowTheConfigurationDirectory) {
  setenv("HOME", "/home/ann", 1);
  EXPECT_EQ(sqlite::storePath(), "/home/ann/.config/brindlewick/imaging.store");
  setenv("XDG_CONFIG_HOME", "/cfg", 1);
  EXPECT_EQ(sqlite::storePath(), "/cfg/brindlewick/imaging.store");
  setenv("XDG_CONFIG_HOME", "relative", 1);
  EXPECT_EQ(sqlite::storePath(), "/home/ann/.config/brindlewick/imaging.store");
}

TEST_F(StorePath, IsTakenFromTheEnvironment) {
  setenv("HOME", "/home/ann", 1);
  setenv("KESTREL_STORE", "/media/stick/my.store", 1);
  EXPECT_EQ(sqlite::storePath(), "/media/stick/my.store");
}

TEST_F(StorePath, OfAProgramWithSettingsOfItsOwnHasItsName) {
  setenv("HOME", "/home/ann", 1);
  EXPECT_EQ(sqlite::storePath("viewer"), "/home/ann/.config/brindlewick/imaging-viewer.store");
  EXPECT_EQ(sqlite::recoveryPath("viewer"), "/home/ann/.config/brindlewick/imaging-viewer.store.recovery");
  setenv("KESTREL_STORE", "/media/stick/my", 1);
  EXPECT_EQ(sqlite::storePath("org.example.Viewer"), "/media/stick/my-org.example.Viewer");
}

TEST_F(StorePath, IsEmptyForAUserWithoutAHome) {
  EXPECT_EQ(sqlite::storePath(), "");
  EXPECT_EQ(sqlite::storePath("viewer"), "");
}

}  // namespace
}  // namespace kestrel
