#include "platform/os/FolderScan.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <map>
#include <string>

#include "Folder.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using testing::Each;
using testing::Field;
using testing::IsEmpty;
using testing::Key;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr std::int64_t kNanoseconds = 1'000'000'000;

using Entries = std::map<std::string, FolderEntry>;

/// By their names; fails on a name that is listed twice.
Entries listed(const fs::path& folder, ScanDetail detail) {
  Entries entries;
  const auto failure = scanFolder(folder, detail, [&](FolderEntry&& entry) {
    const std::string name = entry.name.native();
    EXPECT_TRUE(entries.emplace(name, std::move(entry)).second) << name;
    return true;
  });
  EXPECT_FALSE(failure.has_value());
  return entries;
}

class FolderScan : public testing::TestWithParam<ScanDetail> {
 protected:
  Folder folder_;
};

INSTANTIATE_TEST_SUITE_P(Details, FolderScan, testing::Values(ScanDetail::kKind, ScanDetail::kAll));

TEST_P(FolderScan, ListsFilesAndFoldersWithoutThoseBelow) {
  folder_.put("a.jpg", "x");
  fs::create_directories(folder_ / "sub/below");
  const Entries entries = listed(folder_.path(), GetParam());
  EXPECT_THAT(entries, UnorderedElementsAre(Key("a.jpg"), Key("sub")));
  EXPECT_EQ(entries.at("a.jpg").kind, EntryKind::kRegular);
  EXPECT_EQ(entries.at("sub").kind, EntryKind::kFolder);
}

TEST_P(FolderScan, ListsNothingInAnEmptyFolder) {
  EXPECT_THAT(listed(folder_.path(), GetParam()), IsEmpty());
}

TEST_P(FolderScan, TakesTheKindOfALinkFromItsTarget) {
  folder_.put("file", "x");
  fs::create_directory(folder_ / "sub");
  fs::create_symlink("file", folder_ / "to-file");
  fs::create_directory_symlink("sub", folder_ / "to-folder");
  const Entries entries = listed(folder_.path(), GetParam());
  EXPECT_EQ(entries.at("to-file").kind, EntryKind::kRegular);
  EXPECT_TRUE(entries.at("to-file").isLink);
  EXPECT_EQ(entries.at("to-folder").kind, EntryKind::kFolder);
  EXPECT_TRUE(entries.at("to-folder").isLink);
  EXPECT_FALSE(entries.at("file").isLink);
  EXPECT_FALSE(entries.at("sub").isLink);
}

TEST_P(FolderScan, ListsLinksWithoutATargetAsOther) {
  fs::create_symlink("nowhere", folder_ / "broken");
  fs::create_symlink("round-b", folder_ / "round-a");
  fs::create_symlink("round-a", folder_ / "round-b");
  const Entries entries = listed(folder_.path(), GetParam());
  for (const char* name : {"broken", "round-a", "round-b"}) {
    EXPECT_EQ(entries.at(name).kind, EntryKind::kOther) << name;
    EXPECT_TRUE(entries.at(name).isLink) << name;
  }
}

TEST_P(FolderScan, DoesNotWaitForPipesAndSockets) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (folder_ / "socket").native().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  fs::create_symlink("pipe", folder_ / "to-pipe");
  const Entries entries = listed(folder_.path(), GetParam());
  EXPECT_THAT(entries, UnorderedElementsAre(Key("pipe"), Key("socket"), Key("to-pipe")));
  EXPECT_THAT(entries, Each(Pair(testing::_, Field(&FolderEntry::kind, EntryKind::kOther))));
  close(socket);
}

TEST_P(FolderScan, KeepsTheBytesOfNames) {
  const std::string longest(255, 'n');
  const std::string invalid = "caf\xE9\xFF.jpg", lines = "two\nlines\t.jpg", hidden = ".hidden", dots = "...";
  for (const std::string& name : {longest, invalid, lines, hidden, dots}) folder_.put(name, "x");
  EXPECT_THAT(listed(folder_.path(), GetParam()),
              UnorderedElementsAre(Key(longest), Key(invalid), Key(lines), Key(hidden), Key(dots)));
}

TEST_P(FolderScan, EndsWhenTheVisitorSaysSo) {
  for (int i = 0; i < 20; ++i) folder_.put(std::to_string(i), "x");
  int visited = 0;
  const auto failure = scanFolder(folder_.path(), GetParam(), [&](FolderEntry&&) { return ++visited < 5; });
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->problem, FileProblem::kCanceled);
  EXPECT_EQ(visited, 5);
}

