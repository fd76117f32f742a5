// A journal on disk is at every moment the previous or the next whole state: the process is killed before
// each system call that changes the file, and each of them fails. The linker directs those calls here.

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <random>
#include <thread>

#include "RecoveryBench.h"

namespace {

enum class Fault { kNone, kKilled, kFails, kWritesLittle };

std::atomic<Fault> fault{Fault::kNone};
std::atomic<int> faultError{EIO};
std::atomic<int> faultAt{0};  ///< the number of the call that is struck
std::atomic<int> calls{0};    ///< since `strike`

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
int __real_fsync(int file);
int __real_fdatasync(int file);
int __real_flock(int file, int operation);
int __real_linkat(int from, const char* source, int to, const char* target, int flags);
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
int __wrap_fsync(int file) { return struck() ? -1 : __real_fsync(file); }
int __wrap_fdatasync(int file) { return struck() ? -1 : __real_fdatasync(file); }
int __wrap_flock(int file, int operation) { return struck() ? -1 : __real_flock(file, operation); }
int __wrap_linkat(int from, const char* source, int to, const char* target, int flags) {
  return struck() ? -1 : __real_linkat(from, source, to, target, flags);
}
int __wrap_rename(const char* source, const char* target) {
  return struck() ? -1 : __real_rename(source, target);
}
int __wrap_unlink(const char* name) { return struck() ? -1 : __real_unlink(name); }
}

namespace kestrel::engine {
namespace {

class RecoveryFaults : public RecoveryBench {
 protected:
  void TearDown() override { strike(Fault::kNone, 0); }

  static Bitmap before() { return test::gradient(40, 30); }
  static Bitmap after() { return test::noise(60, 50, false); }

  /// Runs `work` with a journal in a process of its own; returns how that ended.
  int inProcess(const std::function<void(RecoveryJournal&)>& work) const {
    const pid_t child = fork();
    if (child == 0) {
      RecoveryFolder folder = store();
      work(*folder.CreateJournal());
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }

  /// Keeps `before` and then does `work` with faults.
  static void keepThen(RecoveryJournal& journal, const std::function<void()>& work) {
    PictureOfView picture = viewOf(before());
    journal.Keep(picture, "before");
    journal.Finish();
    work();
    journal.Finish();
  }

  /// Checks that what can be recovered is whole; returns its name, empty for nothing.
  std::string recoverable() {
    strike(Fault::kNone, 0);
    RecoveryFolder folder = store();
    const auto kept = folder.Kept();
    EXPECT_LE(kept.size(), 1U);
    if (kept.empty()) return {};
    EXPECT_FALSE(kept[0].Damaged);
    EXPECT_TRUE(samePixels(*folder.Take(kept[0]), kept[0].Filename == "before" ? before() : after()));
    return kept[0].Filename;
  }
  void clear() const { std::filesystem::remove_all(folder_); }
};

TEST_F(RecoveryFaults, AProcessKilledBeforeAnyCallLeavesThePreviousOrTheNextState) {
  bool ended = false;
  std::string states;
  for (int at = 1; !ended; ++at) {
    clear();
    const int status = inProcess([at](RecoveryJournal& journal) {
      PictureOfView picture = viewOf(after());
      keepThen(journal, [&] {
        strike(Fault::kKilled, at);
        journal.Keep(picture, "after");
      });
    });
    ended = WIFEXITED(status);
    const std::string state = recoverable();
    EXPECT_NE(state, "") << at;
    if (!states.ends_with(state)) states += " " + state;
    // The next journal removes what the killed one left half written.
    leave(test::gradient(4, 4), "sweeps");
    EXPECT_EQ(files(), 2U) << at;
  }
  EXPECT_EQ(states, " before after");
}

TEST_F(RecoveryFaults, AProcessKilledWhileItDiscardsLeavesTheWholeStateOrNothing) {
  bool ended = false;
  for (int at = 1; !ended; ++at) {
    clear();
    const int status = inProcess([at](RecoveryJournal& journal) {
      keepThen(journal, [&] {
        strike(Fault::kKilled, at);
        journal.Discard();
      });
    });
    ended = WIFEXITED(status);
    EXPECT_EQ(recoverable(), ended ? "" : "before") << at;
  }
}

TEST_F(RecoveryFaults, ACallThatFailsLeavesThePreviousOrTheNextStateAndASentence) {
  for (const int error : {ENOSPC, EIO, EDQUOT, EROFS}) {
    bool reached = true;
    for (int at = 1; reached; ++at) {
      clear();
      std::string failure;
      {
        RecoveryFolder folder = store();
        const auto journal = folder.CreateJournal();
        PictureOfView picture = viewOf(after());
        keepThen(*journal, [&] {
          strike(Fault::kFails, at, error);
          journal->Keep(picture, "after");
        });
        reached = calls >= at;
        strike(Fault::kNone, 0);
        failure = journal->Failure();
      }
      EXPECT_EQ(recoverable(), failure.empty() ? "after" : "before") << at << " " << error;
      EXPECT_EQ(files(), 1U) << at << " " << error;
      EXPECT_TRUE(reached || failure.empty()) << failure;
    }
  }
}

TEST_F(RecoveryFaults, AFullDiskIsNamedToTheUser) {
  RecoveryFolder folder = store();
  const auto journal = folder.CreateJournal();
  PictureOfView picture = viewOf(after());
  strike(Fault::kFails, 1, ENOSPC);
  journal->Keep(picture, "after");
  journal->Finish();
  EXPECT_THAT(journal->Failure(), testing::EndsWith("cannot be written: the disk is full."));
}

TEST_F(RecoveryFaults, ShortAndInterruptedWritesAreContinued) {
  {
    RecoveryFolder folder = store();
    const auto journal = folder.CreateJournal();
    PictureOfView picture = viewOf(after());
    strike(Fault::kWritesLittle, 0);
    journal->Keep(picture, "after");
    journal->Finish();
    EXPECT_EQ(journal->Failure(), "");
  }
  EXPECT_EQ(recoverable(), "after");
}

TEST_F(RecoveryFaults, AProcessKilledAtManyMomentsLeavesAWholeState) {
  std::mt19937 random(5);
  for (int round = 0; round < 25; ++round) {
    clear();
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
      RecoveryFolder folder = store();
      const auto journal = folder.CreateJournal();
      PictureOfView one = viewOf(before());
      PictureOfView two = viewOf(after());
      keepThen(*journal, [&] { __real_write(ready[1], "x", 1); });
      while (true) {
        journal->Keep(two, "after");
        journal->Finish();
        journal->Keep(one, "before");
        journal->Finish();
      }
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    EXPECT_TRUE(store().Kept().empty()) << "it lives";
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 5000));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
    EXPECT_NE(recoverable(), "") << round;
  }
}

}  // namespace
}  // namespace kestrel::engine
