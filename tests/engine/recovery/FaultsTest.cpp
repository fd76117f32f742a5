// A journal on disk is at every moment the previous or the next whole state: the process is killed before
// each system call that changes the file, and each of them fails.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <random>
#include <thread>

#include "FailingCalls.h"
#include "RecoveryBench.h"

namespace kestrel::engine {
namespace {

using kestrel::test::callsSinceStrike;
using kestrel::test::Fault;
using kestrel::test::strike;
using kestrel::test::writeUncounted;

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
        reached = callsSinceStrike() >= at;
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
      keepThen(*journal, [&] { writeUncounted(ready[1], "x", 1); });
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
