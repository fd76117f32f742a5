#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/posix/LineTable.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/store/StoredPositions.h"
#include "settings/MRU.h"
#include "settings/StoredQuality.h"
#include "settings/modProcessing.h"
#include "tests/logic/fakes/FakeForm.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {
namespace {

/// A store that can't write the values of one name.
class PartialStore : public sqlite::SqliteStore {
 public:
  using SqliteStore::SqliteStore;
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override {
    if (ValueName == fails) throw RuntimeError(err::kDiskFull, "The disk is full.");
    SqliteStore::WriteValue(Hive, Key, ValueName, Value, Kind);
  }
  std::string fails;
};

/// A process whose settings file holds something else.
class UnusableStore : public testing::Test {
 protected:
  UnusableStore() {
    std::ofstream(folder_ / "a.store") << std::string(8192, 'x');
    platform_.store = &store_;
    platform_.positions = &positions_;
    platform_.lines = &lines_;
    modProcessing::Attach(platform_);
    modProcessing::Main();
  }
  ~UnusableStore() override {
    modProcessing::Detach();
    std::filesystem::remove_all(folder_);
  }

  void readEverything() {
    const auto options = modProcessing::GetOptions();
    EXPECT_EQ(options->JPEGQuality(), 75);
    EXPECT_EQ(options->MaterialBackColor(), -1);
    EXPECT_TRUE(options->ThumbnailAddDropShadow());

    MRU recent;
    recent.LoadFromRegistry();
    EXPECT_EQ(recent.Files.Count(), 0);

    fakes::FakeForm form("frmImageEditor", {1, 2, 300, 400});
    modProcessing::WindowPositions().LoadPosition(form, "");
    EXPECT_EQ(form.place(), (Rectangle{1, 2, 300, 400}));
  }

  void writeEverything() {
    const auto options = modProcessing::GetOptions();
    options->JPEGQuality(40);
    EXPECT_EQ(options->JPEGQuality(), 75);
    MRU recent;
    recent.AddFile("/pictures/a.png");
    EXPECT_EQ(recent.Files.Count(), 1);
    fakes::FakeForm form("frmImageEditor", {1, 2, 300, 400});
    modProcessing::WindowPositions().SavePosition(form, "");
  }

  const std::string& box(std::size_t index) { return platform_.boxes.boxes.at(index).text; }

  static std::filesystem::path newFolder() {
    std::string folder = (std::filesystem::temp_directory_path() / "kestrel-store-XXXXXX").string();
    return mkdtemp(folder.data());
  }

