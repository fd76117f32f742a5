// No file is ever lost: the process is killed before each system call that changes something, each call
// fails, and the source is removed by another program before each of them.

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
  /// Makes the file system one that can do less.
  void (*weaken)(Faults& faults) = nullptr;
};

class NothingIsLost : public TransferTest, public testing::WithParamInterface<Scenario> {
 protected:
  NothingIsLost() {
    faults().volumes = {root.string()};
    if (GetParam().otherDisk) faults().volumes.push_back(to.string());
    if (GetParam().weaken != nullptr) GetParam().weaken(faults());
  }
  ~NothingIsLost() override { faults() = Faults(); }

  bool clashes() const { return GetParam().clash != Choice::kCancel; }
  fs::path source() const { return from / (GetParam().isFolder ? "album" : "a.png"); }

  void setUpFiles() {
    faults().kind = Faults::Kind::kNone;
    fs::remove_all(from);
    fs::remove_all(to);
    fs::remove_all(root / "home");
    fs::remove_all(volumeTrash);
    fs::create_directory(to);
    write(GetParam().isFolder ? from / "album/deep/a.png" : from / "a.png", kNew);
    if (clashes()) write(to / "a.png", kOld);
  }

  fs::path file() const { return GetParam().isFolder ? source() / "deep/a.png" : source(); }

  Report work(Faults::Kind kind, int at, int error = EIO) {
    faults().vanishing = file().string();
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
    faults().reading = false;
    return report;
  }

  /// Whether a user sees the name: the next work removes temporary files.
  static bool isVisible(const fs::path& name) { return !name.string().starts_with(".kestrel-"); }

  /// The files below a folder that have that content.
  static int count(const fs::path& folder, const std::string& content) {
    int found = 0;
    if (!fs::exists(folder)) return 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
      const bool counts = entry.is_regular_file() && isVisible(entry.path().filename());
      found += counts && contentOf(entry.path()) == content ? 1 : 0;
    }
    return found;
  }

  /// Each file under a name that a user sees is whole.
  void expectWholeFiles(const std::string& when) {
    for (const fs::path& folder : {from, to}) {
      for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || !isVisible(entry.path().filename())) continue;
        const std::string content = contentOf(entry.path());
        // Where names cannot be taken in one step, a killed process leaves an empty file.
        const bool isReserved = content.empty() && !faults().hardLinks && faults().struck.empty();
        EXPECT_TRUE(content == kNew || content == kOld || isReserved) << when << ": " << entry.path();
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
        // Where the disk of the home trash cannot be found out, the trash of the file's volume serves.
        return atSource == 0 &&
               count(root / "home/Trash/files", kNew) + count(volumeTrash / "files", kNew) == 1;
      default:
        return !fs::exists(source());
    }
  }

  const fs::path volumeTrash = root / (".Trash-" + std::to_string(geteuid()));
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

TEST_P(NothingIsLost, ByACallThatCannotRead) {
  for (const int error : {EIO, EACCES}) {
    for (int at = 1;; ++at) {
      setUpFiles();
      faults().reading = true;
      const Report report = work(Faults::Kind::kFails, at, error);
      const std::string when = faults().struck + " (call " + std::to_string(at) + ") fails with " +
                               std::to_string(error) + ": " + reasons(report.failed);
      expectNothingLost(when);
      const std::string& struck = faults().struck;
      const bool factsFailed =
          GetParam().isFolder && (struck == "fchmod" || struck == "futimens" || struck == "openat");
      if (!factsFailed || report.complete()) {
        EXPECT_EQ(report.complete(), isDone()) << when;
      }
      EXPECT_EQ(report.done, report.complete() ? 1U : 0U) << when;
      EXPECT_EQ(listed(to).find(".kestrel-"), std::string::npos) << when;
      if (struck.empty()) break;
    }
  }
}

