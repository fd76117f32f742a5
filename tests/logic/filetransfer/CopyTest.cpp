#include <fcntl.h>
#include <sys/resource.h>
#include <sys/xattr.h>

#include <cerrno>
#include <csignal>

#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

using testing::EndsWith;

class Copies : public TransferTest {};

TEST_F(Copies, PutEachFileIntoTheFolderAndLeaveTheOriginals) {
  write(from / "a.png", "first");
  write(from / "b.png", "second");
  const Report report = copy({from / "a.png", from / "b.png"});
  EXPECT_TRUE(report.complete());
  EXPECT_EQ(report.done, 2U);
  EXPECT_EQ(listed(to), "a.png=first b.png=second");
  EXPECT_EQ(listed(from), "a.png=first b.png=second");
}

TEST_F(Copies, KeepTimesAndPermissions) {
  write(from / "a.png", "content");
  const timespec times[] = {{1'000'000'000, 123'456'789}, {1'100'000'000, 987'654'321}};
  for (const mode_t mode : {0400U, 0640U, 0751U}) {
    ASSERT_EQ(utimensat(AT_FDCWD, (from / "a.png").c_str(), times, 0), 0);
    ASSERT_EQ(chmod((from / "a.png").c_str(), mode), 0);
    fs::remove(to / "a.png");
    EXPECT_TRUE(copy({from / "a.png"}).complete());
    struct stat status {};
    ASSERT_EQ(stat((to / "a.png").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, mode);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
    EXPECT_EQ(status.st_mtim.tv_nsec, 987'654'321);
    EXPECT_EQ(status.st_atim.tv_sec, 1'000'000'000);
  }
}

TEST_F(Copies, KeepExtendedAttributesWhereTheFileSystemHasThem) {
  write(from / "a.png", "content");
  const bool supported = setxattr((from / "a.png").c_str(), "user.rating", "five", 4, 0) == 0;
  EXPECT_TRUE(copy({from / "a.png"}).complete());
  char value[8] = {};
  const ssize_t size = getxattr((to / "a.png").c_str(), "user.rating", value, sizeof value);
  EXPECT_EQ(size, supported ? 4 : -1);
  EXPECT_STREQ(value, supported ? "five" : "");
}

TEST_F(Copies, AreWholeForEmptyFilesAndForManyPortions) {
  write(from / "empty", "");
  std::string large(5'000'003, 'x');
  for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<char>(i * 31 + i / 1000);
  write(from / "large", large);
  EXPECT_TRUE(copy({from / "empty", from / "large"}).complete());
  EXPECT_EQ(contentOf(to / "empty"), "");
  EXPECT_TRUE(contentOf(to / "large") == large);
}

TEST_F(Copies, OfALinkAreLinks) {
  write(root / "outside", "secret");
  fs::create_symlink(root / "outside", from / "link");
  fs::create_symlink("nowhere", from / "broken");
  fs::create_directory_symlink(root, from / "up");
  EXPECT_TRUE(copy({from / "link", from / "broken", from / "up"}).complete());
  EXPECT_EQ(listed(to), "broken->nowhere link->" + (root / "outside").string() + " up->" + root.string());
}

TEST_F(Copies, OfLinksKeepTheirTimesAlsoInPlaceOfAFile) {
  fs::create_symlink("nowhere", from / "link");
  const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 987'654'321}};
  ASSERT_EQ(utimensat(AT_FDCWD, (from / "link").c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  for (const bool replaces : {false, true}) {
    fs::remove(to / "link");
    if (replaces) write(to / "link", "old");
    caller.answers.clear();
    if (replaces) caller.answers = {{Choice::kReplace, false}};
    caller.questions.clear();
    EXPECT_TRUE(copy({from / "link"}).complete());
    struct stat status {};
    ASSERT_EQ(lstat((to / "link").c_str(), &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
    EXPECT_EQ(status.st_mtim.tv_nsec, 987'654'321);
  }
}

TEST_F(Copies, IntoTheirOwnFolderGetAFreeNameWithoutAQuestion) {
  write(to / "a.png", "content");
  write(to / "album/b.png", "b");
  fs::create_symlink("nowhere", to / "link");
  EXPECT_TRUE(copy({to / "a.png", to / "album", to / "link"}).complete());
  EXPECT_EQ(listed(to),
            "a (2).png=content a.png=content album/ album (2)/ album (2)/b.png=b album/b.png=b link->nowhere "
            "link (2)->nowhere");
  EXPECT_TRUE(caller.questions.empty());
  EXPECT_TRUE(copy({to / "a.png"}).complete());
  EXPECT_EQ(contentOf(to / "a (3).png"), "content");
}

TEST_F(Copies, IntoTheirOwnFolderThroughALinkGetAFreeNameToo) {
  write(to / "a.png", "content");
  fs::create_directory_symlink(to, root / "also");
  EXPECT_TRUE(copy({root / "also/a.png"}).complete());
  EXPECT_EQ(listed(to), "a (2).png=content a.png=content");
}

TEST_F(Copies, FollowALinkThatTheUserChoseAsTheFolder) {
  write(from / "a.png", "content");
  fs::create_directory_symlink(to, root / "link");
  EXPECT_TRUE(carryOut({Operation::kCopy, {from / "a.png"}, root / "link", {}}, caller).complete());
  EXPECT_EQ(listed(to), "a.png=content");
}

TEST_F(Copies, OfPipesAreRefusedAndNeverWait) {
  ASSERT_EQ(mkfifo((from / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(reasons(copy({from / "pipe"}).failed), "pipe: it is a device or a pipe");
  EXPECT_EQ(listed(to), "");
}

TEST_F(Copies, NameWhatIsMissingAndGoOn) {
  write(from / "b.png", "content");
  const Report report = copy({from / "a.png", from / "b.png"});
  EXPECT_EQ(reasons(report.failed), "a.png: it does not exist");
  EXPECT_EQ(report.done, 1U);
  EXPECT_EQ(listed(to), "b.png=content");
}

TEST_F(Copies, IntoAMissingFolderNameTheFolder) {
  write(from / "a.png", "content");
  fs::remove(to);
  EXPECT_EQ(reasons(copy({from / "a.png"}).failed),
            "a.png: the folder \"" + to.string() + "\" does not exist");
}

TEST_F(Copies, ReportAFolderThatVanishesOnTheWay) {
  write(from / "a.png", "content");
  caller.cancelAt = [&](const Progress& progress) {
    if (progress.current.filename() == "a.png") fs::remove(to);
    return false;
  };
  EXPECT_EQ(reasons(copy({from / "a.png"}).failed),
            "a.png: the folder \"" + to.string() + "\" does not exist");
  EXPECT_EQ(listed(from), "a.png=content");
}

TEST_F(Copies, DistinguishWhatMayNotBeReadFromWhatMayNotBeWritten) {
  write(from / "a.png", "content");
  write(from / "b.png", "content");
  chmod((from / "a.png").c_str(), 0);
  const OrdinaryUser user(root);
  EXPECT_EQ(reasons(copy({from / "a.png"}).failed), "a.png: permission is denied");
  chmod(to.c_str(), 0500);
  EXPECT_EQ(reasons(copy({from / "b.png"}).failed),
            "b.png: permission to write to the folder \"" + to.string() + "\" is denied");
  chmod(to.c_str(), 0700);
  EXPECT_EQ(listed(to), "");
}

TEST_F(Copies, ThatAreTooLargeForTheDiskLeaveNothing) {
  write(from / "a.png", std::string(100'000, 'a'));
  write(from / "b.png", "small");
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit{10'000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  const Report report = copy({from / "a.png", from / "b.png"});
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(reasons(report.failed), "a.png: it is too large for the disk");
  EXPECT_EQ(listed(to), "b.png=small");
}

TEST_F(Copies, ThatAreCanceledLeaveWholeFilesOnly) {
  write(from / "a.png", "first");
  write(from / "b.png", std::string(5'000'000, 'b'));
  write(from / "c.png", "third");
  caller.cancelAt = [](const Progress& progress) { return progress.bytesDone > 2'000'000; };
  const Report report = copy({from / "a.png", from / "b.png", from / "c.png"});
  EXPECT_TRUE(report.canceled);
  EXPECT_FALSE(report.complete());
  EXPECT_EQ(report.done, 1U);
  EXPECT_EQ(reasons(report.left), "b.png; c.png");
  EXPECT_EQ(listed(to), "a.png=first");
}

TEST_F(Copies, ThatAreCanceledAtOnceDoNothing) {
  write(from / "a.png", "first");
  caller.cancelAt = [](const Progress&) { return true; };
  const Report report = copy({from / "a.png"});
  EXPECT_EQ(reasons(report.left), "a.png");
  EXPECT_EQ(listed(to), "");
}

TEST_F(Copies, OfAFileThatChangesMeanwhileFail) {
  write(from / "a.png", std::string(3'000'000, 'a'));
  bool changed = false;
  caller.cancelAt = [&](const Progress& progress) {
    if (progress.bytesDone > 1'000'000 && !std::exchange(changed, true))
      std::ofstream(from / "a.png", std::ios::app) << "more";
    return false;
  };
  EXPECT_EQ(reasons(copy({from / "a.png"}).failed), "a.png: another program changed it meanwhile");
  EXPECT_EQ(listed(to), "");
}

TEST_F(Copies, RemoveWhatAKilledProcessLeftInTheFolder) {
  write(to / ".kestrel-1234.tmp", "half");
  write(from / "a.png", "content");
  EXPECT_TRUE(copy({from / "a.png"}).complete());
  EXPECT_EQ(listed(to), "a.png=content");
}

TEST_F(Copies, TakeNamesOfAnyBytesAndAnyLength) {
  const std::string longest(255, 'n');
  for (const std::string& name :
       {longest, std::string("line\nend"), std::string("\xFF\xFEraw"), std::string("-f")})
    write(from / name, name);
  EXPECT_TRUE(copy({from / longest, from / "line\nend", from / "\xFF\xFEraw", from / "-f"}).complete());
  EXPECT_EQ(listed(to), listed(from));
}

TEST_F(Copies, WithoutMemoryReportWhatWasCopiedBefore) {
  for (const char* name : {"a.png", "b.png", "c.png"}) write(from / name, name);
  caller.cancelAt = [](const Progress& progress) -> bool {
    if (progress.filesDone == 1) throw std::bad_alloc();
    return false;
  };
  const Report report = copy({from / "a.png", from / "b.png", from / "c.png"});
  EXPECT_EQ(report.done, 1U);
  EXPECT_EQ(reasons(report.failed), "b.png: there is not enough memory; c.png: there is not enough memory");
  EXPECT_EQ(listed(to), "a.png=a.png");
}

TEST_F(Copies, ShowFilesAndBytes) {
  write(from / "a.png", std::string(1000, 'a'));
  write(from / "b.png", std::string(3'000'000, 'b'));
  copy({from / "a.png", from / "b.png"});
  const Progress& last = caller.shown.back();
  EXPECT_EQ(last.files, 2U);
  EXPECT_EQ(last.filesDone, 2U);
  EXPECT_EQ(last.bytes, 3'001'000U);
  EXPECT_EQ(last.bytesDone, 3'001'000U);
  EXPECT_EQ(last.current, from / "b.png");
  std::uint64_t before = 0;
  for (const Progress& progress : caller.shown) {
    EXPECT_GE(progress.bytesDone, before);
    EXPECT_LE(progress.bytesDone, progress.bytes);
    before = progress.bytesDone;
  }
}

}  // namespace
}  // namespace kestrel::transfer
