#include "FolderTreeTest.h"
#include "platform/headless/controls/FolderNotices.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// A tree on C:\Pictures with the folders June and May, of which Pictures is listed and selected.
class FollowedDisk : public FolderTreeTest {
 protected:
  void SetUp() override {
    FolderTreeTest::SetUp();
    folder("C:\\Pictures\\June");
    folder("C:\\Pictures\\May\\raw");
    start();
    control().Path("C:\\Pictures");
    record();
    shell().forgetReads();
  }
  headless::FolderNotices& notices() { return Bind<headless::FolderNotices>(site(), "fnoFolders"); }
  /// The platform has noticed changes in these folders.
  void changed(const std::vector<std::string>& folders) { notices().Changed(folders, {}); }
  void rename(const std::string& from, const std::string& to) {
    std::filesystem::rename(platform().files().host(from), platform().files().host(to));
  }
  /// The platform has noticed a renaming in C:\Pictures.
  void renamed(const std::string& from, const std::string& to) {
    rename(from, to);
    notices().Changed({"C:\\Pictures"}, {{from, to}});
  }
};

TEST_F(FollowedDisk, NewFoldersAppearInTheirPlacesAndGoneOnesVanish) {
  folder("C:\\Pictures\\July\\raw");
  removeFolder("C:\\Pictures\\May");
  changed({"C:\\Pictures"});
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("July", "June"));
  EXPECT_EQ(node("C:\\PICTURES\\JULY").Children(), 1) << "the sign to expand";
  EXPECT_FALSE(has("C:\\PICTURES\\MAY\\RAW"));
  EXPECT_EQ(selectedKey(), "C:\\PICTURES");
  EXPECT_TRUE(node("C:\\PICTURES").Expanded());
  EXPECT_THAT(events(), IsEmpty());
}

TEST_F(FollowedDisk, ARenamedFolderHasItsNewName) {
  rename("C:\\Pictures\\May", "C:\\Pictures\\August");
  changed({"C:\\Pictures"});
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("August", "June"));
}

TEST_F(FollowedDisk, OtherNodesStayExpandedAndListed) {
  node("C:\\PICTURES\\MAY").Expanded(true);
  removeFolder("C:\\Pictures\\June");
  changed({"C:\\Pictures"});
  EXPECT_TRUE(node("C:\\PICTURES\\MAY").Expanded());
  folder("C:\\Pictures\\May\\edited");
  changed({"C:\\Pictures\\May"});
  EXPECT_THAT(tree().childTexts("C:\\PICTURES\\MAY"), ElementsAre("edited", "raw"));
}

TEST_F(FollowedDisk, AFolderThatWasNotListedShowsItsFirstSubfolderAsItsSignOnly) {
  folder("C:\\Pictures\\June\\a");
  folder("C:\\Pictures\\June\\b");
  changed({"C:\\Pictures\\June"});
  EXPECT_EQ(node("C:\\PICTURES\\JUNE").Children(), 1);
  removeFolder("C:\\Pictures\\June\\a");
  removeFolder("C:\\Pictures\\June\\b");
  changed({"C:\\Pictures\\June"});
  EXPECT_EQ(node("C:\\PICTURES\\JUNE").Children(), 0);
}

TEST_F(FollowedDisk, AFolderThatComesBackIsListedAnewWhenItIsExpanded) {
  node("C:\\PICTURES\\MAY").Expanded(true);
  removeFolder("C:\\Pictures\\May");
  changed({"C:\\Pictures"});
  folder("C:\\Pictures\\May\\raw");
  folder("C:\\Pictures\\May\\edited");
  changed({"C:\\Pictures"});
  node("C:\\PICTURES\\MAY").Expanded(true);
  EXPECT_THAT(tree().childTexts("C:\\PICTURES\\MAY"), ElementsAre("edited", "raw"));
}

TEST_F(FollowedDisk, TheSelectedFolderKeepsItsNodeUntilAnotherIsSelected) {
  control().Path("C:\\Pictures\\May\\raw");
  events();
  removeFolder("C:\\Pictures\\May");
  changed({"C:\\Pictures", "C:\\Pictures\\May"});
  EXPECT_EQ(selectedKey(), "C:\\PICTURES\\MAY\\RAW");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\May\\raw\\");
  EXPECT_THAT(events(), IsEmpty());
  tree().click("C:\\PICTURES\\MAY");
  EXPECT_TRUE(has("C:\\PICTURES\\MAY"));
  tree().click("C:\\PICTURES\\JUNE");
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("June"));
  EXPECT_EQ(selectedKey(), "C:\\PICTURES\\JUNE");
}

TEST_F(FollowedDisk, ASelectedFolderThatIsRenamedIsSelectedByItsNewName) {
  control().Path("C:\\Pictures\\May");
  events();
  renamed("C:\\Pictures\\May", "C:\\Pictures\\August");
  EXPECT_EQ(selectedKey(), "C:\\PICTURES\\AUGUST");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\August\\");
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("August", "June"));
  EXPECT_THAT(events(), Contains("FolderClick C:\\Pictures\\August\\"));
}

