#include "platform/os/FolderWatch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Folder.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Kind = FolderChange::Kind;

/// No test depends on how fast the machine is: it waits for what must come, and at most this long.
constexpr auto kLongestWait = std::chrono::seconds(60);

/// What a watch reported so far.
class Reports {
 public:
  FolderWatch::Changed receiver() {
    return [this](FolderChanges changes) {
      const std::lock_guard lock(mutex_);
      for (FolderChange& change : changes.changes) changes_.push_back(std::move(change));
      overflow_ = overflow_ || changes.overflow;
      folderGone_ = folderGone_ || changes.folderGone;
      arrived_.notify_all();
    };
  }

  bool waitFor(Kind kind, const fs::path& name, const fs::path& oldName = {}) {
    return wait([&] {
      return std::ranges::any_of(changes_, [&](const FolderChange& change) {
        return change.kind == kind && change.name == name && change.oldName == oldName;
      });
    });
  }
  bool waitForFolderGone() {
    return wait([&] { return folderGone_; });
  }
  bool waitForOverflow() {
    return wait([&] { return overflow_; });
  }

  /// Changes of a name so far.
  std::ptrdiff_t count(const fs::path& name) {
    const std::lock_guard lock(mutex_);
    return std::ranges::count(changes_, name, &FolderChange::name);
  }

 private:
  bool wait(const std::function<bool()>& condition) {
    std::unique_lock lock(mutex_);
    return arrived_.wait_for(lock, kLongestWait, condition);
  }

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::vector<FolderChange> changes_;
  bool overflow_ = false;
  bool folderGone_ = false;
};

class FolderWatchTest : public testing::Test {
 protected:
  Folder folder_;
  Reports reports_;
};

TEST_F(FolderWatchTest, IsAvailableInALocalFolder) {
  const FolderWatch watch(folder_.path(), reports_.receiver());
  EXPECT_TRUE(watch.available());
}

TEST_F(FolderWatchTest, IsNotAvailableWithoutAFolder) {
  folder_.put("file", "x");
  EXPECT_FALSE(FolderWatch(folder_ / "missing", reports_.receiver()).available());
  EXPECT_FALSE(FolderWatch(folder_ / "file", reports_.receiver()).available());
}

TEST_F(FolderWatchTest, ReportsNewFilesFoldersAndLinks) {
  const FolderWatch watch(folder_.path(), reports_.receiver());
  folder_.put("file", "x");
  fs::create_directory(folder_ / "folder");
  fs::create_symlink("nowhere", folder_ / "link");
  fs::create_hard_link(folder_ / "file", folder_ / "same");
  for (const char* name : {"file", "folder", "link", "same"})
    EXPECT_TRUE(reports_.waitFor(Kind::kChanged, name)) << name;
}

TEST_F(FolderWatchTest, KeepsTheBytesOfNames) {
  const FolderWatch watch(folder_.path(), reports_.receiver());
  for (const std::string& name :
       {std::string(255, 'n'), std::string("caf\xE9\xFF"), std::string("two\nlines")}) {
    folder_.put(name, "x");
    EXPECT_TRUE(reports_.waitFor(Kind::kChanged, name)) << name;
  }
}

TEST_F(FolderWatchTest, ReportsAChangedFile) {
  folder_.put("file", "x");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  folder_.put("file", "changed");
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "file"));
}

TEST_F(FolderWatchTest, ReportsChangedTimesAndPermissions) {
  folder_.put("time", "x");
  folder_.put("permissions", "x");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  fs::last_write_time(folder_ / "time", fs::file_time_type::clock::now() - std::chrono::hours(1));
  ASSERT_EQ(chmod((folder_ / "permissions").c_str(), 0400), 0);
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "time"));
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "permissions"));
}

TEST_F(FolderWatchTest, ReportsRemovedAndMovedAwayFiles) {
  const Folder other;
  folder_.put("removed", "x");
  folder_.put("moved", "x");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  fs::remove(folder_ / "removed");
  fs::rename(folder_ / "moved", other / "moved");
  EXPECT_TRUE(reports_.waitFor(Kind::kGone, "removed"));
  EXPECT_TRUE(reports_.waitFor(Kind::kGone, "moved"));
}

