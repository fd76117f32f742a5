#include <filesystem>
#include <fstream>
#include <iterator>

#include "ContractTest.h"

namespace kestrel::contract {
namespace {

namespace fs = std::filesystem;
using Clash = ContractPlatform::Clash;

class Files : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    platform().Shell().CreateFolder(path("sub"));
  }

  FileHelpers& files() { return platform().FileHelpers(); }
  std::string sub(const std::string& name) { return path("sub") + files().PathSeparator() + name; }
  void write(const std::string& path, const std::string& content = "content") {
    std::ofstream(user().host(path)) << content;
  }
  bool exists(const std::string& path) { return fs::exists(user().host(path)); }
  std::string content(const std::string& path) {
    std::ifstream file(user().host(path));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  static std::string buffer(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names) all += name + '\0';
    return all;
  }
  /// Whether a trash in the test's folder has a file of that name, and where it was.
  bool isInTrash(const std::string& name) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(user().host(user().folder()))) {
      if (entry.path().filename() == name && entry.path().parent_path().filename() == "files")
        return fs::exists(entry.path().parent_path().parent_path() / "info" / (name + ".trashinfo"));
    }
    return false;
  }
};

TEST_P(Files, AreCopiedMovedAndDeletedByABufferOfNames) {
  write(path("a.png"));
  write(path("b.png"));
  EXPECT_TRUE(files().CopyFiles(buffer({path("a.png"), path("b.png")}), path("sub"), 0, 0));
  EXPECT_TRUE(exists(path("a.png")));
  EXPECT_TRUE(exists(sub("a.png")));
  EXPECT_TRUE(exists(sub("b.png")));
  user().willAnswer(kAnswerYes);
  EXPECT_TRUE(files().DeleteFiles(buffer({path("a.png"), path("b.png")}), path("sub"), 0, 0));
  EXPECT_FALSE(exists(path("a.png")));
  EXPECT_FALSE(exists(path("b.png")));
  EXPECT_TRUE(exists(sub("a.png"))) << "deleting has no target";
  EXPECT_TRUE(files().MoveFiles(buffer({sub("a.png")}), user().folder(), 0, 0));
  EXPECT_TRUE(exists(path("a.png")));
  EXPECT_FALSE(exists(sub("a.png")));
}

TEST_P(Files, OfAnEmptyBufferAreNoneAndNothingIsAsked) {
  for (const std::string& empty : {std::string(), std::string(1, '\0'), std::string(2, '\0')}) {
    EXPECT_TRUE(files().CopyFiles(empty, path("sub"), 0, 0));
    EXPECT_TRUE(files().MoveFiles(empty, path("sub"), 0, 0));
    EXPECT_TRUE(files().DeleteFiles(empty, {}, kAllowUndo, 0));
    EXPECT_TRUE(files().DeleteFiles(empty, {}, 0, 0));
  }
}

TEST_P(Files, OfABufferNeedNoNulAfterTheLastName) {
  write(path("a.png"));
  write(path("b.png"));
  EXPECT_TRUE(files().CopyFiles(path("a.png") + '\0' + path("b.png"), path("sub"), 0, 0));
  EXPECT_TRUE(exists(sub("a.png")));
  EXPECT_TRUE(exists(sub("b.png")));
}

TEST_P(Files, AreNotDeletedIfTheUserDeclines) {
  write(path("a.png"));
  for (const std::int32_t flags : {0, kAllowUndo}) {
    user().willAnswer(kAnswerNo);
    EXPECT_FALSE(files().DeleteFiles(buffer({path("a.png")}), {}, flags, 0));
    EXPECT_TRUE(exists(path("a.png")));
  }
}

TEST_P(Files, AreDeletedIntoTheTrashWithTheFlag64AndForGoodWithoutIt) {
  write(path("a.png"));
  write(path("b.png"));
  user().willAnswer(kAnswerYes);
  EXPECT_TRUE(files().DeleteFiles(buffer({path("a.png")}), {}, 64, 0));
  EXPECT_FALSE(exists(path("a.png")));
  EXPECT_TRUE(isInTrash("a.png"));
  user().willAnswer(kAnswerYes);
  EXPECT_TRUE(files().DeleteFiles(buffer({path("b.png")}), {}, 0, 0));
  EXPECT_FALSE(exists(path("b.png")));
  EXPECT_FALSE(isInTrash("b.png"));
}