  const std::filesystem::path folder_ = newFolder();
  posix::LineTable lines_;
  fakes::FakePlatform platform_;
  fakes::FakeScreens screens_;
  sqlite::SqliteStore store_{folder_ / "a.store"};
  store::StoredPositions positions_{store_, screens_};
};

TEST_F(UnusableStore, GivesDefaultsAndOneBox) {
  readEverything();
  ASSERT_EQ(platform_.boxes.boxes.size(), 1u);
  EXPECT_NE(box(0).find("The settings could not be read or written: file is not a database. (57)"),
            std::string::npos);
  EXPECT_EQ(std::filesystem::file_size(folder_ / "a.store"), 8192u) << "the file is left as it was";
}

TEST_F(UnusableStore, HasNoStoredQuality) {
  EXPECT_THROW(StoredJPEGQuality(), RuntimeError);
  std::filesystem::remove(folder_ / "a.store");
  EXPECT_EQ(StoredJPEGQuality(), 75) << "nothing is stored";
  modProcessing::GetOptions()->JPEGQuality(40);
  EXPECT_EQ(StoredJPEGQuality(), 40);
}

TEST_F(UnusableStore, IsNotWrittenByRecentFilesThatCouldNotBeLoaded) {
  std::filesystem::remove(folder_ / "a.store");
  const std::string key = "Root\\RecentFiles";
  for (int i = 1; i <= 3; ++i) {
    const std::string name = "/pictures/" + std::to_string(i) + ".png";
    platform_.forms.existing.insert(name);
    store_.WriteValue(HKEY_CURRENT_USER, key, "MRU" + std::to_string(i), name, kStoreString);
  }
  MRU recent;
  recent.RootKey = key;
  std::filesystem::rename(folder_ / "a.store", folder_ / "away");
  std::filesystem::create_directory(folder_ / "a.store");
  recent.LoadFromRegistry();
  recent.AddFile("/pictures/new.png");
  ASSERT_EQ(platform_.boxes.boxes.size(), 2u) << "the failed read and the failed save";
  EXPECT_NE(box(1).find("Module: MRU\r\nProcedure: SaveToRegistry\r\n"), std::string::npos);
  EXPECT_NE(box(1).find("The list of recent files could not be stored"), std::string::npos);
  recent.AddFile("/pictures/new.png");
  EXPECT_EQ(platform_.boxes.boxes.size(), 2u) << "once per run of failing writes";
  std::filesystem::remove(folder_ / "a.store");
  std::filesystem::rename(folder_ / "away", folder_ / "a.store");
  recent.AddFile("/pictures/newer.png");
  std::vector<std::string> stored;
  for (int i = 1; i <= 6; ++i) {
    stored.push_back(store_.ReadValue(HKEY_CURRENT_USER, key, "MRU" + std::to_string(i)).ToString());
  }
  EXPECT_EQ(stored, (std::vector<std::string>{"/pictures/newer.png", "/pictures/new.png", "/pictures/1.png",
                                              "/pictures/2.png", "/pictures/3.png", ""}));
}

TEST_F(UnusableStore, IsNotWrittenByRecentFilesThoughTheReportOfTheFailedReadReadsIt) {
  std::filesystem::remove(folder_ / "a.store");
  MRU recent;
  recent.PurgeInvalidFiles = false;
  recent.AddFile("/pictures/1.png");
  recent.AddFile("/pictures/2.png");
  modProcessing::GetOptions()->JPEGQuality(40);
  std::filesystem::rename(folder_ / "a.store", folder_ / "away");
  std::filesystem::create_directory(folder_ / "a.store");
  // The store recovers while its failure is reported, as by another program that unlocks it.
  const Connection connection = store_.Unavailable.Connect([&](const RuntimeError&) {
    std::filesystem::remove(folder_ / "a.store");
    std::filesystem::rename(folder_ / "away", folder_ / "a.store");
    store_.ReadValue(HKEY_CURRENT_USER, "Software\\Classes\\Reporter", "Library");
  });
  recent.LoadFromRegistry();
  EXPECT_EQ(recent.Files.Count(), 0);
  recent.AddFile("/pictures/3.png");
  std::vector<std::string> stored;
  for (int i = 1; i <= 4; ++i) {
    stored.push_back(
        store_.ReadValue(HKEY_CURRENT_USER, recent.RootKey, "MRU" + std::to_string(i)).ToString());
  }
  EXPECT_EQ(stored, (std::vector<std::string>{"/pictures/3.png", "/pictures/2.png", "/pictures/1.png", ""}));

  std::filesystem::rename(folder_ / "a.store", folder_ / "away");
  std::filesystem::create_directory(folder_ / "a.store");
  EXPECT_THROW(StoredJPEGQuality(), RuntimeError) << "the quality is not the default 75";
  EXPECT_EQ(StoredJPEGQuality(), 40);
}

TEST_F(UnusableStore, KeepsTheStoredListIfAPartOfTheNewOneCannotBeWritten) {
  std::filesystem::remove(folder_ / "a.store");
  PartialStore store(folder_ / "a.store");
  platform_.store = &store;
  modProcessing::Attach(platform_);
  modProcessing::Main();
  MRU recent;
  recent.PurgeInvalidFiles = false;
  recent.AddFile("/pictures/1.png");
  recent.AddFile("/pictures/2.png");
  store.fails = "MRU2";
  recent.AddFile("/pictures/3.png");
  EXPECT_EQ(recent.Files.Count(), 3) << "the list in memory";
  ASSERT_EQ(platform_.boxes.boxes.size(), 1u);
  EXPECT_NE(box(0).find("Module: MRU\r\nProcedure: SaveToRegistry\r\n"), std::string::npos);
  MRU next;
  next.PurgeInvalidFiles = false;
  next.LoadFromRegistry();
  EXPECT_EQ((std::vector<std::string>{next.Files.begin(), next.Files.end()}),
            (std::vector<std::string>{"/pictures/2.png", "/pictures/1.png"}));
  modProcessing::Detach();
}

TEST_F(UnusableStore, ReportsOnceForARunOfFailedWrites) {
  readEverything();
  writeEverything();
  ASSERT_EQ(platform_.boxes.boxes.size(), 2u);
  EXPECT_NE(box(1).find("Module: Options\r\nProcedure: JPEGQuality\r\n"), std::string::npos);
  writeEverything();
  readEverything();
  EXPECT_EQ(platform_.boxes.boxes.size(), 2u);
  EXPECT_EQ(std::filesystem::file_size(folder_ / "a.store"), 8192u) << "the file is left as it was";
}

TEST_F(UnusableStore, ReportsALostListOfRecentFiles) {
  MRU recent;
  recent.AddFile("/pictures/a.png");
  ASSERT_EQ(platform_.boxes.boxes.size(), 1u);
  EXPECT_NE(box(0).find("Module: MRU\r\nProcedure: SaveToRegistry\r\n"), std::string::npos);
}

TEST_F(UnusableStore, AcceptsWritesOnceItIsUsableAgain) {
  writeEverything();
  std::filesystem::remove(folder_ / "a.store");
  const auto options = modProcessing::GetOptions();
  options->JPEGQuality(40);
  EXPECT_EQ(options->JPEGQuality(), 40);
}

TEST_F(UnusableStore, GivesDefaultsAndOneReportToTheReportingObject) {
  platform_.factory.present = true;
  readEverything();
  EXPECT_EQ(platform_.factory.reports.size(), 1u);
}

}  // namespace
}  // namespace kestrel