TEST_F(FolderWatchTest, ReportsAFileThatIsMovedIn) {
  const Folder other;
  other.put("moved", "x");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  fs::rename(other / "moved", folder_ / "moved");
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "moved"));
}

TEST_F(FolderWatchTest, ReportsARenamingWithBothNames) {
  folder_.put("old", "x");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  fs::rename(folder_ / "old", folder_ / "new");
  EXPECT_TRUE(reports_.waitFor(Kind::kRenamed, "new", "old"));
  EXPECT_EQ(reports_.count("old"), 0);
}

TEST_F(FolderWatchTest, ReportsAFileThatIsWrittenUnderATemporaryNameAsOne) {
  const FolderWatch watch(folder_.path(), reports_.receiver());
  std::ofstream file(folder_ / "a.part");
  file << "content" << std::flush;
  fs::rename(folder_ / "a.part", folder_ / "a.jpg");
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "a.jpg"));
}

TEST_F(FolderWatchTest, HoldsAFileBackWhileItIsWritten) {
  const FolderWatch watch(folder_.path(), reports_.receiver());
  std::ofstream file(folder_ / "slow");
  for (int i = 0; i < 5; ++i) {
    file << "part" << std::flush;
    // The report of another file shows that all earlier events were handled.
    const std::string other = "other" + std::to_string(i);
    folder_.put(other, "x");
    ASSERT_TRUE(reports_.waitFor(Kind::kChanged, other));
  }
  const std::ptrdiff_t whileWritten = reports_.count("slow");
  file.close();
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "slow"));
  EXPECT_EQ(whileWritten, 0);
}

TEST_F(FolderWatchTest, HoldsAFileBackWhosePermissionsAreSetWhileItIsWritten) {
  const FolderWatch watch(folder_.path(), reports_.receiver());
  std::ofstream file(folder_ / "slow");
  file << "part" << std::flush;
  fs::permissions(folder_ / "slow", fs::perms::owner_read);
  folder_.put("other", "x");
  ASSERT_TRUE(reports_.waitFor(Kind::kChanged, "other"));
  const std::ptrdiff_t whileWritten = reports_.count("slow");
  file.close();
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "slow"));
  EXPECT_EQ(whileWritten, 0);
}

TEST_F(FolderWatchTest, DoesNotReportWhatHappensBelow) {
  fs::create_directory(folder_ / "sub");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  folder_.put("sub/below", "x");
  folder_.put("sibling", "x");
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "sibling"));
  EXPECT_EQ(reports_.count("below"), 0);
  EXPECT_EQ(reports_.count("sub/below"), 0);
}

TEST_F(FolderWatchTest, DoesNotReportReading) {
  folder_.put("file", "x");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  std::ifstream(folder_ / "file").get();
  folder_.put("other", "x");
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "other"));
  EXPECT_EQ(reports_.count("file"), 0);
}

TEST_F(FolderWatchTest, ReportsThatTheFolderWasRemoved) {
  folder_.put("file", "x");
  const FolderWatch watch(folder_.path(), reports_.receiver());
  fs::remove_all(folder_.path());
  EXPECT_TRUE(reports_.waitForFolderGone());
}

TEST_F(FolderWatchTest, ReportsThatTheFolderWasRenamed) {
  fs::create_directory(folder_ / "sub");
  const FolderWatch watch(folder_ / "sub", reports_.receiver());
  fs::rename(folder_ / "sub", folder_ / "renamed");
  EXPECT_TRUE(reports_.waitForFolderGone());
}

TEST_F(FolderWatchTest, ReportsThatAFolderAboveWasRenamed) {
  fs::create_directories(folder_ / "a/b/c");
  const FolderWatch watch(folder_ / "a/b/c", reports_.receiver());
  fs::rename(folder_ / "a", folder_ / "renamed");
  EXPECT_TRUE(reports_.waitForFolderGone());
}