TEST_F(FollowedDisk, ASelectedFolderBelowOneThatIsRenamedIsSelectedThere) {
  control().Path("C:\\Pictures\\May\\raw");
  renamed("C:\\Pictures\\May", "C:\\Pictures\\August");
  EXPECT_EQ(selectedKey(), "C:\\PICTURES\\AUGUST\\RAW");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\August\\raw\\");
  EXPECT_FALSE(has("C:\\PICTURES\\MAY"));
}

TEST_F(FollowedDisk, TheSelectionStaysWhenAnotherFolderIsRenamed) {
  control().Path("C:\\Pictures\\May");
  folder("C:\\Pictures\\Ma");
  changed({"C:\\Pictures"});
  events();
  renamed("C:\\Pictures\\Ma", "C:\\Pictures\\August");
  EXPECT_EQ(control().Path(), "C:\\Pictures\\May\\");
  EXPECT_THAT(events(), IsEmpty());
}

TEST_F(FollowedDisk, ASelectedFolderThatCameBackStays) {
  control().Path("C:\\Pictures\\May");
  removeFolder("C:\\Pictures\\May");
  changed({"C:\\Pictures"});
  folder("C:\\Pictures\\May");
  changed({"C:\\Pictures"});
  tree().click("C:\\PICTURES\\JUNE");
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("June", "May"));
}

TEST_F(FollowedDisk, AParentThatIsGoneTakesAllBelowItWithoutReadingIt) {
  node("C:\\PICTURES\\MAY").Expanded(true);
  control().Path("C:\\");
  removeFolder("C:\\Pictures");
  shell().forgetReads();
  changed({"C:\\Pictures\\May", "C:\\Pictures", "C:"});
  EXPECT_FALSE(has("C:\\PICTURES"));
  EXPECT_FALSE(has("C:\\PICTURES\\MAY"));
  EXPECT_THAT(shell().reads(), Not(Contains("C:\\Pictures\\")));
}

TEST_F(FollowedDisk, ListedFoldersAndThoseInThemAreWatched) {
  EXPECT_THAT(notices().folders(), Contains("C:"));
  EXPECT_THAT(notices().folders(), Contains("C:\\Pictures"));
  EXPECT_THAT(notices().folders(), Contains("C:\\Pictures\\May"));
  EXPECT_THAT(notices().folders(), Not(Contains("C:\\Pictures\\May\\raw")));
  node("C:\\PICTURES\\MAY").Expanded(true);
  EXPECT_THAT(notices().folders(), Contains("C:\\Pictures\\May\\raw"));
  removeFolder("C:\\Pictures\\May");
  changed({"C:\\Pictures"});
  EXPECT_THAT(notices().folders(), Not(Contains("C:\\Pictures\\May")));
}

TEST_F(FollowedDisk, NotMoreThanAThousandFoldersAreWatched) {
  for (int i = 0; i < 1200; ++i) folder("C:\\Pictures\\" + std::to_string(i));
  changed({"C:\\Pictures"});
  EXPECT_EQ(node("C:\\PICTURES").Children(), 1202);
  EXPECT_EQ(notices().folders().size(), 1000U);
  EXPECT_THAT(notices().folders(), Contains("C:\\Pictures"));
}

TEST_F(FollowedDisk, DrivesThatWereNotListedAreNotWatched) {
  for (const std::string& watched : notices().folders()) {
    EXPECT_NE(watched, "A:");
    EXPECT_NE(watched, "D:");
  }
}

TEST_F(FollowedDisk, AFloppyIsNeitherWatchedNorRead) {
  folder("A:\\letters\\old");
  tree().click("A:");
  node("A:").Expanded(true);
  tree().click("A:\\LETTERS");
  for (const std::string& watched : notices().folders()) EXPECT_NE(watched.substr(0, 2), "A:");
  shell().forgetReads();
  changed({"A:", "A:\\letters", "C:\\Pictures"});
  control().FollowDisk();
  for (const std::string& read : shell().reads()) EXPECT_NE(read.substr(0, 2), "A:");
}

TEST_F(FollowedDisk, OnADesignSurfaceNothingIsWatched) {
  start(false);
  EXPECT_THAT(notices().folders(), IsEmpty());
}

TEST_F(FollowedDisk, ChangesThatWereNotNoticedAreFoundOnRequest) {
  folder("C:\\Music");
  folder("C:\\Pictures\\June\\a");
  removeFolder("C:\\Pictures\\May");
  control().FollowDisk();
  EXPECT_THAT(tree().childTexts("C:"), ElementsAre("Music", "Pictures"));
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("June"));
  EXPECT_EQ(node("C:\\PICTURES\\JUNE").Children(), 1);
  EXPECT_EQ(selectedKey(), "C:\\PICTURES");
  EXPECT_THAT(events(), IsEmpty());
}

