// The trash by the rules of the trash standard 1.0.

#include "platform/filetransfer/Trash.h"

#include <ctime>
#include <iomanip>
#include <regex>
#include <sstream>

#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

using testing::MatchesRegex;
using testing::StartsWith;

class Trash : public TransferTest {
 protected:
  Report trash(const std::vector<fs::path>& sources) { return run(Operation::kTrash, sources); }

  const fs::path home = root / "home/Trash";
};

TEST_F(Trash, HasTheFileAndWhereItWasAndWhen) {
  write(from / "a.png", "content");
  EXPECT_TRUE(trash({from / "a.png"}).complete());
  EXPECT_FALSE(fs::exists(from / "a.png"));
  EXPECT_EQ(contentOf(home / "files/a.png"), "content");
  const std::string info = contentOf(home / "info/a.png.trashinfo");
  const std::regex form(R"(\[Trash Info\]\nPath=([^\n]*)\nDeletionDate=\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\n)");
  std::smatch match;
  ASSERT_TRUE(std::regex_match(info, match, form)) << info;
  EXPECT_EQ(match[1], (from / "a.png").string()) << "absolute in the home trash";
}

TEST_F(Trash, HasTheLocalTimeOfTheDeletion) {
  const char* const set = getenv("TZ");
  const std::string zone = set == nullptr ? "" : set;
  const auto localNow = [] {
    const std::time_t time = std::time(nullptr);
    std::tm local{};
    localtime_r(&time, &local);
    std::ostringstream text;
    text << std::put_time(&local, "%Y-%m-%dT%H:%M:%S");
    return text.str();
  };
  // Hours from any other, in opposite directions.
  for (const char* other : {"AAA-11:30", "BBB11:30"}) {
    setenv("TZ", other, 1);
    tzset();
    fs::remove_all(home);
    write(from / "a.png", "content");
    const std::string before = localNow();
    EXPECT_TRUE(trash({from / "a.png"}).complete());
    const std::string after = localNow(), info = contentOf(home / "info/a.png.trashinfo");
    const std::string key = "DeletionDate=";
    const std::string date = info.substr(info.find(key) + key.size(), before.size());
    EXPECT_LE(before, date) << other;
    EXPECT_LE(date, after) << other;
  }
  if (set == nullptr) {
    unsetenv("TZ");
  } else {
    setenv("TZ", zone.c_str(), 1);
  }
  tzset();
}

TEST_F(Trash, MayBeALinkToAFolderOfTheUser) {
  fs::create_directories(root / "elsewhere");
  fs::create_directories(home.parent_path());
  fs::create_directory_symlink(root / "elsewhere", home);
  write(from / "a.png", "content");
  EXPECT_TRUE(trash({from / "a.png"}).complete());
  EXPECT_EQ(contentOf(root / "elsewhere/files/a.png"), "content");
}

TEST_F(Trash, IsNotUsedIfItsFoldersBelongToAnotherUser) {
  constexpr uid_t kNobody = 65534;
  fs::create_directories(home / "info");
  fs::create_directory(home / "files");
  if (chown((home / "files").c_str(), kNobody, kNobody) != 0) return;  // only the superuser can
  write(from / "a.png", "content");
  caller.answers = {{Choice::kSkip, false}};
  EXPECT_EQ(reasons(trash({from / "a.png"}).skipped), "a.png: there is no trash on its disk");
  EXPECT_EQ(contentOf(from / "a.png"), "content");
  EXPECT_TRUE(fs::is_empty(home / "files"));
}