TEST_P(NothingIsLost, BesidesASourceThatVanishes) {
  for (int at = 1;; ++at) {
    setUpFiles();
    faults().reading = true;
    const Report report = work(Faults::Kind::kVanishes, at);
    const std::string when =
        "gone before " + faults().struck + " (call " + std::to_string(at) + "): " + reasons(report.failed);
    if (faults().struck.empty()) break;
    expectWholeFiles(when);
    if (clashes()) {
      EXPECT_TRUE(fs::exists(to / "a.png")) << when;
    }
    if (clashes() && GetParam().clash != Choice::kReplace) {
      EXPECT_EQ(contentOf(to / "a.png"), kOld) << when;
    }
    const fs::path target = GetParam().operation == Operation::kTrash ? root / "home/Trash/files" : to;
    const bool isThere = count(target, kNew) == 1;
    if (GetParam().operation == Operation::kDelete || GetParam().isFolder) {
      // It was asked to be gone, or was gone when its folder was listed.
      EXPECT_TRUE(report.complete() || !report.failed.empty()) << when;
    } else {
      EXPECT_EQ(report.complete(), isThere) << when;
      EXPECT_EQ(report.failed.empty(), isThere) << when;
    }
    EXPECT_FALSE(report.canceled) << when;
    EXPECT_EQ(listed(to).find(".kestrel-"), std::string::npos) << when;
    const fs::path infos = root / "home/Trash/info";
    if (!isThere && !GetParam().isFolder && fs::exists(infos)) {
      EXPECT_EQ(listed(infos), "") << when;
    }
  }
}

// File systems that can do less.
void withoutNamelessFiles(Faults& faults) { faults.namelessFiles = false; }
void withoutNamesForThem(Faults& faults) { faults.namelessLinked = false; }
void withoutRenamingToNew(Faults& faults) { faults.renamesToNew = false; }
void withoutHardLinksEither(Faults& faults) {
  faults.renamesToNew = faults.hardLinks = faults.namelessLinked = false;
}
void withoutCopyingInside(Faults& faults) { faults.copiesInside = EXDEV; }

INSTANTIATE_TEST_SUITE_P(
    WeakerSystems, NothingIsLost,
    testing::Values(
        Scenario{"CopyWithNames", Operation::kCopy, false, Choice::kCancel, false, withoutNamelessFiles},
        Scenario{"CopyWithNamesThatReplaces", Operation::kCopy, false, Choice::kReplace, false,
                 withoutNamelessFiles},
        Scenario{"CopyWithNamesThatKeepsBoth", Operation::kCopy, false, Choice::kKeepBoth, false,
                 withoutNamelessFiles},
        Scenario{"CopyFilledAgain", Operation::kCopy, false, Choice::kCancel, false, withoutNamesForThem},
        Scenario{"CopyFilledAgainThatReplaces", Operation::kCopy, false, Choice::kReplace, false,
                 withoutNamesForThem},
        Scenario{"CopyByReading", Operation::kCopy, false, Choice::kCancel, false, withoutCopyingInside},
        Scenario{"MoveByHardLinks", Operation::kMove, false, Choice::kCancel, false, withoutRenamingToNew},
        Scenario{"MoveByHardLinksThatKeepsBoth", Operation::kMove, false, Choice::kKeepBoth, false,
                 withoutRenamingToNew},
        Scenario{"TrashByHardLinks", Operation::kTrash, false, Choice::kCancel, false, withoutRenamingToNew},
        Scenario{"MoveOverAReservedName", Operation::kMove, false, Choice::kCancel, false,
                 withoutHardLinksEither},
        Scenario{"MoveOverAReservedNameThatKeepsBoth", Operation::kMove, false, Choice::kKeepBoth, false,
                 withoutHardLinksEither},
        Scenario{"MoveToAnotherDiskOverAReservedName", Operation::kMove, true, Choice::kCancel, false,
                 withoutHardLinksEither}),
    [](const auto& scenario) { return std::string(scenario.param.name); });

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
