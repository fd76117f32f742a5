#include <fcntl.h>

#include <algorithm>

#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

class Folders : public TransferTest {
 protected:
  Folders() {
    write(from / "album/a.png", "a");
    write(from / "album/deep/er/b.png", "b");
    fs::create_directory(from / "album/empty");
    fs::create_symlink(root, from / "album/link");
  }
  std::string album() const {
    return "album/ album/a.png=a album/deep/ album/deep/er/ album/deep/er/b.png=b album/empty/ album/link->" +
           root.string();
  }
};

TEST_F(Folders, AreCopiedWithAllTheyContainAndWithoutFollowingLinks) {
  EXPECT_TRUE(copy({from / "album"}).complete());
  EXPECT_EQ(listed(to), album());
  EXPECT_EQ(listed(from), album());
  EXPECT_EQ(caller.shown.back().files, 3U);
  EXPECT_EQ(caller.shown.back().filesDone, 3U);
}

TEST_F(Folders, KeepTheirTimesAndPermissions) {
  chmod((from / "album").c_str(), 0550);
  const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 5}};
  ASSERT_EQ(utimensat(AT_FDCWD, (from / "album").c_str(), times, 0), 0);
  EXPECT_TRUE(copy({from / "album"}).complete());
  struct stat status {};
  ASSERT_EQ(stat((to / "album").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0550U);
  EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
  chmod((from / "album").c_str(), 0750);
  chmod((to / "album").c_str(), 0750);
}

TEST_F(Folders, AreNeverCopiedOrMovedIntoThemselves) {
  for (const fs::path& inside : {from / "album", from / "album/deep/er"}) {
    const Report copied = carryOut({Operation::kCopy, {from / "album"}, inside, {}}, caller);
    EXPECT_EQ(reasons(copied.failed), "album: a folder cannot be copied into itself");
    const Report moved = carryOut({Operation::kMove, {from / "album"}, inside, {}}, caller);
    EXPECT_EQ(reasons(moved.failed), "album: a folder cannot be moved into itself");
  }
  fs::create_directory_symlink(from / "album/deep", root / "back");
  const Report linked = carryOut({Operation::kCopy, {from / "album"}, root / "back", {}}, caller);
  EXPECT_EQ(reasons(linked.failed), "album: a folder cannot be copied into itself");
  EXPECT_EQ(listed(from), album());
}

TEST_F(Folders, MergeWithAFolderOfTheSameNameFileByFile) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    fs::remove_all(to / "album");
    write(to / "album/a.png", "old");
    write(to / "album/own.png", "own");
    fs::create_directories(to / "album/deep/er");
    caller.answers = {{Choice::kMerge, false}, {Choice::kReplace, false}};
    caller.questions.clear();
    EXPECT_TRUE(run(operation, {from / "album"}).complete());
    ASSERT_EQ(caller.questions.size(), 2U);
    EXPECT_EQ(caller.questions[0].kind, Question::Kind::kFolders);
    EXPECT_EQ(caller.questions[0].target.path, to / "album");
    EXPECT_EQ(caller.questions[1].kind, Question::Kind::kClash);
    EXPECT_EQ(contentOf(to / "album/a.png"), "a");
    EXPECT_EQ(contentOf(to / "album/own.png"), "own");
    EXPECT_EQ(contentOf(to / "album/deep/er/b.png"), "b");
  }
  EXPECT_EQ(listed(from), "");
}

TEST_F(Folders, OfTheSameNameAreSkippedOrKeptBothIfTheUserWantsThat) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    fs::remove_all(to);
    write(to / "album/a.png", "old");
    caller.answers = {{Choice::kSkip, false}};
    caller.questions.clear();
    EXPECT_EQ(reasons(run(operation, {from / "album"}).skipped),
              "album: there is another folder with that name");
    EXPECT_EQ(listed(to), "album/ album/a.png=old");
    EXPECT_EQ(listed(from), album());
    caller.answers = {{Choice::kKeepBoth, false}};
    caller.questions.clear();
    EXPECT_TRUE(run(operation, {from / "album"}).complete());
    EXPECT_EQ(contentOf(to / "album/a.png"), "old");
    EXPECT_EQ(contentOf(to / "album (2)/a.png"), "a");
  }
  EXPECT_EQ(listed(from), "");
}

TEST_F(Folders, OfTheSameNameAreDecidedOnOnceForAllAndApartFromFiles) {
  for (const char* name : {"album/a.png", "second/a.png", "third/a.png"}) {
    write(from / name, "new");
    write(to / name, "old");
  }
  caller.answers = {{Choice::kMerge, true}, {Choice::kReplace, true}};
  EXPECT_TRUE(move({from / "album", from / "second", from / "third"}).complete());
  EXPECT_EQ(caller.questions.size(), 2U);
  EXPECT_TRUE(caller.questions.at(0).more);
  for (const char* name : {"album/a.png", "second/a.png", "third/a.png"})
    EXPECT_EQ(contentOf(to / name), "new");
}

