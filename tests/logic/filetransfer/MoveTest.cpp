#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

class Moves : public TransferTest {
 protected:
  static ino_t numberOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_ino;
  }
};

TEST_F(Moves, WithinAFileSystemRenameWithoutACopy) {
  write(from / "a.png", "content");
  const ino_t number = numberOf(from / "a.png");
  const Report report = move({from / "a.png"});
  EXPECT_TRUE(report.complete());
  EXPECT_EQ(report.done, 1U);
  EXPECT_EQ(numberOf(to / "a.png"), number);
  EXPECT_EQ(listed(from), "");
  EXPECT_EQ(caller.shown.back().bytes, 0U) << "no bytes are copied";
}

TEST_F(Moves, RenameLinksPipesAndFoldersToo) {
  fs::create_symlink("nowhere", from / "link");
  ASSERT_EQ(mkfifo((from / "pipe").c_str(), 0600), 0);
  fs::create_directory(from / "folder");
  const ino_t number = numberOf(from / "folder");
  EXPECT_TRUE(move({from / "link", from / "pipe", from / "folder"}).complete());
  EXPECT_TRUE(fs::is_symlink(to / "link"));
  EXPECT_TRUE(fs::is_fifo(to / "pipe"));
  EXPECT_EQ(numberOf(to / "folder"), number);
}

TEST_F(Moves, IntoTheirOwnFolderAreRefusedWithASentence) {
  write(to / "a.png", "content");
  fs::create_directory(to / "folder");
  EXPECT_EQ(reasons(move({to / "a.png", to / "folder"}).failed),
            "a.png: it is already in that folder; folder: it is already in that folder");
  EXPECT_EQ(listed(to), "a.png=content folder/");
}

TEST_F(Moves, OfWhatVanishedAreReported) {
  write(from / "b.png", "content");
  EXPECT_EQ(reasons(move({from / "a.png", from / "b.png"}).failed), "a.png: it does not exist");
  EXPECT_EQ(listed(to), "b.png=content");
}

TEST_F(Moves, WithoutPermissionLeaveTheFile) {
  write(from / "a.png", "content");
  const OrdinaryUser user(root);
  chmod(from.c_str(), 0500);
  EXPECT_EQ(reasons(move({from / "a.png"}).failed), "a.png: permission is denied");
  chmod(from.c_str(), 0700);
  EXPECT_EQ(listed(from), "a.png=content");
}

TEST_F(Moves, ThatAreCanceledNameTheRest) {
  write(from / "a.png", "first");
  write(from / "b.png", "second");
  caller.cancelAt = [](const Progress& progress) { return progress.filesDone == 1; };
  const Report report = move({from / "a.png", from / "b.png"});
  EXPECT_TRUE(report.canceled);
  EXPECT_EQ(report.done, 1U);
  EXPECT_EQ(reasons(report.left), "b.png");
  EXPECT_EQ(listed(from), "b.png=second");
  EXPECT_EQ(listed(to), "a.png=first");
}

}  // namespace
}  // namespace kestrel::transfer