TEST_F(FollowedDisk, DrivesThatWereNeverListedAreNotReadOnRequest) {
  shell().forgetReads();
  control().FollowDisk();
  EXPECT_THAT(shell().reads(), Contains("C:\\"));
  EXPECT_THAT(shell().reads(), Not(Contains("D:\\")));
}

TEST_F(FollowedDisk, DrivesComeAndGoWithTheSystems) {
  const std::vector<headless::Drive> before = platform().files().drives();
  std::vector<headless::Drive> more = before;
  more.push_back({'E', kDriveRemovable, "CAMERA", "", true});
  platform().files().drives(more);
  folder("E:\\DCIM");
  notices().DrivesChanged();
  EXPECT_TRUE(has("E:"));
  EXPECT_EQ(node("E:").Children(), 1);
  EXPECT_THAT(shell().reads(), Not(Contains("A:\\"))) << "a floppy is read by a click only";
  platform().files().drives(before);
  notices().DrivesChanged();
  EXPECT_FALSE(has("E:"));
  EXPECT_TRUE(has("C:"));
  EXPECT_EQ(selectedKey(), "C:\\PICTURES");
  EXPECT_THAT(events(), IsEmpty());
}

TEST_F(FollowedDisk, TheTreeIsPausedMeanwhile) {
  std::vector<bool> calls;
  tree().onRedraw = [&](bool resumes) { calls.push_back(resumes); };
  changed({"C:\\Pictures"});
  EXPECT_THAT(calls, ElementsAre(false, true));
}

TEST_F(FollowedDisk, ATreeThatCannotBeRepaintedEndsNothing) {
  tree().onRedraw = [](bool resumes) {
    if (resumes) throw std::bad_alloc();
  };
  changed({"C:\\Pictures"});
  node("C:\\PICTURES\\MAY").Expanded(true);
  tree().onRedraw = nullptr;
  EXPECT_TRUE(has("C:\\PICTURES\\MAY\\RAW"));
}

/// A file system that distinguishes case, with the folders June and May.
class FollowedCaseSensitiveDisk : public FolderTreeTest {
 protected:
  headless::PathStyle pathStyle() const override { return headless::PathStyle::kSlash; }

  void SetUp() override {
    FolderTreeTest::SetUp();
    top_ = std::filesystem::canonical(scratch()).string() + "/pictures";
    folder(top_ + "/June");
    folder(top_ + "/May");
    start();
    control().Path(top_);
    ASSERT_EQ(control().Path(), top_ + "/");
  }
  void changed() { Bind<headless::FolderNotices>(site(), "fnoFolders").Changed({top_}, {}); }
  std::vector<std::string> texts() { return tree().childTexts(selectedKey()); }

  std::string top_;
};

TEST_F(FollowedCaseSensitiveDisk, AFolderThatGotOtherCapitalsKeepsItsKeyInCapitals) {
  const std::string key = modFolderTreeView::FindFolder(tree(), top_ + "/May")->Key();
  std::filesystem::rename(top_ + "/May", top_ + "/MAY");
  changed();
  EXPECT_EQ(node(key).Tag(), top_ + "/MAY");
  EXPECT_THAT(texts(), ElementsAre("June", "May")) << "shown in proper case";
}

TEST_F(FollowedCaseSensitiveDisk, FoldersThatDifferInCaseOnlyAreShownAsTheyAreSpelled) {
  folder(top_ + "/JUNE");
  folder(top_ + "/mAY");
  changed();
  EXPECT_THAT(texts(), testing::UnorderedElementsAre("JUNE", "June", "May", "mAY"));
  std::filesystem::remove(top_ + "/June");
  changed();
  EXPECT_THAT(texts(), testing::UnorderedElementsAre("JUNE", "May", "mAY"));
}

TEST_F(FollowedCaseSensitiveDisk, TwinsAreShownAsTheyAreSpelledAtEachPlaceOfTheTree) {
  folder(top_ + "/JUNE");
  TreeNode& other = tree().Nodes().Add("", kTreeLast, "other", "Other");
  modFolderTreeView::ListDirs(tree(), top_, true, &other);
  EXPECT_THAT(tree().childTexts("other"), testing::UnorderedElementsAre("JUNE", "June", "May"));
}

/// The Desktop's node shows the subfolders of C:\Desk.
class FollowedDesktop : public FollowedDisk {
 protected:
  void SetUp() override {
    FolderTreeTest::SetUp();
    specialFolder(kFolderDesktop, "C:\\Desk");
    specialFolder(kFolderPersonal, "C:\\Papers");
    folder("C:\\Desk\\work");
    start();
  }
};

TEST_F(FollowedDesktop, ShowsItsNewFoldersAndKeepsTheOtherNodes) {
  EXPECT_THAT(notices().folders(), Contains("C:\\Desk"));
  folder("C:\\Desk\\play");
  removeFolder("C:\\Desk\\work");
  changed({"C:\\Desk"});
  EXPECT_THAT(tree().childTexts("Desktop"), ElementsAre("My Computer", "My Documents", "play"));
}

}  // namespace
}  // namespace kestrel
