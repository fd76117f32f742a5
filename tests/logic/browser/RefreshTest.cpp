#include <fstream>

#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;

class TreeRefresh : public FolderTreeTest {
 protected:
  void SetUp() override {
    FolderTreeTest::SetUp();
    folder("C:\\Pictures\\May");
    folder("C:\\Music");
  }
};

TEST_F(TreeRefresh, ANewControlShowsDesktopComputerAndDrives) {
  start();
  EXPECT_THAT(tree().childKeys(""), ElementsAre("Desktop"));
  EXPECT_THAT(tree().childKeys("Desktop"), ElementsAre("My Computer"));
  EXPECT_EQ(node("Desktop").Text(), "Desktop");
  EXPECT_EQ(node("Desktop").Tag(), "");
  EXPECT_EQ(node("Desktop").Image(), "Desktop");
  EXPECT_EQ(node("My Computer").Text(), "My Computer");
  EXPECT_EQ(node("My Computer").Tag(), "");
  EXPECT_EQ(node("My Computer").Image(), "My Computer");
  EXPECT_THAT(tree().childKeys("My Computer"), testing::UnorderedElementsAre("A:", "C:", "D:"));
}

TEST_F(TreeRefresh, TheFirstFixedDriveIsSelectedExpandedAndListed) {
  start();
  EXPECT_EQ(selectedKey(), "C:");
  EXPECT_TRUE(node("C:").Expanded());
  EXPECT_THAT(tree().childTexts("C:"), ElementsAre("Music", "Pictures")) << "sorted";
  EXPECT_EQ(control().Path(), "C:\\");
}

TEST_F(TreeRefresh, WithoutTheDesktopTheComputerIsTheRoot) {
  start();
  control().IncludeDesktop(false);
  EXPECT_THAT(tree().childKeys(""), ElementsAre("My Computer"));
}

TEST_F(TreeRefresh, WithoutTheComputerTheDrivesAreAtTheTop) {
  start();
  control().IncludeMyComputer(false);
  EXPECT_THAT(tree().childKeys(""), ElementsAre("A:", "C:", "D:"));
  EXPECT_EQ(selectedKey(), "C:");
}

TEST_F(TreeRefresh, DesktopAndDocumentsAreIncludedAsWished) {
  specialFolder(kFolderDesktop, "C:\\Desk");
  specialFolder(kFolderPersonal, "C:\\Docs");
  folder("C:\\Desk\\work");
  start();
  EXPECT_THAT(tree().childTexts("Desktop"), ElementsAre("My Computer", "My Documents", "work"));
  control().IncludeMyDocuments(false);
  EXPECT_THAT(tree().childTexts("Desktop"), ElementsAre("My Computer", "work"));
  control().IncludeDesktop(false);
  EXPECT_THAT(tree().childTexts(""), ElementsAre("My Computer"));
}

TEST_F(TreeRefresh, OnADesignSurfaceNothingIsSelectedAndTheDesktopNotListed) {
  specialFolder(kFolderDesktop, "C:\\Desk");
  folder("C:\\Desk\\work");
  start(false);
  EXPECT_EQ(selectedKey(), "");
  EXPECT_THAT(tree().childTexts("Desktop"), ElementsAre("My Computer"));
  EXPECT_FALSE(node("C:").Expanded());
}

TEST_F(TreeRefresh, TheSelectedFolderIsSelectedAgain) {
  start();
  control().Path("C:\\Pictures");
  folder("C:\\Archive");
  control().Refresh();
  EXPECT_EQ(control().Path(), "C:\\Pictures\\");
  EXPECT_EQ(selectedKey(), "C:\\PICTURES");
  EXPECT_THAT(tree().childTexts("C:"), ElementsAre("Archive", "Music", "Pictures")) << "listed anew";
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("May"));
}

TEST_F(TreeRefresh, AFolderThatVanishedLeavesItsParentSelected) {
  start();
  control().Path("C:\\Pictures\\May");
  removeFolder("C:\\Pictures\\May");
  control().Refresh();
  EXPECT_EQ(control().Path(), "C:\\Pictures\\");
}

TEST_F(TreeRefresh, ANodeWithoutAPathIsSelectedAgain) {
  start();
  tree().click("My Computer");
  ASSERT_EQ(control().Path(), "");
  record();
  control().Refresh();
  EXPECT_EQ(selectedKey(), "My Computer");
  EXPECT_THAT(events(), Contains("MyComputerClick"));
  EXPECT_EQ(control().Path(), "");
}

TEST_F(TreeRefresh, EveryRefreshAnnouncesTheSelectedNode) {
  start();
  control().Path("C:\\Music");
  record();
  control().Refresh();
  const std::vector<std::string> raised = events();
  ASSERT_GE(raised.size(), 2U);
  EXPECT_EQ(raised[raised.size() - 2], "FolderClick C:\\Music\\");
  EXPECT_EQ(raised.back(), "NodeClick C:\\MUSIC");
}

TEST_F(TreeRefresh, ASelectedFloppyIsNotTouched) {
  folder("A:\\letters");
  start();
  tree().click("A:");
  ASSERT_TRUE(has("A:\\LETTERS"));
  shell().forgetReads();
  control().Refresh();
  EXPECT_EQ(selectedKey(), "A:");
  EXPECT_EQ(control().Path(), "A:\\");
  EXPECT_EQ(node("A:").Children(), 0);
  for (const std::string& read : shell().reads()) EXPECT_NE(read.substr(0, 2), "A:");
  tree().click("A:");
  EXPECT_TRUE(has("A:\\LETTERS")) << "a click reads it again";
}

