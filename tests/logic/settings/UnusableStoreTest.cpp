#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/posix/LineTable.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/store/StoredPositions.h"
#include "settings/MRU.h"
#include "settings/modProcessing.h"
#include "tests/logic/fakes/FakeForm.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {
namespace {

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

  void useEverything() {
    const auto options = modProcessing::GetOptions();
    EXPECT_EQ(options->JPEGQuality(), 75);
    EXPECT_EQ(options->MaterialBackColor(), -1);
    EXPECT_TRUE(options->ThumbnailAddDropShadow());
    options->JPEGQuality(40);
    EXPECT_EQ(options->JPEGQuality(), 75) << "what is written is lost";

    MRU recent;
    recent.LoadFromRegistry();
    recent.AddFile("/pictures/a.png");
    EXPECT_EQ(recent.Files.Count(), 1);

    fakes::FakeForm form("frmImageEditor", {1, 2, 300, 400});
    modProcessing::WindowPositions().SavePosition(form, "");
    modProcessing::WindowPositions().LoadPosition(form, "");
    EXPECT_EQ(form.place(), (Rectangle{1, 2, 300, 400}));
  }

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
  useEverything();
  ASSERT_EQ(platform_.boxes.boxes.size(), 1u);
  EXPECT_NE(platform_.boxes.boxes[0].text.find(
                "The settings could not be read or written: file is not a database. (57)"),
            std::string::npos);
  EXPECT_EQ(std::filesystem::file_size(folder_ / "a.store"), 8192u) << "the file is left as it was";
}

TEST_F(UnusableStore, GivesDefaultsAndOneReportToTheReportingObject) {
  platform_.factory.present = true;
  useEverything();
  EXPECT_EQ(platform_.factory.reports.size(), 1u);
}

}  // namespace
}  // namespace kestrel
