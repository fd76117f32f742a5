#include "platform/os/SubfolderWatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Folder.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Two folders, one and two, are watched. What happened is reported at once.
class SubfolderWatchTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const fs::path& folder : {one_, two_}) fs::create_directory(folder);
    watch_.watch({one_, two_});
  }

  Folder folder_;
  fs::path one_ = folder_ / "one";
  fs::path two_ = folder_ / "two";
  SubfolderWatch watch_;
};

TEST_F(SubfolderWatchTest, ReportsFoldersWhoseSubfoldersComeGoAndGetOtherNames) {
  EXPECT_THAT(watch_.read(), IsEmpty());
  fs::create_directory(one_ / "a");
  EXPECT_THAT(watch_.read(), ElementsAre(one_));
  fs::rename(one_ / "a", one_ / "b");
  EXPECT_THAT(watch_.read(), ElementsAre(one_));
  fs::rename(one_ / "b", two_ / "b");
  EXPECT_THAT(watch_.read(), ElementsAre(one_, two_));
  fs::remove(two_ / "b");
  EXPECT_THAT(watch_.read(), ElementsAre(two_));
  fs::create_directory_symlink(one_, two_ / "link");
  EXPECT_THAT(watch_.read(), ElementsAre(two_));
}

TEST_F(SubfolderWatchTest, HasTheOldAndTheNewPathsOfRenamedFolders) {
  const auto renamings = [this] {
    std::vector<std::pair<fs::path, fs::path>> pairs;
    for (const auto& [from, to] : watch_.renamings()) pairs.emplace_back(from, to);
    return pairs;
  };
  fs::create_directory(one_ / "a");
  folder_.put("one/file", "x");
  fs::rename(one_ / "a", one_ / "b");
  fs::rename(one_ / "file", one_ / "other");
  fs::rename(one_ / "b", two_ / "c");
  watch_.read();
  EXPECT_THAT(renamings(), ElementsAre(Pair(one_ / "a", one_ / "b"), Pair(one_ / "b", two_ / "c")));
  fs::rename(two_ / "c", folder_ / "out");
  fs::create_directory(one_ / "d");
  fs::rename(folder_ / "out", one_ / "in");
  watch_.read();
  EXPECT_THAT(renamings(), IsEmpty()) << "it left the watched folders";
}

TEST_F(SubfolderWatchTest, DoesNotReportFiles) {
  folder_.put("one/file", "x");
  fs::rename(one_ / "file", one_ / "other");
  fs::remove(one_ / "other");
  EXPECT_THAT(watch_.read(), IsEmpty());
}

TEST_F(SubfolderWatchTest, ReportsAFolderThatVanishesAndThatItWasFoundAgain) {
  fs::remove(one_);
  EXPECT_THAT(watch_.read(), ElementsAre(one_));
  watch_.watch({one_, two_});
  EXPECT_THAT(watch_.read(), IsEmpty());
  fs::create_directory(one_);
  watch_.watch({one_, two_});
  EXPECT_THAT(watch_.read(), ElementsAre(one_)) << "it may have subfolders already";
  fs::create_directory(one_ / "a");
  EXPECT_THAT(watch_.read(), ElementsAre(one_));
}

TEST_F(SubfolderWatchTest, DoesNotFollowAFolderThatGetsAnotherName) {
  fs::rename(one_, folder_ / "three");
  EXPECT_THAT(watch_.read(), ElementsAre(one_));
  fs::create_directory(folder_ / "three" / "a");
  EXPECT_THAT(watch_.read(), IsEmpty());
}

TEST_F(SubfolderWatchTest, ForgetsFoldersThatAreLeftOut) {
  fs::create_directory(one_ / "a");
  watch_.watch({two_});
  fs::create_directory(one_ / "b");
  fs::create_directory(two_ / "b");
  EXPECT_THAT(watch_.read(), ElementsAre(two_));
  watch_.watch({});
  fs::create_directory(two_ / "c");
  EXPECT_THAT(watch_.read(), IsEmpty());
}

TEST_F(SubfolderWatchTest, ReportsAFolderByEachNameThatItIsWatchedUnder) {
  const fs::path link = folder_ / "zlink";
  fs::create_directory_symlink(one_, link);
  watch_.watch({one_, link});
  fs::create_directory(one_ / "a");
  EXPECT_THAT(watch_.read(), ElementsAre(one_, link));
  watch_.watch({link});
  fs::create_directory(one_ / "b");
  EXPECT_THAT(watch_.read(), ElementsAre(link));
}

TEST_F(SubfolderWatchTest, KeepsTheBytesOfNames) {
  const fs::path odd = folder_ / "caf\xE9\xFF two\nlines";
  fs::create_directory(odd);
  watch_.watch({odd, folder_ / "missing"});
  fs::create_directory(odd / "a");
  EXPECT_THAT(watch_.read(), ElementsAre(odd));
}

}  // namespace
}  // namespace kestrel::os