TEST_F(TreeRefresh, ASelectedFolderOnAFloppyIsNotTouched) {
  folder("A:\\letters\\old");
  start();
  tree().click("A:");
  node("A:").Expanded(true);
  tree().click("A:\\LETTERS");
  ASSERT_EQ(control().Path(), "A:\\letters\\");
  shell().forgetReads();
  control().Refresh();
  for (const std::string& read : shell().reads()) EXPECT_NE(read.substr(0, 2), "A:");
  EXPECT_EQ(selectedKey(), "A:") << "the nearest node that is listed";
}

TEST_F(TreeRefresh, AFloppyIsNotTouchedWhenTheHostRefreshesWithinARefresh) {
  folder("A:\\letters");
  start();
  tree().click("A:");
  shell().forgetReads();
  int refreshes = 0;
  const Connection again = control().FolderClick.Connect([&](const std::string&) {
    if (++refreshes == 2) control().Refresh();
  });
  control().Refresh();
  EXPECT_GE(refreshes, 2);
  EXPECT_EQ(control().Path(), "A:\\");
  for (const std::string& read : shell().reads()) EXPECT_NE(read.substr(0, 2), "A:");
}

TEST_F(TreeRefresh, WithoutTheSystemsFoldersNoPictureIsLookedUpInTheCurrentFolder) {
  struct CurrentFolder {
    explicit CurrentFolder(const std::string& folder) { std::filesystem::current_path(folder); }
    ~CurrentFolder() { std::filesystem::current_path(before); }
    std::filesystem::path before = std::filesystem::current_path();
  };
  const CurrentFolder current(scratch());
  for (const char* file : {"Explorer.exe", "Shell32.dll"}) {
    std::ofstream(platform().files().host(file)) << "x";
    ASSERT_TRUE(platform().files().exists(file));
  }
  start();
  for (const char* key : {"My Computer", "Desktop", "Folder Closed", "Folder Open", "My Documents"}) {
    EXPECT_EQ(tree().ImageList().picture(key), nullptr) << key;
  }
}

TEST_F(TreeRefresh, ANodeThatWasExpandedBeforeIsListedAgainWhenItIsExpanded) {
  start();
  control().Path("C:\\Pictures");
  ASSERT_TRUE(node("C:\\PICTURES").Expanded());
  folder("C:\\Pictures\\June");
  control().Path("C:\\Music");
  control().Refresh();
  node("C:\\PICTURES").Expanded(true);
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("June", "May"));
}

TEST_F(TreeRefresh, PicturesOfTheSystemReplaceTheStoredOnes) {
  specialFolder(headless::Shell::kWindowsFolder, "C:\\Windows");
  specialFolder(headless::Shell::kSystemFolder, "C:\\Windows\\System32");
  start();
  EXPECT_EQ(tree().ImageList().picture("My Computer"), nullptr) << "the stored ones without the files";
  std::ofstream(platform().files().host("C:\\Windows\\Explorer.exe")) << "x";
  std::ofstream(platform().files().host("C:\\Windows\\System32\\Shell32.dll")) << "x";
  const std::int32_t count = tree().ImageList().Count();
  control().Refresh();
  const auto shade = [&](const char* key) {
    const PicturePtr picture = tree().ImageList().picture(key);
    return picture == nullptr ? -1 : int{picture->Pixels().Data[0]};
  };
  EXPECT_EQ(shade("My Computer"), 0);
  EXPECT_EQ(shade("Desktop"), 3);
  EXPECT_EQ(shade("Folder Closed"), 3);
  EXPECT_EQ(shade("Folder Open"), 4);
  EXPECT_EQ(shade("My Documents"), 20);
  EXPECT_EQ(tree().ImageList().picture("My Documents")->Width(), 16) << "small icons";
  EXPECT_EQ(tree().ImageList().Count(), count);
}

TEST_F(TreeRefresh, TheDisplayIsRefreshed) {
  start();
  const std::int32_t before = tree().refreshes();
  control().Refresh();
  EXPECT_EQ(tree().refreshes(), before + 1);
}

TEST_F(TreeRefresh, AHostThatRebuildsTheTreeInAnEventDoesNoHarm) {
  start();
  int left = 2;
  const Connection again = control().FolderClick.Connect([&](const std::string&) {
    if (left-- > 0) control().Refresh();
  });
  const Connection expand = control().Expand.Connect([&](const TreeNode&) {
    if (left-- > 0) control().Refresh();
  });
  tree().click("C:");
  left = 2;
  control().Path("C:\\Pictures\\May");
  EXPECT_TRUE(has("C:\\PICTURES"));
}

TEST_F(TreeRefresh, AFirstShowAnnouncesTheSelectedNodeOnce) {
  start();
  record();
  site().Show();
  EXPECT_THAT(events(), ElementsAre("FolderClick C:\\", "NodeClick C:"));
  site().Show();
  EXPECT_THAT(events(), ElementsAre());
}

TEST_F(TreeRefresh, WithoutAutoSelectAFirstShowAnnouncesNothing) {
  start();
  control().AutoSelect(false);
  record();
  site().Show();
  EXPECT_THAT(events(), ElementsAre());
}

TEST_F(TreeRefresh, TheTreeFillsTheControl) {
  start();
  site().Move(0, 0, 321, 456);
  EXPECT_EQ(tree().Width(), 321);
  EXPECT_EQ(tree().Height(), 456);
  EXPECT_FALSE(icon().Visible());
  tree().Move(5, 5, 10, 10);
  control().ForceResize();
  EXPECT_EQ(tree().Left(), 0);
  EXPECT_EQ(tree().Width(), 321);
}

}  // namespace
}  // namespace kestrel
