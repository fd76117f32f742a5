// An entry on disk is at every moment the previous or the next one, whole: the process is killed before each
// system call that changes the cache, and each of them fails. The linker directs those calls here.

#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "CacheTest.h"

namespace {

enum class Fault { kNone, kKilled, kFails, kWritesLittle };

Fault fault = Fault::kNone;
int faultError = EIO;
int faultAt = 0;  ///< the number of the call that is struck
int calls = 0;    ///< since `strike`

/// Counts a call; true if it shall fail, with errno set.
bool struck() {
  const bool now = ++calls == faultAt;
  if (now && fault == Fault::kKilled) kill(getpid(), SIGKILL);
  if (!now || fault != Fault::kFails) return false;
  errno = faultError;
  return true;
}

void strike(Fault what, int at, int error = EIO) {
  fault = what;
  faultAt = at;
  faultError = error;
  calls = 0;
}

}  // namespace

extern "C" {
ssize_t __real_write(int file, const void* data, std::size_t count);
int __real_flock(int file, int operation);
int __real_linkat(int from, const char* source, int to, const char* target, int flags);
int __real_mkdir(const char* name, mode_t mode);
int __real_rename(const char* source, const char* target);
int __real_unlink(const char* name);

ssize_t __wrap_write(int file, const void* data, std::size_t count) {
  if (struck()) return -1;
  if (fault == Fault::kWritesLittle) {
    if (calls % 3 == 0) {
      errno = EINTR;
      return -1;
    }
    count = std::min<std::size_t>(count, 100);
  }
  return __real_write(file, data, count);
}
int __wrap_flock(int file, int operation) { return struck() ? -1 : __real_flock(file, operation); }
int __wrap_linkat(int from, const char* source, int to, const char* target, int flags) {
  return struck() ? -1 : __real_linkat(from, source, to, target, flags);
}
int __wrap_mkdir(const char* name, mode_t mode) { return struck() ? -1 : __real_mkdir(name, mode); }
int __wrap_rename(const char* source, const char* target) {
  return struck() ? -1 : __real_rename(source, target);
}
int __wrap_unlink(const char* name) { return struck() ? -1 : __real_unlink(name); }
}

namespace kestrel::thumbnails {
namespace {

class InjectedFaults : public CacheTest {
 protected:
  void TearDown() override { strike(Fault::kNone, 0); }

  void putBefore(ThumbnailCache& cache) const { cache.put(before_, 128, picture(128, 96, 1), {4000, 3000}); }
  void putAfter(ThumbnailCache& cache) const { cache.put(after_, 128, picture(120, 128, 2), {3000, 3200}); }

  /// "before", "after", or "" for no entry of either version. A damaged entry fails the test.
  std::string kept() {
    strike(Fault::kNone, 0);
    const StoredThumbnail before = cache_.get(before_, 128, StoredDetail::kBitmap);
    const StoredThumbnail after = cache_.get(after_, 128, StoredDetail::kBitmap);
    EXPECT_EQ(before.state == State::kKept || after.state == State::kKept,
              fs::exists(entryOf(before_, "normal")));
    if (before.state == State::kKept) {
      EXPECT_TRUE(samePixels(before.bitmap, picture(128, 96, 1)));
      return "before";
    }
    if (after.state != State::kKept) return "";
    EXPECT_TRUE(samePixels(after.bitmap, picture(120, 128, 2)));
    return "after";
  }

  std::ptrdiff_t files() const { return std::distance(fs::directory_iterator(root_ / "normal"), {}); }

  FileVersion before_ = file("photo.jpg");
  FileVersion after_{before_.path, before_.modified + 1'000'000'000, before_.size};
};

TEST_F(InjectedFaults, AProcessKilledBeforeAnyCallLeavesAWholeEntry) {
  std::vector<std::string> states;
  bool ended = false;
  for (int at = 1; !ended; ++at) {
    fs::remove_all(root_);
    putBefore(cache_);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ThumbnailCache cache(root_);
      strike(Fault::kKilled, at);
      putAfter(cache);
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ended = WIFEXITED(status);
    if (const std::string state = kept(); states.empty() || states.back() != state) states.push_back(state);
    // The next process removes what the killed one left half written.
    ThumbnailCache next(root_);
    putAfter(next);
    EXPECT_EQ(files(), 1) << at;
  }
  EXPECT_EQ(states, (std::vector<std::string>{"before", "after"}));
}

TEST_F(InjectedFaults, ACallThatFailsLeavesTheOldEntryOrTheNewOneAndNothingElse) {
  for (const int error : {ENOSPC, EIO, EDQUOT, EROFS, EACCES}) {
    bool reached = true, failed = false;
    for (int at = 1; reached; ++at) {
      fs::remove_all(root_);
      putBefore(cache_);
      strike(Fault::kFails, at, error);
      putAfter(cache_);
      reached = calls >= at;
      const std::string state = kept();
      failed = failed || state == "before";
      EXPECT_TRUE(state == "before" || state == "after") << at << " " << error;
      EXPECT_EQ(files(), 1) << at << " " << error;
      putAfter(cache_);
      EXPECT_EQ(kept(), "after") << at << " " << error;
    }
    EXPECT_TRUE(failed) << error;
  }
}

TEST_F(InjectedFaults, ACallThatFailsInAnEmptyCacheLeavesAWholeEntryOrNone) {
  bool reached = true, failed = false;
  for (int at = 1; reached; ++at) {
    fs::remove_all(root_);
    strike(Fault::kFails, at, ENOSPC);
    putAfter(cache_);
    reached = calls >= at;
    const std::string state = kept();
    failed = failed || state.empty();
    EXPECT_TRUE(state.empty() || state == "after") << at;
    putAfter(cache_);
    EXPECT_EQ(kept(), "after") << at;
    EXPECT_EQ(files(), 1) << at;
  }
  EXPECT_TRUE(failed);
}

TEST_F(InjectedFaults, ShortAndInterruptedWritesAreContinued) {
  strike(Fault::kWritesLittle, 0);
  putAfter(cache_);
  EXPECT_GT(calls, 3);
  EXPECT_EQ(kept(), "after");
}

}  // namespace
}  // namespace kestrel::thumbnails
