#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <csignal>
#include <thread>

#include "CacheTest.h"

namespace kestrel::thumbnails {
namespace {

class CacheFaults : public CacheTest {};

/// Limits the size of files while it lives: simulates a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().native());
  return names;
}

TEST_F(CacheFaults, ACacheThatCannotBeWrittenIsNoError) {
  const FileVersion photo = file("photo.jpg");
  write(folder_ / "file", "in the way");
  for (const fs::path& root :
       {folder_.path() / "file/thumbnails", folder_.path() / "file", fs::path("/proc/kestrel/thumbnails"),
        fs::path("/dev/null/thumbnails"), folder_.path() / std::string(300, 'n')}) {
    ThumbnailCache cache(root);
    cache.put(photo, 128, picture(128, 96), {4000, 3000});
    cache.putFailed(photo, "reason");
    EXPECT_EQ(cache.get(photo, 128, StoredDetail::kBitmap).state, State::kMissing) << root;
  }
  EXPECT_EQ(contentOf(folder_ / "file"), "in the way");
}

TEST_F(CacheFaults, AFolderOfTheCacheThatIsAFileIsNoError) {
  const FileVersion photo = file("photo.jpg");
  write(root_ / "normal", "in the way");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  EXPECT_EQ(stateOf(photo), State::kMissing);
  cache_.put(photo, 256, picture(256, 192), {4000, 3000});
  EXPECT_EQ(stateOf(photo, 256), State::kKept);
}

TEST_F(CacheFaults, AFullDiskLeavesTheOldEntryAndNoTemporaryFile) {
  FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  FileVersion changed = photo;
  changed.modified += 1'000'000'000;
  const FileVersion other = file("other.jpg");
  for (const rlim_t bytes : {0UL, 1UL, 100UL}) {
    const FullDisk full(bytes);
    cache_.put(changed, 128, picture(128, 96), {4000, 3000});
    cache_.put(other, 128, picture(128, 96), {4000, 3000});
  }
  EXPECT_EQ(stateOf(photo), State::kKept);
  EXPECT_EQ(stateOf(changed), State::kMissing);
  EXPECT_EQ(stateOf(other), State::kMissing);
  EXPECT_THAT(namesIn(root_ / "normal"), testing::ElementsAre(entryName(uriOf(photo.path)).native()));
  cache_.put(changed, 128, picture(128, 96), {4000, 3000});
  EXPECT_EQ(stateOf(changed), State::kKept);
}

TEST_F(CacheFaults, ACacheThatVanishesIsMadeAgain) {
  const FileVersion photo = file("photo.jpg");
  for (int i = 0; i < 2; ++i) {
    cache_.put(photo, 128, picture(128, 96), {4000, 3000});
    EXPECT_EQ(stateOf(photo), State::kKept);
    fs::remove_all(root_);
    EXPECT_EQ(stateOf(photo), State::kMissing);
  }
}

TEST_F(CacheFaults, TemporaryFilesOfKilledProcessesAreRemoved) {
  const FileVersion photo = file("photo.jpg");
  write(root_ / "normal/.kestrel-123.tmp", "left");
  write(root_ / "normal/of-others.tmp", "kept");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  EXPECT_THAT(namesIn(root_ / "normal"),
              testing::UnorderedElementsAre("of-others.tmp", entryName(uriOf(photo.path)).native()));
}

/// Exit code 0 if each entry that it finds while others write it is whole.
int writeAndReadInTurns(ThumbnailCache& cache, const FileVersion& photo, std::uint8_t first) {
  const engine::Bitmap one = picture(128, 96, 1), two = picture(128, 96, 2);
  for (int i = 0; i < 100; ++i) {
    cache.put(photo, 128, (i + first) % 2 == 0 ? one : two, {4000, 3000});
    const StoredThumbnail found = cache.get(photo, 128, StoredDetail::kBitmap);
    if (found.state != State::kKept) return 1;
    if (!samePixels(found.bitmap, one) && !samePixels(found.bitmap, two)) return 2;
  }
  return 0;
}

TEST_F(CacheFaults, ProcessesThatWriteTheSameEntryFindWholeEntries) {
  const FileVersion photo = file("photo.jpg");
  std::vector<pid_t> children;
  for (std::uint8_t first = 0; first < 3; ++first) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) _exit(writeAndReadInTurns(cache_, photo, first));
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
  }
  EXPECT_THAT(namesIn(root_ / "normal"), testing::SizeIs(1));
}

TEST_F(CacheFaults, AProcessThatIsKilledLeavesWholeEntries) {
  std::vector<FileVersion> photos;
  for (int i = 0; i < 20; ++i) photos.push_back(file(std::to_string(i) + ".jpg"));
  const engine::Bitmap bitmap = picture(128, 96);
  int found = 0;
  for (int delay = 0; delay < 8; ++delay) {
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (;;) {
        for (const FileVersion& photo : photos) {
          cache_.put(photo, 128, bitmap, {4000, 3000});
          if (::write(pipes[1], "x", 1) != 1) _exit(1);
        }
      }
    }
    char written;
    for (int i = 0; i < 1 + 7 * delay; ++i) ASSERT_EQ(::read(pipes[0], &written, 1), 1);
    kill(child, SIGKILL);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    close(pipes[0]);
    close(pipes[1]);
    for (const FileVersion& photo : photos) {
      const StoredThumbnail kept = cache_.get(photo, 128, StoredDetail::kBitmap);
      if (!fs::exists(entryOf(photo, "normal"))) continue;
      ++found;
      EXPECT_EQ(kept.state, State::kKept);
      EXPECT_TRUE(samePixels(kept.bitmap, bitmap));
    }
  }
  EXPECT_GT(found, 0);
}

TEST_F(CacheFaults, ThreadsShareTheCache) {
  constexpr int kThreads = 4, kFiles = 12;
  std::vector<FileVersion> photos;
  for (int i = 0; i < kFiles; ++i) photos.push_back(file(std::to_string(i) + ".jpg"));
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int i = 0; i < 60; ++i) {
        const int number = (i * (thread + 1)) % kFiles;
        const FileVersion& photo = photos[static_cast<std::size_t>(number)];
        const engine::Bitmap bitmap = picture(128, 96, static_cast<std::uint8_t>(number));
        cache_.put(photo, 128, bitmap, {4000, 3000});
        cache_.putFailed(photo, "reason");
        EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, bitmap));
        EXPECT_EQ(stateOf(photo, 256), State::kFailed);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace kestrel::thumbnails
