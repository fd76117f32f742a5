// File systems that can do less, and several of them.

#include <fcntl.h>

#include "FaultCalls.h"
#include "TransferBench.h"
#include "platform/filetransfer/Texts.h"

namespace kestrel::transfer {
namespace {

using test::Faults;
using test::faults;

class OtherSystems : public TransferTest {
 protected:
  OtherSystems() { faults().volumes = {root.string()}; }
  ~OtherSystems() override { faults() = Faults(); }
};

TEST_F(OtherSystems, WithoutNamelessFilesCopyAndReplaceWithNames) {
  faults().namelessFiles = false;
  write(from / "a.png", "new a");
  write(from / "b.png", "new b");
  write(to / "b.png", "old b");
  caller.answers = {{Choice::kReplace, false}};
  EXPECT_TRUE(copy({from / "a.png", from / "b.png"}).complete());
  EXPECT_EQ(listed(to), "a.png=new a b.png=new b");
}

TEST_F(OtherSystems, WhoseNamelessFilesCannotBeNamedCopyWithNames) {
  faults().namelessLinked = false;
  write(from / "a.png", "new a");
  write(from / "b.png", "new b");
  write(to / "b.png", "old b");
  caller.answers = {{Choice::kReplace, false}};
  EXPECT_TRUE(copy({from / "a.png", from / "b.png"}).complete());
  EXPECT_EQ(listed(to), "a.png=new a b.png=new b");
}

TEST_F(OtherSystems, ThatCannotCopyInsideReadAndWrite) {
  for (const int error : {EXDEV, EOPNOTSUPP, ENOSYS, EINVAL}) {
    faults().copiesInside = error;
    fs::remove(to / "a.png");
    write(from / "a.png", std::string(700'000, 'a'));
    EXPECT_TRUE(copy({from / "a.png"}).complete());
    EXPECT_EQ(contentOf(to / "a.png"), contentOf(from / "a.png"));
  }
}

TEST_F(OtherSystems, ThatCannotRenameWithoutReplacingStillNeverReplace) {
  faults().renamesToNew = false;
  for (const bool hardLinks : {true, false}) {
    faults().hardLinks = hardLinks;
    write(from / "a.png", "new a");
    write(from / "b.png", "new b");
    fs::remove(to / "a.png");
    write(to / "b.png", "old b");
    caller.answers = {{Choice::kSkip, false}};
    caller.questions.clear();
    move({from / "a.png", from / "b.png"});
    EXPECT_EQ(caller.questions.size(), 1U);
    EXPECT_EQ(listed(to), "a.png=new a b.png=old b");
    EXPECT_EQ(listed(from), "b.png=new b");
  }
}

TEST_F(OtherSystems, ThatCannotRenameWithoutReplacingMoveFoldersToo) {
  faults().renamesToNew = false;
  write(from / "album/a.png", "a");
  EXPECT_TRUE(move({from / "album"}).complete());
  EXPECT_EQ(listed(to), "album/ album/a.png=a");
  EXPECT_EQ(listed(from), "");
}

TEST_F(OtherSystems, ThatRefuseANameSaySoWithoutASecondCopy) {
  faults().refusedName = "a:b.png";
  faults().namelessFiles = false;
  write(from / "a:b.png", "content");
  EXPECT_EQ(reasons(copy({from / "a:b.png"}).failed), "a:b.png: the disk does not allow its name");
  // The content and its end.
  EXPECT_LE(faults().copies, 2);
  EXPECT_EQ(reasons(move({from / "a:b.png"}).failed), "a:b.png: the disk does not allow its name");
  EXPECT_EQ(listed(to), "");
  EXPECT_EQ(listed(from), "a:b.png=content");
}

TEST_F(OtherSystems, HaveTheHolesOfSparseFiles) {
  constexpr std::uintmax_t kSize = 8'000'000;
  constexpr std::streamoff kMiddle = 4'000'000;
  write(from / "sparse", "begin");
  fs::resize_file(from / "sparse", kSize);
  {
    std::fstream file(from / "sparse", std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(kMiddle);
    file << "middle";
  }
  const auto space = [](const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return static_cast<std::uintmax_t>(status.st_blocks) * 512;
  };
  if (space(from / "sparse") > kSize / 2) return;  // the file system has no holes
  for (const int error : {0, EXDEV}) {
    faults().copiesInside = error;
    fs::remove(to / "sparse");
    EXPECT_TRUE(copy({from / "sparse"}).complete());
    EXPECT_LT(space(to / "sparse"), kSize / 2) << error;
    EXPECT_EQ(fs::file_size(to / "sparse"), kSize) << error;
    EXPECT_TRUE(contentOf(to / "sparse") == contentOf(from / "sparse")) << error;
    EXPECT_EQ(caller.shown.back().bytesDone, kSize) << error;
  }
}

class OtherDisks : public OtherSystems {
 protected:
  OtherDisks() { faults().volumes.push_back(to.string()); }
};

TEST_F(OtherDisks, GetAMovedFileWithItsTimesAndPermissions) {
  write(from / "a.png", "content");
  chmod((from / "a.png").c_str(), 0640);
  const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 987'654'321}};
  ASSERT_EQ(utimensat(AT_FDCWD, (from / "a.png").c_str(), times, 0), 0);
  EXPECT_TRUE(move({from / "a.png"}).complete());
  EXPECT_EQ(listed(from), "");
  struct stat status {};
  ASSERT_EQ(stat((to / "a.png").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
  EXPECT_EQ(status.st_mtim.tv_nsec, 987'654'321);
  EXPECT_EQ(caller.shown.back().bytes, 7U) << "bytes are copied";
}

TEST_F(OtherDisks, AskAboutAClashOnce) {
  write(from / "a.png", "new");
  write(to / "a.png", "old");
  caller.answers = {{Choice::kKeepBoth, false}};
  EXPECT_TRUE(move({from / "a.png"}).complete());
  EXPECT_EQ(caller.questions.size(), 1U);
  EXPECT_EQ(listed(to), "a (2).png=new a.png=old");
  EXPECT_EQ(listed(from), "");
}

TEST_F(OtherDisks, GetMovedFoldersFileByFile) {
  write(from / "album/deep/a.png", "a");
  fs::create_symlink("nowhere", from / "album/link");
  fs::create_directory(from / "album/empty");
  EXPECT_TRUE(move({from / "album"}).complete());
  EXPECT_EQ(listed(to), "album/ album/deep/ album/deep/a.png=a album/empty/ album/link->nowhere");
  EXPECT_EQ(listed(from), "");
}

TEST_F(OtherDisks, GetMovedFoldersAndNotWhatALinkLeadsToThatTakesTheirName) {
  write(from / "album/deep/a.png", "mine");
  write(root / "outside/a.png", "kept");
  caller.cancelAt = [&](const Progress& progress) {
    const fs::path folder = from / "album/deep";
    if (progress.current == folder / "a.png" && !fs::is_symlink(folder)) {
      fs::rename(folder, from / "elsewhere");
      fs::create_directory_symlink(root / "outside", folder);
    }
    return false;
  };
  move({from / "album"});
  EXPECT_EQ(listed(root / "outside"), "a.png=kept");
  EXPECT_EQ(contentOf(to / "album/deep/a.png"), "mine");
}

TEST_F(OtherDisks, GetLinksWithTheirTimes) {
  fs::create_symlink("nowhere", from / "link");
  const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 987'654'321}};
  ASSERT_EQ(utimensat(AT_FDCWD, (from / "link").c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  EXPECT_TRUE(move({from / "link"}).complete());
  struct stat status {};
  ASSERT_EQ(lstat((to / "link").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
  EXPECT_EQ(status.st_mtim.tv_nsec, 987'654'321);
}

TEST_F(OtherDisks, GetNoPipes) {
  ASSERT_EQ(mkfifo((from / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(reasons(move({from / "pipe"}).failed), "pipe: it is a device or a pipe");
  EXPECT_TRUE(fs::is_fifo(from / "pipe"));
}

TEST_F(OtherDisks, LeaveAnOriginalThatChangesAfterTheCopy) {
  write(from / "a.png", "content");
  // The last thing before the original is looked at is the flush of the folder.
  caller.answers = {};
  faults().changeOnFolderFlush = from / "a.png";
  EXPECT_EQ(reasons(move({from / "a.png"}).failed),
            "a.png: it was copied, but the original was kept, since another program changed it meanwhile");
  EXPECT_EQ(contentOf(from / "a.png"), "changed");
  EXPECT_EQ(contentOf(to / "a.png"), "content");
}

TEST_F(OtherDisks, SayThatAnOriginalCannotBeDeleted) {
  write(from / "a.png", "content");
  const OrdinaryUser user(root);
  chmod(from.c_str(), 0500);
  EXPECT_EQ(reasons(move({from / "a.png"}).failed),
            "a.png: it was copied, but the original cannot be deleted: permission is denied");
  chmod(from.c_str(), 0700);
  EXPECT_EQ(listed(from), listed(to));
}

TEST_F(OtherSystems, WhoseHomeIsOnAnotherDiskUseTheTrashOfTheFile) {
  write(from / "a.png", "content");
  fs::create_directory(root / "home");
  faults().volumes.push_back((root / "home").string());
  EXPECT_TRUE(run(Operation::kTrash, {from / "a.png"}).complete());
  const fs::path own = ".Trash-" + std::to_string(geteuid());
  EXPECT_EQ(contentOf(root / own / "files/a.png"), "content");
  EXPECT_FALSE(fs::exists(root / "home/Trash/files"));
}

/// The trash of a volume: "from" is below its top folder.
class VolumeTrash : public OtherSystems {
 protected:
  VolumeTrash() { faults().volumes.push_back(from.string()); }

  Report trash(const std::vector<fs::path>& sources) { return run(Operation::kTrash, sources); }

  const std::string user = std::to_string(geteuid());
  const fs::path shared = from / ".Trash", own = from / (".Trash-" + user);
  const fs::path file = from / "folder/a b.png";
};

TEST_F(VolumeTrash, IsTheUsersOwnAtItsTop) {
  write(file, "content");
  EXPECT_TRUE(trash({file}).complete());
  EXPECT_EQ(contentOf(own / "files/a b.png"), "content");
  EXPECT_THAT(contentOf(own / "info/a b.png.trashinfo"),
              testing::StartsWith("[Trash Info]\nPath=folder/a%20b.png\nDeletionDate="));
  struct stat status {};
  ASSERT_EQ(stat(own.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0700U);
  EXPECT_FALSE(fs::exists(root / "home/Trash/files"));
}

TEST_F(VolumeTrash, IsInTheAdministratorsFolderIfThatIsSticky) {
  write(file, "content");
  fs::create_directory(shared);
  chmod(shared.c_str(), 01777);
  EXPECT_TRUE(trash({file}).complete());
  EXPECT_EQ(contentOf(shared / user / "files/a b.png"), "content");
  EXPECT_THAT(contentOf(shared / user / "info/a b.png.trashinfo"),
              testing::HasSubstr("Path=folder/a%20b.png\n"));
  EXPECT_FALSE(fs::exists(own));
}

TEST_F(VolumeTrash, IsNotInAFolderThatIsNotSticky) {
  write(file, "content");
  fs::create_directory(shared);
  chmod(shared.c_str(), 0777);
  EXPECT_TRUE(trash({file}).complete());
  EXPECT_TRUE(fs::is_empty(shared));
  EXPECT_EQ(contentOf(own / "files/a b.png"), "content");
}

TEST_F(VolumeTrash, IsNotInAFolderThatIsALink) {
  write(file, "content");
  fs::create_directory(from / "elsewhere");
  chmod((from / "elsewhere").c_str(), 01777);
  fs::create_directory_symlink("elsewhere", shared);
  EXPECT_TRUE(trash({file}).complete());
  EXPECT_TRUE(fs::is_empty(from / "elsewhere"));
  EXPECT_EQ(contentOf(own / "files/a b.png"), "content");
}

TEST_F(VolumeTrash, AsksBeforeADeletionForGoodIfThereIsNone) {
  write(file, "content");
  fs::create_directory(from / "elsewhere");
  fs::create_directory_symlink("elsewhere", own);
  caller.answers = {{Choice::kSkip, false}};
  const Report skipped = trash({file});
  EXPECT_EQ(caller.questions.at(0).kind, Question::Kind::kNoTrash);
  EXPECT_EQ(caller.questions.at(0).source.path, file);
  EXPECT_EQ(reasons(skipped.skipped), "a b.png: there is no trash on its disk");
  EXPECT_EQ(contentOf(file), "content");
  EXPECT_TRUE(fs::is_empty(from / "elsewhere"));

  caller.questions.clear();
  caller.answers = {{Choice::kDelete, false}};
  EXPECT_TRUE(trash({file}).complete());
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(VolumeTrash, AsksOnceForAll) {
  fs::create_directory(from / "elsewhere");
  fs::create_directory_symlink("elsewhere", own);
  for (const char* name : {"1", "2", "3"}) write(from / name, name);
  caller.answers = {{Choice::kDelete, true}};
  EXPECT_TRUE(trash({from / "1", from / "2", from / "3"}).complete());
  EXPECT_EQ(caller.questions.size(), 1U);
}

TEST_F(VolumeTrash, OfAFullDiskIsNone) {
  write(from / "before", "content");
  EXPECT_TRUE(trash({from / "before"}).complete());
  write(file, "content");
  faults().kind = Faults::Kind::kFailsFromThereOn;
  faults().error = ENOSPC;
  faults().at = faults().calls + 1;
  caller.answers = {{Choice::kCancel, false}};
  EXPECT_TRUE(trash({file}).canceled);
  EXPECT_EQ(contentOf(file), "content");
}

TEST_F(OtherSystems, WhoseHomeHasNoRoomHaveNoTrash) {
  write(from / "before", "content");
  EXPECT_TRUE(run(Operation::kTrash, {from / "before"}).complete());
  write(from / "a.png", "content");
  faults().kind = Faults::Kind::kFailsFromThereOn;
  faults().error = ENOSPC;
  faults().at = faults().calls + 1;
  caller.answers = {{Choice::kSkip, false}};
  EXPECT_EQ(reasons(run(Operation::kTrash, {from / "a.png"}).skipped),
            "a.png: it does not fit into the trash: the disk is full");
  EXPECT_EQ(
      noTrashQuestionOf(caller.questions.at(0)),
      "The file \"a.png\" does not fit into the trash: the disk is full. Do you want to delete it for good?");
  EXPECT_EQ(listed(from), "a.png=content");
  EXPECT_FALSE(fs::exists(root / (".Trash-" + std::to_string(geteuid())))) << "the home trash is the one";
}

}  // namespace
}  // namespace kestrel::transfer
