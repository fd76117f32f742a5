#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

class Deletions : public TransferTest {
 protected:
  Report deleted(const std::vector<fs::path>& sources) { return run(Operation::kDelete, sources); }
};

TEST_F(Deletions, RemoveFilesFoldersAndLinksButNoTargets) {
  write(root / "outside/kept", "kept");
  write(from / "a.png", "a");
  write(from / "album/deep/b.png", "b");
  fs::create_directory_symlink(root / "outside", from / "album/link");
  fs::create_directory_symlink(root / "outside", from / "link");
  const Report report = deleted({from / "a.png", from / "album", from / "link"});
  EXPECT_TRUE(report.complete()) << reasons(report.failed);
  EXPECT_EQ(report.done, 3U);
  EXPECT_EQ(listed(from), "");
  EXPECT_EQ(listed(root / "outside"), "kept=kept");
}

TEST_F(Deletions, RemoveALinkAndNotWhatItLeadsToAlsoWithASeparatorAtTheEnd) {
  write(root / "outside/kept", "kept");
  for (const Operation operation : {Operation::kDelete, Operation::kTrash, Operation::kMove}) {
    for (const char* end : {"/", "//"}) {
      fs::remove(to / "link");
      fs::remove_all(root / "home");
      fs::create_directory_symlink(root / "outside", from / "link");
      const Report report = run(operation, {(from / "link").string() + end});
      EXPECT_TRUE(report.complete()) << reasons(report.failed);
      EXPECT_EQ(report.done, 1U);
      EXPECT_EQ(listed(from), "");
      EXPECT_EQ(listed(root / "outside"), "kept=kept");
    }
  }
  EXPECT_EQ(listed(to), "link->" + (root / "outside").string());
}

TEST_F(Deletions, RefusePathsThatDoNotEndWithAName) {
  write(from / "album/a.png", "a");
  fs::create_directory_symlink(from / "album", from / "link");
  for (const Operation operation :
       {Operation::kDelete, Operation::kTrash, Operation::kMove, Operation::kCopy}) {
    for (const fs::path& path : {fs::path(), fs::path("/"), from / "album/.", from / "link/.",
                                 from / "album/..", from / "album/./"}) {
      const Report report = run(operation, {path});
      ASSERT_EQ(report.failed.size(), 1U) << path;
      EXPECT_EQ(report.failed[0].reason, "it is not the name of a file or folder") << path;
    }
  }
  EXPECT_EQ(contentOf(from / "album/a.png"), "a");
  EXPECT_EQ(listed(to), "");
}

TEST_F(Deletions, NameWhatCannotBeRemovedAndGoOn) {
  write(from / "a.png", "a");
  write(from / "album/locked/b.png", "b");
  write(from / "album/c.png", "c");
  const OrdinaryUser user(root);
  chmod((from / "album/locked").c_str(), 0500);
  const Report report = deleted({from / "missing", from / "album", from / "a.png"});
  EXPECT_EQ(reasons(report.failed), "missing: it does not exist; b.png: permission is denied");
  EXPECT_EQ(report.done, 1U);
  chmod((from / "album/locked").c_str(), 0700);
  EXPECT_EQ(listed(from), "album/ album/locked/ album/locked/b.png=b");
}

TEST_F(Deletions, ThatAreCanceledNameTheRest) {
  write(from / "a.png", "a");
  write(from / "b.png", "b");
  caller.cancelAt = [](const Progress& progress) { return progress.filesDone == 1; };
  const Report report = deleted({from / "a.png", from / "b.png"});
  EXPECT_EQ(reasons(report.left), "b.png");
  EXPECT_EQ(listed(from), "b.png=b");
}

TEST_F(Deletions, OfAFolderThatAreCanceledKeepTheRestOfIt) {
  for (const char* name : {"1", "2", "3"}) write(from / "album" / name, name);
  caller.cancelAt = [](const Progress& progress) { return progress.filesDone == 1; };
  const Report report = deleted({from / "album"});
  EXPECT_EQ(reasons(report.left), "album: only some of its files were processed");
  EXPECT_EQ(std::distance(fs::directory_iterator(from / "album"), fs::directory_iterator()), 2);
}

}  // namespace
}  // namespace kestrel::transfer
