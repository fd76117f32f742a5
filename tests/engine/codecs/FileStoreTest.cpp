#include "engine/codecs/FileStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "OrdinaryUser.h"
#include "TestPictures.h"

namespace kestrel::engine {
namespace {

namespace fs = std::filesystem;
using kestrel::test::OrdinaryUser;
using test::errorOf;

/// Limits the size of files while it lives: simulates a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

class FileStoreTest : public testing::Test {
 protected:
  FileStoreTest()
      : folder_(fs::temp_directory_path() / ("kestrel_store_" + std::to_string(std::random_device{}()))) {
    fs::create_directories(folder_);
  }
  ~FileStoreTest() override {
    fs::permissions(folder_, fs::perms::owner_all);
    fs::remove_all(folder_);
  }

  fs::path file(const std::string& name) const { return folder_ / name; }
  void put(const std::string& name, const std::string& content) const {
    std::ofstream(file(name)) << content;
  }
  std::string get(const std::string& name) const {
    std::ifstream stream(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  static std::vector<std::uint8_t> bytes(const std::string& content) {
    return {content.begin(), content.end()};
  }
  std::size_t count() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_;
};

TEST_F(FileStoreTest, WritesANewFileAndLeavesNothingElse) {
  replaceFile(file("a"), bytes("new"));
  EXPECT_EQ(get("a"), "new");
  EXPECT_EQ(count(), 1U);
  EXPECT_TRUE(std::ranges::equal(readFile(file("a")).bytes(), bytes("new")));
}

TEST_F(FileStoreTest, ANewFileHasThePermissionsOfTheUsersMask) {
  const mode_t before = umask(027);
  replaceFile(file("a"), bytes("new"));
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(file("a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(FileStoreTest, AnExistingFileKeepsItsPermissions) {
  put("a", "old");
  fs::permissions(file("a"), fs::perms{0604});
  replaceFile(file("a"), bytes("new"));
  EXPECT_EQ(get("a"), "new");
  EXPECT_EQ(fs::status(file("a")).permissions(), fs::perms{0604});
  EXPECT_EQ(count(), 1U);
}

TEST_F(FileStoreTest, ASymbolicLinkIsKeptAndItsTargetReplaced) {
  fs::create_directory(file("elsewhere"));
  put("elsewhere/target", "old");
  fs::create_symlink("elsewhere/target", file("link"));
  fs::create_symlink("link", file("link to link"));
  replaceFile(file("link to link"), bytes("new"));
  EXPECT_TRUE(fs::is_symlink(file("link to link")));
  EXPECT_TRUE(fs::is_symlink(file("link")));
  EXPECT_EQ(get("elsewhere/target"), "new");
}

TEST_F(FileStoreTest, ADanglingLinkGetsATarget) {
  fs::create_symlink("target", file("link"));
  replaceFile(file("link"), bytes("new"));
  EXPECT_TRUE(fs::is_symlink(file("link")));
  EXPECT_EQ(get("target"), "new");
}

TEST_F(FileStoreTest, ALoopOfLinksIsAnError) {
  fs::create_symlink("two", file("one"));
  fs::create_symlink("one", file("two"));
  EXPECT_EQ(errorOf([&] { replaceFile(file("one"), bytes("new")); }), 75);
  EXPECT_EQ(errorOf([&] { readFile(file("one")); }), 75);
}

TEST_F(FileStoreTest, AFullDiskLeavesTheOldFileAndNoTemporaryFile) {
  put("a", "old");
  std::int32_t number = 0;
  {
    const FileSizeLimit limit(1000);
    number = errorOf([&] { replaceFile(file("a"), std::vector<std::uint8_t>(5000, 1)); });
  }
  EXPECT_EQ(number, 61);
  EXPECT_EQ(get("a"), "old");
  EXPECT_EQ(count(), 1U);
}

TEST_F(FileStoreTest, AReadOnlyFolderIsPermissionDenied) {
  const OrdinaryUser user(folder_);
  put("a", "old");
  fs::permissions(folder_, fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(errorOf([&] { replaceFile(file("a"), bytes("new")); }), 70);
  EXPECT_EQ(get("a"), "old");
}

TEST_F(FileStoreTest, AWriteProtectedFileIsPermissionDenied) {
  const OrdinaryUser user(folder_);
  put("a", "old");
  fs::permissions(file("a"), fs::perms::owner_read);
  EXPECT_EQ(errorOf([&] { replaceFile(file("a"), bytes("new")); }), 70);
  EXPECT_EQ(get("a"), "old");
}

TEST_F(FileStoreTest, ANameThatIsTooLongIsAnErrorAndLeavesNothing) {
  EXPECT_EQ(errorOf([&] { replaceFile(file(std::string(300, 'n')), bytes("new")); }), 75);
  EXPECT_EQ(count(), 0U);
}

TEST_F(FileStoreTest, TheLongestNameWorks) {
  replaceFile(file(std::string(255, 'n')), bytes("new"));
  EXPECT_EQ(get(std::string(255, 'n')), "new");
}

TEST_F(FileStoreTest, AMissingFolderIsPathNotFound) {
  EXPECT_EQ(errorOf([&] { replaceFile(file("nowhere/a"), bytes("new")); }), 76);
}

TEST_F(FileStoreTest, FoldersPipesAndDevicesAreNeitherReadNorReplaced) {
  fs::create_directory(file("folder"));
  ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
  for (const char* name : {"folder", "pipe"}) {
    EXPECT_EQ(errorOf([&] { readFile(file(name)); }), 75) << name;
    EXPECT_EQ(errorOf([&] { replaceFile(file(name), bytes("new")); }), 75) << name;
  }
  EXPECT_EQ(errorOf([] { readFile("/dev/null"); }), 75);
  EXPECT_TRUE(fs::is_fifo(file("pipe")));
}

TEST_F(FileStoreTest, AMissingFileIsFileNotFound) {
  std::string reason;
  EXPECT_EQ(errorOf([&] { readFile(file("a")); }, &reason), 53);
  EXPECT_EQ(reason, "The file \"" + file("a").string() + "\" cannot be read: it does not exist.");
}

TEST_F(FileStoreTest, AnUnreadableFileIsPermissionDenied) {
  const OrdinaryUser user(folder_);
  put("a", "secret");
  fs::permissions(file("a"), fs::perms::none);
  EXPECT_EQ(errorOf([&] { readFile(file("a")); }), 70);
}

TEST_F(FileStoreTest, TheNextSaveRemovesTheTemporaryFileOfAKilledProcess) {
  put(".kestrel-123.tmp", "half a picture");
  put("kestrel-123.tmp", "another file");
  replaceFile(file("a"), bytes("new"));
  EXPECT_FALSE(fs::exists(file(".kestrel-123.tmp")));
  EXPECT_TRUE(fs::exists(file("kestrel-123.tmp")));
}

TEST_F(FileStoreTest, TheTemporaryFileOfARunningProcessStays) {
  put(".kestrel-123.tmp", "half a picture");
  const int other = open(file(".kestrel-123.tmp").c_str(), O_WRONLY);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  replaceFile(file("a"), bytes("new"));
  EXPECT_TRUE(fs::exists(file(".kestrel-123.tmp")));
  close(other);
}

TEST_F(FileStoreTest, AKilledSaveLeavesTheOldOrTheNewFileAndNothingElse) {
  const std::string versions[] = {std::string(300'000, 'a'), std::string(300'000, 'b')};
  put("a", versions[0]);
  std::mt19937 random(1);
  for (int round = 0; round < 60; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      for (int i = 0;; ++i) replaceFile(file("a"), bytes(versions[i % 2]));
    }
    usleep(static_cast<useconds_t>(random() % 8000));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::string content = get("a");
    ASSERT_TRUE(content == versions[0] || content == versions[1]) << "in round " << round;
  }
  replaceFile(file("a"), bytes("last"));
  EXPECT_EQ(count(), 1U);
}

TEST_F(FileStoreTest, ASaveThatFailsInTheEncoderLeavesTheOldFile) {
  put("a.gif", "old");
  const Bitmap tooWide = Bitmap::filled(70'000, 1);
  EXPECT_EQ(errorOf([&] { encodeFile(tooWide, {}, format::kGif, {}, file("a.gif")); }), 5);
  EXPECT_EQ(get("a.gif"), "old");
  EXPECT_EQ(count(), 1U);
}

}  // namespace
}  // namespace kestrel::engine