TEST_F(FolderWatchTest, ReportsThatALinkOnTheWayLeadsElsewhere) {
  for (const char* name : {"one/c", "two/c"}) fs::create_directories(folder_ / name);
  fs::create_directory_symlink("one", folder_ / "link");
  const FolderWatch watch(folder_ / "link/c", reports_.receiver());
  fs::create_directory_symlink("two", folder_ / "other");
  fs::rename(folder_ / "other", folder_ / "link");
  EXPECT_TRUE(reports_.waitForFolderGone());
}

TEST_F(FolderWatchTest, ReportsThatAFolderWhichALinkLeadsToWasRenamed) {
  fs::create_directories(folder_ / "elsewhere/album");
  fs::create_directory_symlink("elsewhere/album", folder_ / "link");
  const FolderWatch watch(folder_ / "link", reports_.receiver());
  fs::rename(folder_ / "elsewhere", folder_ / "renamed");
  EXPECT_TRUE(reports_.waitForFolderGone());
}

TEST_F(FolderWatchTest, DoesNotReportWhatHappensInFoldersAbove) {
  fs::create_directories(folder_ / "a/b");
  const FolderWatch watch(folder_ / "a/b", reports_.receiver());
  folder_.put("a/above", "x");
  fs::create_directory(folder_ / "a/sibling");
  fs::remove(folder_ / "a/sibling");
  folder_.put("a/b/inside", "x");
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "inside"));
  EXPECT_EQ(reports_.count("above") + reports_.count("sibling"), 0);
}

/// More events than the queue of the system holds, or more changes than a batch: 40,000 folders while the
/// receiver is busy.
TEST_F(FolderWatchTest, ReportsAnOverflow) {
  std::mutex busy;
  std::unique_lock lock(busy);
  const FolderWatch watch(folder_.path(), [&, receive = reports_.receiver()](FolderChanges changes) {
    const std::lock_guard waiting(busy);
    receive(std::move(changes));
  });
  for (int i = 0; i < 40'000; ++i) ASSERT_EQ(mkdir((folder_ / std::to_string(i)).c_str(), 0700), 0);
  lock.unlock();
  EXPECT_TRUE(reports_.waitForOverflow());
}

TEST_F(FolderWatchTest, ReportsNothingAfterItsEnd) {
  for (int i = 0; i < 50; ++i) {
    auto inReceiver = std::make_shared<int>();
    const std::weak_ptr<int> receiver = inReceiver;
    {
      const FolderWatch watch(folder_.path(), [receive = reports_.receiver(), held = std::move(inReceiver)](
                                                  FolderChanges changes) { receive(std::move(changes)); });
      folder_.put("file" + std::to_string(i), "x");
    }
    EXPECT_TRUE(receiver.expired()) << "nothing can call it";
  }
}

TEST_F(FolderWatchTest, MayEndInItsReport) {
  std::unique_ptr<FolderWatch> watch;
  std::mutex mutex;
  std::condition_variable arrived;
  int reports = 0;
  {
    const std::lock_guard lock(mutex);
    watch = std::make_unique<FolderWatch>(folder_.path(), [&](const FolderChanges&) {
      const std::lock_guard reported(mutex);
      watch.reset();
      ++reports;
      arrived.notify_all();
    });
  }
  folder_.put("file", "x");
  std::unique_lock lock(mutex);
  EXPECT_TRUE(arrived.wait_for(lock, kLongestWait, [&] { return reports == 1; }));
  EXPECT_EQ(watch, nullptr);
}

TEST_F(FolderWatchTest, ReportsToEachOfTwoWatches) {
  Reports others;
  const FolderWatch watch(folder_.path(), reports_.receiver());
  const FolderWatch other(folder_.path(), others.receiver());
  folder_.put("file", "x");
  EXPECT_TRUE(reports_.waitFor(Kind::kChanged, "file"));
  EXPECT_TRUE(others.waitFor(Kind::kChanged, "file"));
}

}  // namespace
}  // namespace kestrel::os
