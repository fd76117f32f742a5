#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class TreePath : public FolderTreeTest {
 protected:
  void SetUp() override {
    FolderTreeTest::SetUp();
    folder("C:\\Pictures\\2024\\May\\raw");
    folder("C:\\Pictures\\2024\\June");
    folder("C:\\Pictures\\2023");
    start();
  }
};

TEST_F(TreePath, SelectsTheFolderAndExpandsItAndAllAboveIt) {
  record();
  control().Path("C:\\Pictures\\2024\\");
  EXPECT_EQ(selectedKey(), "C:\\PICTURES\\2024");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\2024\\");
  EXPECT_TRUE(node("C:\\PICTURES").Expanded());
  EXPECT_TRUE(node("C:\\PICTURES\\2024").Expanded());
  EXPECT_TRUE(tree().isVisible("C:\\PICTURES\\2024\\MAY"));
  EXPECT_THAT(events(), ElementsAre("Expand C:\\PICTURES", "Expand C:\\PICTURES\\2024",
                                    "FolderClick C:\\Pictures\\2024\\", "NodeClick C:\\PICTURES\\2024"));
}

TEST_F(TreePath, IsTheSameWithAndWithoutASeparatorAndInAnyCase) {
  control().Path("C:\\Pictures\\2024");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\2024\\");
  control().Path("c:\\pictures\\2023");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\2023\\") << "as the file system spells it";
}

TEST_F(TreePath, ThatIsEmptyChangesNothing) {
  record();
  control().Path("");
  EXPECT_EQ(control().Path(), "C:\\");
  EXPECT_THAT(events(), ElementsAre());
}

TEST_F(TreePath, ThatIsNotListedStopsAtItsNearestListedParentExpanded) {
  folder("C:\\Pictures\\2025\\January");
  control().Path("C:\\Pictures");
  folder("C:\\Pictures\\2026\\January");
  control().Path("C:\\Pictures\\2026\\January");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\");
  EXPECT_TRUE(node("C:\\PICTURES").Expanded());
  EXPECT_FALSE(has("C:\\PICTURES\\2026")) << "a new folder is not added";
}

TEST_F(TreePath, ThatDoesNotExistSelectsItsNearestParent) {
  control().Path("C:\\Pictures\\none\\deeper");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\");
  control().Path("X:\\none");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\") << "no node is found at all";
}

TEST_F(TreePath, OnADriveThatIsNotReadySelectsTheDrive) {
  control().Path("d:\\Holiday");
  EXPECT_EQ(selectedKey(), "D:");
  EXPECT_EQ(control().Path(), "D:\\");
}

TEST_F(TreePath, DeepInACollapsedDriveListsOneLevelForEachStep) {
  shell().forgetReads();
  control().Path("C:\\Pictures\\2024");
  EXPECT_THAT(shell().reads(), Contains("C:\\Pictures\\"));
  EXPECT_THAT(shell().reads(), Contains("C:\\Pictures\\2024\\"));
  EXPECT_THAT(shell().reads(), Not(Contains("C:\\Pictures\\2024\\May\\raw\\")));
}

TEST_F(TreePath, OnAFloppySelectsAndReadsIt) {
  folder("A:\\letters\\old");
  control().Path("A:\\letters");
  EXPECT_EQ(selectedKey(), "A:") << "not listed yet";
  control().Path("A:\\letters");
  EXPECT_EQ(selectedKey(), "A:\\LETTERS");
}

/// A file system with "/" and without drives.
class RootedPath : public FolderTreeTest {
 protected:
  headless::PathStyle pathStyle() const override { return headless::PathStyle::kSlash; }
  void SetUp() override {
    FolderTreeTest::SetUp();
    folder(scratch() + "/photos/in");
    folder(scratch() + "/Photos/In");
    start();
  }
};

TEST_F(RootedPath, IsFoundFromTheRootDown) {
  control().Path(scratch());
  EXPECT_EQ(control().Path(), scratch() + "/");
  EXPECT_TRUE(node("/").Expanded());
}

TEST_F(RootedPath, TheRootIsAPathToo) {
  control().Path(scratch());
  control().Path("/");
  EXPECT_EQ(control().Path(), "/");
  EXPECT_EQ(selectedKey(), "/");
}

TEST_F(RootedPath, FoldersThatDifferInCaseAreSelectedEach) {
  for (const char* name : {"/Photos/", "/photos/", "/Photos/In/", "/photos/in/"}) {
    control().Path(scratch() + name);
    EXPECT_EQ(control().Path(), scratch() + name);
  }
  control().Refresh();
  EXPECT_EQ(control().Path(), scratch() + "/photos/in/");
}

TEST_F(RootedPath, ThroughALinkIsTheRealPath) {
  std::filesystem::create_directory_symlink(scratch() + "/Photos", scratch() + "/link");
  control().Path(scratch() + "/link/In");
  EXPECT_EQ(control().Path(), scratch() + "/Photos/In/");
}

}  // namespace
}  // namespace kestrel