TEST_F(Folders, ThatMergeKeepWhatWasSkipped) {
  write(to / "album/a.png", "old");
  caller.answers = {{Choice::kMerge, false}, {Choice::kSkip, false}};
  const Report report = move({from / "album"});
  EXPECT_EQ(reasons(report.skipped), "a.png: there is another file with that name");
  EXPECT_TRUE(report.failed.empty()) << reasons(report.failed);
  EXPECT_EQ(report.done, 0U);
  EXPECT_EQ(listed(from), "album/ album/a.png=a");
}

TEST_F(Folders, CountFilesThatWereSkippedAsDone) {
  for (const char* name : {"two/a.png", "two/b.png"}) {
    write(from / name, "new");
    write(to / name, "old");
  }
  caller.answers = {{Choice::kMerge, false}, {Choice::kSkip, true}};
  copy({from / "two"});
  EXPECT_TRUE(std::ranges::any_of(caller.shown, [](const Progress& progress) {
    return progress.filesDone == 1;
  })) << "between the two";
  EXPECT_EQ(caller.shown.back().filesDone, 2U);
}

TEST_F(Folders, ThatMergeLoseWhatAKilledProcessLeftInThem) {
  write(to / "album/.kestrel-1234.tmp", "half");
  caller.answers = {{Choice::kMerge, false}};
  EXPECT_TRUE(copy({from / "album"}).complete());
  EXPECT_FALSE(fs::exists(to / "album/.kestrel-1234.tmp"));
}

TEST_F(Folders, GoBesideAFileOfTheSameName) {
  write(to / "album", "a file");
  caller.answers = {{Choice::kKeepBoth, false}};
  EXPECT_TRUE(copy({from / "album"}).complete());
  EXPECT_FALSE(caller.questions.at(0).canReplace);
  EXPECT_EQ(contentOf(to / "album"), "a file");
  EXPECT_EQ(contentOf(to / "album (2)/deep/er/b.png"), "b");
}

TEST_F(Folders, MayHaveASeparatorAtTheEndOfTheirNames) {
  for (const char* end : {"/", "//"}) {
    fs::remove_all(to / "album");
    EXPECT_TRUE(copy({(from / "album").string() + end}).complete());
    EXPECT_EQ(listed(to), album());
  }
  fs::remove_all(to / "album");
  EXPECT_TRUE(move({(from / "album").string() + "/"}).complete());
  EXPECT_EQ(listed(to), album());
  EXPECT_EQ(listed(from), "");
  EXPECT_TRUE(run(Operation::kTrash, {(to / "album").string() + "/"}).complete());
  EXPECT_EQ(contentOf(root / "home/Trash/files/album/a.png"), "a");
}

TEST_F(Folders, AreCopiedThemselvesAndNotALinkThatTakesTheirName) {
  write(root / "secret/b.png", "secret");
  caller.cancelAt = [&](const Progress& progress) {
    const fs::path folder = from / "album/deep/er";
    if (progress.current == folder / "b.png" && !fs::is_symlink(folder)) {
      fs::rename(folder, from / "elsewhere");
      fs::create_directory_symlink(root / "secret", folder);
    }
    return false;
  };
  copy({from / "album"});
  EXPECT_TRUE(fs::is_symlink(from / "album/deep/er"));
  EXPECT_EQ(contentOf(to / "album/deep/er/b.png"), "b");
}

TEST_F(Folders, AreFilledThemselvesAndNotALinkThatTakesTheirName) {
  for (const Operation operation : {Operation::kCopy, Operation::kMove}) {
    fs::remove_all(to);
    fs::create_directories(root / "outside");
    write(to / "album/deep/er/own.png", "own");
    caller.answers = {{Choice::kMerge, false}};
    caller.questions.clear();
    caller.whenShown = [&](const Progress& progress) {
      const fs::path folder = to / "album/deep/er";
      if (progress.current.filename() == "b.png" && !fs::is_symlink(folder)) {
        fs::rename(folder, to / "elsewhere");
        fs::create_directory_symlink(root / "outside", folder);
      }
    };
    run(operation, {from / "album"});
    EXPECT_TRUE(fs::is_symlink(to / "album/deep/er"));
    EXPECT_EQ(listed(root / "outside"), "") << "nothing leaves the tree";
    EXPECT_EQ(listed(to / "elsewhere"), "b.png=b own.png=own");
  }
}

TEST_F(Folders, WithAFileThatMayNotBeReadAreCopiedButForThat) {
  chmod((from / "album/a.png").c_str(), 0);
  const OrdinaryUser user(root);
  const Report report = copy({from / "album"});
  EXPECT_EQ(reasons(report.failed), "a.png: permission is denied");
  EXPECT_EQ(report.done, 0U);
  EXPECT_EQ(contentOf(to / "album/deep/er/b.png"), "b");
}

TEST_F(Folders, ThatAreCanceledInTheMiddleAreNamedAsProcessedInPart) {
  caller.cancelAt = [](const Progress& progress) { return progress.filesDone == 1; };
  const Report report = copy({from / "album"});
  EXPECT_EQ(reasons(report.left), "album: only some of its files were processed");
  EXPECT_EQ(listed(from), album());
}

}  // namespace
}  // namespace kestrel::transfer
