// An entry on disk is at every moment the previous or the next one, whole: the process is killed before each
// system call that changes the cache, and each of them fails.

#include <sys/wait.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <vector>

#include "CacheTest.h"
#include "FailingCalls.h"

namespace kestrel::thumbnails {
namespace {

using test::callsSinceStrike;
using test::Fault;
using test::strike;

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
      reached = callsSinceStrike() >= at;
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
    reached = callsSinceStrike() >= at;
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
  EXPECT_GT(callsSinceStrike(), 3);
  EXPECT_EQ(kept(), "after");
}

}  // namespace
}  // namespace kestrel::thumbnails