TEST_F(Trash, IsMadeWithItsFoldersForTheUserAlone) {
  write(from / "a.png", "content");
  trash({from / "a.png"});
  for (const fs::path& folder : {home.parent_path(), home, home / "files", home / "info"}) {
    struct stat status {};
    ASSERT_EQ(stat(folder.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U) << folder;
  }
}

TEST_F(Trash, EncodesNamesAsInUrls) {
  const std::string name = "50% a\nb \xC3\xA4+(1)~.png";
  write(from / name, "content");
  EXPECT_TRUE(trash({from / name}).complete());
  EXPECT_THAT(contentOf(home / "info" / (name + ".trashinfo")),
              testing::HasSubstr("/from/50%25%20a%0Ab%20%C3%A4%2B(1)~.png\n"));
}

TEST_F(Trash, KeepsFilesOfTheSameNameApart) {
  for (const char* content : {"first", "second", "third"}) {
    write(from / "a.png", content);
    EXPECT_TRUE(trash({from / "a.png"}).complete());
  }
  EXPECT_EQ(listed(home / "files"), "a (2).png=second a (3).png=third a.png=first");
  EXPECT_THAT(contentOf(home / "info/a (3).png.trashinfo"), testing::HasSubstr("/from/a.png\n"));
}

TEST_F(Trash, NeverReplacesAFileWithoutInformation) {
  write(home / "files/a.png", "orphan");
  write(from / "a.png", "content");
  EXPECT_TRUE(trash({from / "a.png"}).complete());
  EXPECT_EQ(listed(home / "files"), "a (2).png=content a.png=orphan");
  EXPECT_FALSE(fs::exists(home / "info/a.png.trashinfo"));
}

TEST_F(Trash, TakesNamesOf255Bytes) {
  const std::string name = std::string(251, 'n') + ".png";
  for (const char* content : {"first", "second"}) {
    write(from / name, content);
    EXPECT_TRUE(trash({from / name}).complete());
  }
  EXPECT_EQ(contentOf(home / "files" / (std::string(241, 'n') + ".png")), "first");
  EXPECT_EQ(contentOf(home / "files" / (std::string(237, 'n') + " (2).png")), "second");
  EXPECT_THAT(contentOf(home / "info" / (std::string(241, 'n') + ".png.trashinfo")),
              testing::HasSubstr("/" + name + "\n"));
}

TEST_F(Trash, TakesALinkAndNotItsTarget) {
  write(root / "outside", "kept");
  fs::create_symlink(root / "outside", from / "link");
  EXPECT_TRUE(trash({from / "link"}).complete());
  EXPECT_EQ(listed(home / "files"), "link->" + (root / "outside").string());
  EXPECT_EQ(contentOf(root / "outside"), "kept");
}

TEST_F(Trash, ResolvesLinksAboveTheFileSoThatItCanBeRestored) {
  write(from / "a.png", "content");
  fs::create_directory_symlink(from, root / "link");
  EXPECT_TRUE(trash({root / "link/a.png"}).complete());
  EXPECT_THAT(contentOf(home / "info/a.png.trashinfo"),
              testing::HasSubstr("Path=" + (from / "a.png").string() + "\n"));
}

TEST_F(Trash, RecordsTheSizeOfFolders) {
  write(from / "an album/a.png", std::string(10'000, 'a'));
  write(from / "b.png", "b");
  EXPECT_TRUE(trash({from / "an album", from / "b.png"}).complete());
  EXPECT_EQ(listed(home / "files"), "an album/ an album/a.png=" + std::string(10'000, 'a') + " b.png=b");
  std::istringstream line(contentOf(home / "directorysizes"));
  std::uint64_t size = 0;
  std::int64_t time = 0;
  std::string name, more;
  line >> size >> time >> name;
  EXPECT_FALSE(line >> more) << "folders only";
  EXPECT_GE(size, 10'000U);
  EXPECT_LT(size, 100'000U);
  struct stat status {};
  ASSERT_EQ(stat((home / "info/an album.trashinfo").c_str(), &status), 0);
  EXPECT_EQ(time, status.st_mtim.tv_sec);
  EXPECT_EQ(name, "an%20album");
}

TEST_F(Trash, StopsReadingAFolderAfterItsMoveWhenCanceled) {
  for (int i = 0; i < 50; ++i) write(from / "album" / std::to_string(i), "content");
  int asked = 0;
  const TrashResult result = moveToTrash(from / "album", home, [&] { return ++asked == 3; });
  EXPECT_TRUE(result.hasTrash && !result.failure);
  EXPECT_EQ(asked, 3) << "once for each entry until then";
  EXPECT_EQ(contentOf(home / "files/album/7"), "content");
  EXPECT_TRUE(fs::exists(home / "info/album.trashinfo"));
  EXPECT_FALSE(fs::exists(home / "directorysizes")) << "no size instead of a wrong one";
}

TEST_F(Trash, AddsToTheRecordedSizes) {
  write(home / "directorysizes", "4096 15803468 Documents");
  fs::create_directory(from / "album");
  EXPECT_TRUE(trash({from / "album"}).complete());
  EXPECT_THAT(contentOf(home / "directorysizes"),
              MatchesRegex("4096 15803468 Documents\n[0-9]+ [0-9]+ album\n"));
}

TEST_F(Trash, LeavesTheFileIfItCannotBeMoved) {
  write(from / "a.png", "content");
  const OrdinaryUser user(root);
  chmod(from.c_str(), 0500);
  EXPECT_EQ(reasons(trash({from / "a.png"}).failed), "a.png: permission is denied");
  EXPECT_EQ(listed(home), "files/ info/") << "no information without its file";
  chmod(from.c_str(), 0700);
}

TEST_F(Trash, ReportsWhatDoesNotExist) {
  EXPECT_EQ(reasons(trash({from / "a.png"}).failed), "a.png: it does not exist");
}

TEST(HomeTrash, IsInTheFolderOfTheUsersData) {
  const auto before = [](const char* name) {
    const char* const value = getenv(name);
    return std::string(value == nullptr ? "" : value);
  };
  const std::string data = before("XDG_DATA_HOME"), home = before("HOME");
  setenv("HOME", "/home/me", 1);
  setenv("XDG_DATA_HOME", "/data/me", 1);
  EXPECT_EQ(homeTrash(), "/data/me/Trash");
  setenv("XDG_DATA_HOME", "relative", 1);
  EXPECT_EQ(homeTrash(), "/home/me/.local/share/Trash");
  unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(homeTrash(), "/home/me/.local/share/Trash");
  setenv("HOME", home.c_str(), 1);
  if (!data.empty()) setenv("XDG_DATA_HOME", data.c_str(), 1);
}

}  // namespace
}  // namespace kestrel::transfer
