// No file is ever lost: the process is killed before each system call that changes something, and each of
// those calls fails.

#include <signal.h>
#include <sys/wait.h>

#include "FaultCalls.h"
#include "TransferBench.h"

namespace kestrel::transfer {
namespace {

using test::Faults;
using test::faults;

struct Scenario {
  const char* name;
  Operation operation;
  bool otherDisk = false;
  /// What is done about an existing file; kCancel if there is none.
  Choice clash = Choice::kCancel;
  bool isFolder = false;
};

class NothingIsLost : public TransferTest, public testing::WithParamInterface<Scenario> {
 protected:
  NothingIsLost() {
    faults().volumes = {root.string()};
    if (GetParam().otherDisk) faults().volumes.push_back(to.string());
  }
  ~NothingIsLost() override { faults() = Faults(); }

  bool clashes() const { return GetParam().clash != Choice::kCancel; }
  fs::path source() const { return from / (GetParam().isFolder ? "album" : "a.png"); }

  void setUpFiles() {
    faults().kind = Faults::Kind::kNone;
    fs::remove_all(from);
    fs::remove_all(to);
    fs::remove_all(root / "home");
    fs::create_directory(to);
    write(GetParam().isFolder ? from / "album/deep/a.png" : from / "a.png", kNew);
    if (clashes()) write(to / "a.png", kOld);
  }

  Report work(Faults::Kind kind, int at, int error = EIO) {
    faults().kind = kind;
    faults().at = at;
    faults().error = error;
    faults().calls = 0;
    faults().struck.clear();
    caller = {};
    if (clashes()) caller.answers = {{GetParam().clash, false}};
    // A trash that cannot be made is none, which is the user's to decide on.
    if (GetParam().operation == Operation::kTrash) caller.answers = {{Choice::kSkip, false}};
    Report report = run(GetParam().operation, {source()});
    faults().kind = Faults::Kind::kNone;
    return report;
  }

  /// The files below a folder that have that content.
  static int count(const fs::path& folder, const std::string& content) {
    int found = 0;
    if (!fs::exists(folder)) return 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
      found += entry.is_regular_file() && contentOf(entry.path()) == content ? 1 : 0;
    return found;
  }

  /// Each file under a name that a user sees is whole.
  void expectWholeFiles(const std::string& when) {
    for (const fs::path& folder : {from, to}) {
      for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (!entry.is_regular_file() || name.starts_with(".kestrel-")) continue;
        const std::string content = contentOf(entry.path());
        EXPECT_TRUE(content == kNew || content == kOld) << when << ": " << entry.path();
      }
    }
    if (fs::exists(root / "home/Trash/files")) {
      for (const fs::directory_entry& entry : fs::directory_iterator(root / "home/Trash/files")) {
        const fs::path info = root / "home/Trash/info" / (entry.path().filename().string() + ".trashinfo");
        EXPECT_THAT(contentOf(info), testing::StartsWith("[Trash Info]\nPath=/")) << when;
      }
    }
  }

  void expectNothingLost(const std::string& when) {
    expectWholeFiles(when);
    const bool deleted = GetParam().operation == Operation::kDelete;
    if (!deleted) {
      EXPECT_GE(count(root, kNew), 1) << when;
    }
    if (GetParam().operation == Operation::kCopy) {
      EXPECT_EQ(count(from, kNew), 1) << when;
    }
    if (GetParam().clash == Choice::kKeepBoth || GetParam().clash == Choice::kSkip) {
      EXPECT_EQ(contentOf(to / "a.png"), kOld) << when;
    }
    if (GetParam().clash == Choice::kReplace) {
      EXPECT_TRUE(fs::exists(to / "a.png")) << when;
    }
  }

  bool isDone() {
    const int atSource = count(from, kNew), atTarget = count(to, kNew);
    switch (GetParam().operation) {
      case Operation::kCopy:
        return atSource == 1 && atTarget == 1;
      case Operation::kMove:
        return atSource == 0 && atTarget == 1 && !fs::exists(source());
      case Operation::kTrash:
        return atSource == 0 && count(root / "home/Trash/files", kNew) == 1;
      default:
        return !fs::exists(source());
    }
  }

  const std::string kNew = std::string(3500, 'n'), kOld = std::string(2500, 'o');
};

TEST_P(NothingIsLost, ByAProcessThatIsKilledBeforeAnyCall) {
  bool ended = false;
  int at = 0;
  while (!ended) {
    ++at;
    setUpFiles();
    const pid_t child = fork();
    if (child == 0) {
      work(Faults::Kind::kKilled, at);
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ended = WIFEXITED(status);
    ASSERT_TRUE(ended || WTERMSIG(status) == SIGKILL);
    expectNothingLost("killed before call " + std::to_string(at));
  }
  EXPECT_GT(at, 1) << "there was a call to strike";
  EXPECT_TRUE(isDone());
}

TEST_P(NothingIsLost, ByACallThatFails) {
  for (const int error : {ENOSPC, EIO, EACCES, EROFS, EDQUOT}) {
    for (int at = 1;; ++at) {
      setUpFiles();
      const Report report = work(Faults::Kind::kFails, at, error);
      const std::string when = faults().struck + " (call " + std::to_string(at) + ") fails with " +
                               std::to_string(error) + ": " + reasons(report.failed);
      expectNothingLost(when);
      // A folder whose own times and permissions cannot be copied is not complete.
      const std::string& struck = faults().struck;
      const bool factsFailed = GetParam().isFolder && (struck == "fchmod" || struck == "futimens");
      EXPECT_EQ(report.complete(), isDone() && !factsFailed) << when;
      EXPECT_EQ(report.done, report.complete() ? 1U : 0U) << when;
      EXPECT_EQ(listed(to).find(".kestrel-"), std::string::npos) << when;
      if (faults().struck.empty()) break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Transfers, NothingIsLost,
    testing::Values(Scenario{"Copy", Operation::kCopy}, Scenario{"CopyToAnotherDisk", Operation::kCopy, true},
                    Scenario{"CopyThatReplaces", Operation::kCopy, false, Choice::kReplace},
                    Scenario{"CopyThatKeepsBoth", Operation::kCopy, false, Choice::kKeepBoth},
                    Scenario{"CopyOfAFolder", Operation::kCopy, false, Choice::kCancel, true},
                    Scenario{"Move", Operation::kMove},
                    Scenario{"MoveThatReplaces", Operation::kMove, false, Choice::kReplace},
                    Scenario{"MoveThatKeepsBoth", Operation::kMove, false, Choice::kKeepBoth},
                    Scenario{"MoveToAnotherDisk", Operation::kMove, true},
                    Scenario{"MoveToAnotherDiskThatReplaces", Operation::kMove, true, Choice::kReplace},
                    Scenario{"MoveToAnotherDiskThatKeepsBoth", Operation::kMove, true, Choice::kKeepBoth},
                    Scenario{"MoveOfAFolderToAnotherDisk", Operation::kMove, true, Choice::kCancel, true},
                    Scenario{"Trash", Operation::kTrash},
                    Scenario{"TrashOfAFolder", Operation::kTrash, false, Choice::kCancel, true},
                    Scenario{"Delete", Operation::kDelete},
                    Scenario{"DeleteOfAFolder", Operation::kDelete, false, Choice::kCancel, true}),
    [](const auto& scenario) { return std::string(scenario.param.name); });

}  // namespace
}  // namespace kestrel::transfer
