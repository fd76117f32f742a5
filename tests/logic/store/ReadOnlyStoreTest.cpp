// A store that the user may only read.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "OrdinaryUser.h"
#include "TemporaryFolder.h"
#include "platform/sqlite/SqliteStore.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using kestrel::test::OrdinaryUser;
constexpr std::int32_t kUser = HKEY_CURRENT_USER;

class ReadOnlyStore : public testing::Test {
 protected:
  ReadOnlyStore() {
    lock(false);
    fill(40);
    lock(true);
  }
  ~ReadOnlyStore() override { lock(false); }

  void fill(std::int32_t value) {
    sqlite::SqliteStore(file_).WriteValue(kUser, "Key", "Name", value, kStoreNumber);
  }
  void lock(bool locked) {
    const auto readable = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    const auto searchable = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    fs::permissions(folder_ / "",
                    readable | searchable | (locked ? fs::perms::none : fs::perms::owner_write));
    if (fs::exists(file_)) {
      fs::permissions(file_, readable | (locked ? fs::perms::none : fs::perms::owner_write));
    }
  }

  const TemporaryFolder folder_;
  // The name contains the special characters of a URI.
  const fs::path file_ = folder_ / "100% a?b#c%41.store";
};

TEST_F(ReadOnlyStore, ReturnsItsValuesAndRaisesOnWriting) {
  const OrdinaryUser user;
  sqlite::SqliteStore store(file_);
  std::vector<std::string> reports;
  const Connection connection =
      store.Unavailable.Connect([&](const RuntimeError& error) { reports.push_back(error.Description()); });
  EXPECT_EQ(store.ReadValue(kUser, "Key", "Name").ToInt32(), 40);
  EXPECT_FALSE(store.ReadFailed());
  try {
    store.WriteValue(kUser, "Key", "Name", 41, kStoreNumber);
    ADD_FAILURE() << "it was written";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kPermissionDenied) << error.Description();
  }
  EXPECT_EQ(store.ReadValue(kUser, "Key", "Name").ToInt32(), 40);
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST_F(ReadOnlyStore, SeesLaterWritesOfItsOwner) {
  sqlite::SqliteStore store(file_);
  const auto read = [&] {
    const OrdinaryUser user;
    return store.ReadValue(kUser, "Key", "Name").ToInt32();
  };
  EXPECT_EQ(read(), 40);
  lock(false);
  fill(41);
  lock(true);
  EXPECT_EQ(read(), 41);
}

TEST_F(ReadOnlyStore, IsReadWhileItsOwnerHasItOpen) {
  lock(false);
  sqlite::SqliteStore owners(file_);
  owners.WriteValue(kUser, "Key", "Name", 42, kStoreNumber);
  lock(true);
  const OrdinaryUser user;
  sqlite::SqliteStore store(file_);
  EXPECT_EQ(store.ReadValue(kUser, "Key", "Name").ToInt32(), 42) << "though it is not in the main file yet";
}

}  // namespace
}  // namespace kestrel