TEST_P(Files, AlreadyInTheFolderAreCopiedUnderAnotherNameAndNotMoved) {
  write(path("a.png"));
  EXPECT_TRUE(files().CopyFiles(buffer({path("a.png")}), user().folder(), 0, 0));
  EXPECT_EQ(content(path("a (2).png")), "content");
  user().willAnswer(kAnswerOK);
  EXPECT_FALSE(files().MoveFiles(buffer({path("a.png")}), user().folder(), 0, 0));
  EXPECT_EQ(content(path("a.png")), "content");
}

TEST_P(Files, ThatFailAreReportedInOneBoxAndTheOthersAreDone) {
  write(path("b.png"));
  user().willAnswer(kAnswerOK);
  EXPECT_FALSE(files().MoveFiles(buffer({path("missing.png"), path("b.png"), path("also missing.png")}),
                                 path("sub"), 0, 0));
  EXPECT_FALSE(exists(path("b.png")));
  EXPECT_TRUE(exists(sub("b.png")));
}

TEST_P(Files, WithATakenNameAreReplacedSkippedOrKept) {
  struct Case {
    Clash choice;
    bool done;
    const char* a;
    bool second;
  };
  for (const Case& each : {Case{Clash::kReplace, true, "new", false}, Case{Clash::kSkip, false, "old", false},
                           Case{Clash::kKeepBoth, true, "old", true}}) {
    write(path("a.png"), "new");
    write(sub("a.png"), "old");
    user().willDecide(each.choice, false);
    EXPECT_EQ(files().CopyFiles(buffer({path("a.png")}), path("sub"), 0, 0), each.done);
    EXPECT_EQ(content(sub("a.png")), each.a);
    EXPECT_EQ(exists(sub("a (2).png")), each.second);
    EXPECT_EQ(content(path("a.png")), "new");
  }
}

TEST_P(Files, WithTakenNamesAreDecidedOnOnceForAll) {
  for (const char* name : {"a.png", "b.png", "c.png"}) {
    write(path(name), "new");
    write(sub(name), "old");
  }
  user().willDecide(Clash::kReplace, true);
  EXPECT_TRUE(files().MoveFiles(buffer({path("a.png"), path("b.png"), path("c.png")}), path("sub"), 0, 0));
  for (const char* name : {"a.png", "b.png", "c.png"}) {
    EXPECT_EQ(content(sub(name)), "new");
    EXPECT_FALSE(exists(path(name)));
  }
}

TEST_P(Files, AreLeftAloneAfterACancellation) {
  for (const char* name : {"a.png", "b.png"}) {
    write(path(name), "new");
    write(sub(name), "old");
  }
  user().willDecide(Clash::kCancel, false);
  EXPECT_FALSE(files().MoveFiles(buffer({path("a.png"), path("b.png")}), path("sub"), 0, 0));
  for (const char* name : {"a.png", "b.png"}) {
    EXPECT_EQ(content(sub(name)), "old");
    EXPECT_EQ(content(path(name)), "new");
  }
}

TEST_P(Files, InFoldersOfOneNameAreMergedIfTheUserWantsThat) {
  const std::string separator = files().PathSeparator();
  platform().Shell().CreateFolder(path("album"));
  platform().Shell().CreateFolder(sub("album"));
  write(path("album") + separator + "a.png");
  for (const Clash choice : {Clash::kSkip, Clash::kMerge}) {
    user().willDecide(choice, false);
    EXPECT_EQ(files().MoveFiles(buffer({path("album") + separator}), path("sub"), 0, 0),
              choice == Clash::kMerge);
    EXPECT_EQ(exists(sub("album") + separator + "a.png"), choice == Clash::kMerge);
    EXPECT_EQ(exists(path("album")), choice == Clash::kSkip);
  }
}

TEST_P(Files, MayBeFolders) {
  platform().Shell().CreateFolder(path("album"));
  write(path("album") + files().PathSeparator() + "a.png");
  EXPECT_TRUE(files().CopyFiles(buffer({path("album")}), path("sub"), 0, 0));
  EXPECT_TRUE(exists(sub("album") + files().PathSeparator() + "a.png"));
  user().willAnswer(kAnswerOK);
  EXPECT_FALSE(files().CopyFiles(buffer({path("sub")}), sub("album"), 0, 0)) << "into itself";
}

KESTREL_ON_ALL_PLATFORMS(Files);

}  // namespace
}  // namespace kestrel::contract