TEST_P(FolderScan, ReportsWhyAFolderCannotBeListed) {
  folder_.put("file", "x");
  fs::create_symlink("loop", folder_ / "loop");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const auto problemOf = [&](const fs::path& path) {
    const auto failure = scanFolder(path, GetParam(), [](FolderEntry&&) { return true; });
    return failure ? std::optional(failure->problem) : std::nullopt;
  };
  EXPECT_EQ(problemOf(folder_ / "missing"), FileProblem::kMissing);
  EXPECT_EQ(problemOf(folder_ / "file"), FileProblem::kNotAFolder);
  EXPECT_EQ(problemOf(folder_ / "pipe"), FileProblem::kNotAFolder);
  EXPECT_EQ(problemOf(folder_ / "loop"), FileProblem::kLinkLoop);
  EXPECT_EQ(problemOf(folder_ / std::string(256, 'n')), FileProblem::kNameTooLong);
}

TEST_P(FolderScan, EndsWhenTheFolderIsRemovedMeanwhile) {
  for (int i = 0; i < 20; ++i) folder_.put(std::to_string(i), "x");
  int visited = 0;
  const auto failure = scanFolder(folder_.path(), GetParam(), [&](FolderEntry&&) {
    if (++visited == 1) fs::remove_all(folder_.path());
    return true;
  });
  EXPECT_GE(visited, 1);
  EXPECT_LE(visited, 20);
  EXPECT_TRUE(!failure || failure->problem == FileProblem::kMissing);
}

TEST_P(FolderScan, LeavesNoDescriptorOpen) {
  const auto next = [] {
    const int descriptor = ::open("/", O_RDONLY);
    ::close(descriptor);
    return descriptor;
  };
  const int before = next();
  listed(folder_.path(), GetParam());
  scanFolder(folder_ / "missing", GetParam(), [](FolderEntry&&) { return true; });
  EXPECT_EQ(next(), before);
}

class FolderScanOfAll : public FolderScan {};
INSTANTIATE_TEST_SUITE_P(All, FolderScanOfAll, testing::Values(ScanDetail::kAll));

TEST_P(FolderScanOfAll, HasSizesTimesAndIdentities) {
  folder_.put("file", "12345");
  const timespec time{1'000'000'007, 123'456'789};
  const timespec times[2]{time, time};
  ASSERT_EQ(utimensat(AT_FDCWD, (folder_ / "file").c_str(), times, 0), 0);
  fs::create_symlink("file", folder_ / "link");
  fs::create_hard_link(folder_ / "file", folder_ / "same");
  folder_.put("other", "12345");
  const Entries entries = listed(folder_.path(), GetParam());
  for (const char* name : {"file", "link", "same"}) {
    EXPECT_EQ(entries.at(name).size, 5U) << name;
    EXPECT_EQ(entries.at(name).modified, 1'000'000'007 * kNanoseconds + 123'456'789) << name;
    EXPECT_EQ(entries.at(name).id, entries.at("file").id) << name;
  }
  EXPECT_FALSE(entries.at("other").id == entries.at("file").id);
}

TEST_P(FolderScanOfAll, HasTimesBefore1970) {
  folder_.put("old", "");
  const timespec time{-2, 250'000'000};
  const timespec times[2]{time, time};
  ASSERT_EQ(utimensat(AT_FDCWD, (folder_ / "old").c_str(), times, 0), 0);
  EXPECT_EQ(listed(folder_.path(), GetParam()).at("old").modified, -2 * kNanoseconds + 250'000'000);
}

TEST_P(FolderScanOfAll, ExaminesOnePathAsTheListingDoes) {
  folder_.put("file", "12345");
  fs::create_symlink("file", folder_ / "link");
  const Entries entries = listed(folder_.path(), GetParam());
  for (const auto& [name, expected] : entries) {
    FolderEntry entry;
    ASSERT_FALSE(examineEntry(folder_ / name, entry).has_value());
    EXPECT_EQ(entry.name, expected.name);
    EXPECT_EQ(entry.kind, expected.kind);
    EXPECT_EQ(entry.isLink, expected.isLink);
    EXPECT_EQ(entry.size, expected.size);
    EXPECT_EQ(entry.modified, expected.modified);
    EXPECT_EQ(entry.id, expected.id);
  }
  FolderEntry entry;
  EXPECT_EQ(examineEntry(folder_ / "missing", entry)->problem, FileProblem::kMissing);
}

TEST(ExaminedEntry, HasTheTimeOfItsLastChangeOfPermissionsToo) {
  const Folder folder;
  folder.put("file", "x");
  FolderEntry before, now;
  ASSERT_FALSE(examineEntry(folder / "file", before).has_value());
  // The clock of a file system has coarse steps.
  do {
    ASSERT_EQ(chmod((folder / "file").c_str(), 0600), 0);
    ASSERT_FALSE(examineEntry(folder / "file", now).has_value());
  } while (now.changed == before.changed);
  EXPECT_GT(now.changed, before.changed);
  EXPECT_EQ(now.modified, before.modified);
  EXPECT_EQ(now.id, before.id);
  EXPECT_EQ(listed(folder.path(), ScanDetail::kAll).at("file").changed, now.changed);
}

}  // namespace
}  // namespace kestrel::os
