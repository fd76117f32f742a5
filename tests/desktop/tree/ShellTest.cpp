#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "TreeBench.h"
#include "imaging/contract/Shell.h"
#include "platform/os/Paths.h"
#include "platform/qt/services/QtShell.h"

namespace kestrel::desktop {
namespace {

namespace fs = std::filesystem;

using testing::Contains;
using testing::Not;
using testing::UnorderedElementsAre;

class DesktopShell : public testing::Test {
 protected:
  TreeBench& bench() { return bench_; }
  Shell& shell() { return bench_.platform().Shell(); }
  std::string home(const std::string& name = {}) { return bench_.home(name); }
  std::vector<std::string> names(const std::string& folder) {
    std::vector<std::string> result;
    for (const FolderEntry& entry : shell().Entries(folder)) {
      result.push_back(entry.Name + (entry.IsDirectory ? "/" : ""));
    }
    return result;
  }
  std::int32_t errorOf(const std::string& path) {
    try {
      shell().CreateFolder(path);
      return 0;
    } catch (const RuntimeError& error) {
      EXPECT_NE(error.Description().find(path), std::string::npos) << error.Description();
      return error.Number();
    }
  }

 private:
  TreeBench bench_;
};

TEST_F(DesktopShell, HasTheHomeFolderAsItsFirstDriveAndTheRoot) {
  const std::vector<std::string> drives = shell().LogicalDrives();
  EXPECT_EQ(drives.front(), home() + "/");
  EXPECT_THAT(drives, Contains("/").Times(1));
  EXPECT_EQ(shell().DriveType(home() + "/"), kDriveFixed);
  EXPECT_EQ(shell().DriveType("/"), kDriveFixed);
  EXPECT_EQ(shell().DriveType(home("nowhere/")), kDriveNoRoot);
  EXPECT_EQ(shell().VolumeLabel(home() + "/"), "Home");
  EXPECT_NE(shell().VolumeLabel("/"), "");
  EXPECT_EQ(shell().NetworkPath("/"), "");
}

TEST_F(DesktopShell, ListsTheVolumesOnceForAllThatATreeAsksOfItsDrives) {
  int listings = 0;
  qt::QtShell counted([&] {
    ++listings;
    return std::vector<os::Volume>{{"/", os::VolumeKind::kFixed, "", ""},
                                   {"/media/card", os::VolumeKind::kRemovable, "", ""},
                                   {"/mnt/far", os::VolumeKind::kNetwork, "", R"(\\far\photos)"}};
  });
  const std::vector<std::string> roots = counted.LogicalDrives();
  ASSERT_EQ(roots.size(), 4U) << "and the home folder";
  for (const std::string& root : roots) {
    counted.DriveType(root);
    counted.VolumeLabel(root);
    counted.NetworkPath(root);
    counted.IconIndex(root);
  }
  EXPECT_EQ(counted.DriveType("/media/card/"), kDriveRemovable);
  EXPECT_EQ(counted.NetworkPath("/mnt/far"), R"(\\far\photos)");
  EXPECT_EQ(listings, 1);
  counted.LogicalDrives();
  EXPECT_EQ(listings, 2) << "anew for each tree";
}

TEST_F(DesktopShell, HasNoHomeDriveForAUserWithoutOne) {
  qputenv("HOME", "/nowhere/at/all");
  EXPECT_EQ(shell().LogicalDrives().front(), "/");
}

TEST_F(DesktopShell, NamesTheUsersDesktopAndDocuments) {
  EXPECT_EQ(shell().SpecialFolder(kFolderDesktop), home("Desktop"));
  EXPECT_EQ(shell().SpecialFolder(kFolderPersonal), home("Documents"));
  fs::remove_all(home("Documents"));
  EXPECT_EQ(shell().SpecialFolder(kFolderPersonal), "") << "missing";
}

TEST_F(DesktopShell, AUserFolderThatIsTheHomeItselfIsNone) {
  std::ofstream(home(".config/user-dirs.dirs")) << "XDG_DESKTOP_DIR=\"$HOME/\"\n";
  EXPECT_EQ(shell().SpecialFolder(kFolderDesktop), "");
}

TEST_F(DesktopShell, ListsFilesAndFoldersButNoHiddenFolders) {
  bench().folder("list/shown");
  bench().folder("list/.hidden");
  std::ofstream(home("list/file.png")) << "x";
  fs::create_directory_symlink("shown", home("list/link"));
  fs::create_directory_symlink("endless", home("list/endless"));
  EXPECT_THAT(names(home("list")), UnorderedElementsAre("shown/", "file.png", "link/", "endless"));
  fs::remove_all(home("list/shown"));
  fs::remove(home("list/link"));
  EXPECT_EQ(shell().FirstSubfolder(home("list")), "") << "neither a file nor a hidden folder";
}

TEST_F(DesktopShell, KeepsTheBytesOfNames) {
  const std::string broken = "caf\xE9";
  shell().CreateFolder(home(broken));
  EXPECT_TRUE(fs::is_directory(os::pathOf(home(broken))));
  EXPECT_THAT(names(home()), Contains(broken + "/"));
  shell().CreateFolder(home(broken) + "/in\nside");
  EXPECT_EQ(shell().FirstSubfolder(home(broken)), "in\nside");
}

TEST_F(DesktopShell, SaysWhyAFolderCannotBeCreated) {
  bench().folder("there");
  std::ofstream(home("file")) << "x";
  EXPECT_EQ(errorOf(home("there")), err::kPathFileAccess);
  EXPECT_EQ(errorOf(home("file")), err::kPathFileAccess);
  EXPECT_EQ(errorOf(home("nowhere/new")), err::kPathNotFound);
  EXPECT_EQ(errorOf(home("new")), 0);
}

TEST_F(DesktopShell, HasOneIconForEqualThings) {
  bench().folder("one");
  bench().folder("two");
  const std::int32_t folder = shell().IconIndex(home("one"));
  EXPECT_EQ(shell().IconIndex(home("two")), folder);
  EXPECT_NE(shell().IconIndex(home()), folder);
  EXPECT_NE(shell().IconIndex("/"), folder);
  EXPECT_NE(shell().IconIndex("/"), shell().IconIndex(home()));
  EXPECT_EQ(shell().IconIndex("/"), shell().IconIndex("/"));
}

}  // namespace
}  // namespace kestrel::desktop
