#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TreeClicks : public FolderTreeTest {
 protected:
  std::vector<headless::Drive> drives() const override {
    return {{'A', kDriveRemovable, "", "", floppyReady_},
            {'B', kDriveRemovable, "", "", true},
            {'C', kDriveFixed, "System", "", true}};
  }
  void SetUp() override {
    FolderTreeTest::SetUp();
    folder("C:\\Pictures\\May\\raw");
    folder("C:\\Pictures\\June");
    start();
    pointers();
  }

  bool floppyReady_ = true;
};

TEST_F(TreeClicks, OnAFolderRaiseFolderClickWithItsPathAndThenNodeClick) {
  record();
  tree().click("C:\\PICTURES");
  EXPECT_THAT(events(), ElementsAre("FolderClick C:\\Pictures\\", "NodeClick C:\\PICTURES", "Click"));
  EXPECT_EQ(control().Path(), "C:\\Pictures\\");
}

TEST_F(TreeClicks, OnANodeThatAHandlerRemovesKeepItForTheOthers) {
  const TreeNode* clicked = nullptr;
  std::weak_ptr<TreeNode> life;
  std::vector<std::string> seen;
  const Connection first = control().NodeClick.Connect([&](TreeNode& node) {
    if (clicked != nullptr) return;
    clicked = &node;
    life = node.weak_from_this();
    control().Refresh();
  });
  const Connection second = control().NodeClick.Connect([&](TreeNode& node) {
    if (&node == clicked && !life.expired()) seen.push_back(node.Key());
  });
  tree().click("C:\\PICTURES");
  EXPECT_THAT(seen, ElementsAre("C:\\PICTURES"));
  EXPECT_TRUE(life.expired());
}

TEST_F(TreeClicks, ThatShowAnnouncesKeepTheNodeThatAHandlerRemoves) {
  std::weak_ptr<TreeNode> life;
  std::vector<std::string> seen;
  const Connection first = control().NodeClick.Connect([&](TreeNode& node) {
    life = node.weak_from_this();
    control().Nodes().Clear();
  });
  const Connection second = control().NodeClick.Connect([&](TreeNode& node) {
    if (!life.expired()) seen.push_back(node.Key());
  });
  site().Show();
  EXPECT_THAT(seen, ElementsAre("C:"));
  EXPECT_TRUE(life.expired());
}

TEST_F(TreeClicks, OnADriveRaiseFolderClickWithItsRoot) {
  tree().click("C:\\PICTURES");
  record();
  tree().click("C:");
  EXPECT_THAT(events(), ElementsAre("FolderClick C:\\", "NodeClick C:", "Click"));
}

TEST_F(TreeClicks, OnTheComputerAndTheDesktopRaiseTheirOwnEventsAndEmptyThePath) {
  record();
  tree().click("My Computer");
  EXPECT_THAT(events(), ElementsAre("MyComputerClick", "NodeClick My Computer", "Click"));
  EXPECT_EQ(control().Path(), "");
  tree().click("Desktop");
  EXPECT_THAT(events(), ElementsAre("DesktopClick", "NodeClick Desktop", "Click"));
}

TEST_F(TreeClicks, OnTheSelectedFolderRaiseTheEventsAgain) {
  tree().click("C:\\PICTURES");
  record();
  tree().click("C:\\PICTURES");
  EXPECT_THAT(events(), ElementsAre("FolderClick C:\\Pictures\\", "NodeClick C:\\PICTURES", "Click"));
}

TEST_F(TreeClicks, OnAFloppyListItWithTheBusyPointer) {
  folder("A:\\letters\\old");
  tree().click("A:");
  EXPECT_THAT(tree().childKeys("A:"), ElementsAre("A:\\LETTERS"));
  EXPECT_THAT(tree().childKeys("A:\\LETTERS"), ElementsAre("A:\\LETTERS\\OLD"));
  EXPECT_THAT(pointers(), ElementsAre(kBusyArrowHourglass, kBusyDefault));
  EXPECT_EQ(control().Path(), "A:\\");
}

TEST_F(TreeClicks, OnAFolderOfAFloppyListItToo) {
  folder("B:\\letters\\old");
  folder("B:\\letters\\older");
  tree().click("B:");
  node("B:").Expanded(true);
  tree().click("B:\\LETTERS");
  EXPECT_EQ(node("B:\\LETTERS").Children(), 2);
}

TEST_F(TreeClicks, OnOtherDrivesListNothing) {
  shell().forgetReads();
  tree().click("C:");
  EXPECT_THAT(shell().reads(), IsEmpty());
  EXPECT_THAT(pointers(), IsEmpty());
}

class EmptyFloppy : public TreeClicks {
 protected:
  EmptyFloppy() { floppyReady_ = false; }
};

TEST_F(EmptyFloppy, AClickLeavesTheNodeWithoutChildrenAndShowsNoMessage) {
  record();
  tree().click("A:");
  EXPECT_EQ(node("A:").Children(), 0);
  EXPECT_THAT(events(), ElementsAre("FolderClick A:\\", "NodeClick A:", "Click"));
  EXPECT_THAT(platform().user().boxes(), IsEmpty());
}

TEST_F(TreeClicks, ExpandingAFolderListsItSortedWithTheHourglass) {
  node("C:\\PICTURES").Expanded(true);
  EXPECT_THAT(tree().childTexts("C:\\PICTURES"), ElementsAre("June", "May"));
  EXPECT_EQ(node("C:\\PICTURES\\MAY").Children(), 1);
  EXPECT_THAT(pointers(), ElementsAre(kBusyHourglass, kBusyDefault));
  EXPECT_FALSE(tree().isPaused());
}

TEST_F(TreeClicks, TheTreeIsPausedOnlyWhileANodeIsListed) {
  bool pausedInEvent = true;
  const Connection connection =
      control().Expand.Connect([&](const TreeNode&) { pausedInEvent = tree().isPaused(); });
  shell().forgetReads();
  std::size_t readBefore = 0;
  std::size_t readAfter = 0;
  tree().onRedraw = [&](bool resumes) { (resumes ? readAfter : readBefore) = shell().reads().size(); };
  tree().clickSign("C:\\PICTURES");
  EXPECT_FALSE(pausedInEvent);
  EXPECT_EQ(readBefore, 0U);
  EXPECT_GE(readAfter, 1U) << "the folder was listed during the pause";
  EXPECT_FALSE(tree().isPaused());
}

TEST_F(TreeClicks, ExpandingTwiceListsOnce) {
  record();
  tree().clickSign("C:\\PICTURES");
  const std::int32_t count = tree().Nodes().Count();
  tree().clickSign("C:\\PICTURES");
  shell().forgetReads();
  tree().clickSign("C:\\PICTURES");
  EXPECT_THAT(shell().reads(), IsEmpty());
  EXPECT_EQ(tree().Nodes().Count(), count);
  EXPECT_THAT(events(), ElementsAre("Expand C:\\PICTURES", "Click", "Collapse C:\\PICTURES", "Click",
                                    "Expand C:\\PICTURES", "Click"));
}

TEST_F(TreeClicks, ExpandingTheDesktopListsNothing) {
  tree().clickSign("Desktop");
  pointers();
  shell().forgetReads();
  tree().clickSign("Desktop");
  EXPECT_THAT(pointers(), IsEmpty());
  EXPECT_THAT(shell().reads(), IsEmpty());
}

TEST_F(TreeClicks, AFolderThatVanishedExpandsToWhatWasKnown) {
  removeFolder("C:\\Pictures");
  node("C:\\PICTURES").Expanded(true);
  EXPECT_EQ(node("C:\\PICTURES").Children(), 1);
}

TEST_F(TreeClicks, ADoubleClickRaisesTheEventOfItsKindAndThenDblClick) {
  record();
  tree().doubleClick("C:\\PICTURES");
  EXPECT_THAT(events(), ElementsAre("FolderClick C:\\Pictures\\", "NodeClick C:\\PICTURES", "Click",
                                    "FolderDblClick C:\\Pictures", "DblClick", "Expand C:\\PICTURES"));
  const auto ofDoubleClicks = [this] {
    std::vector<std::string> raised = events();
    std::erase_if(raised,
                  [](const std::string& event) { return event.find("DblClick") == std::string::npos; });
    return raised;
  };
  tree().doubleClick("My Computer");
  EXPECT_THAT(ofDoubleClicks(), ElementsAre("MyComputerDblClick", "DblClick"));
  tree().doubleClick("Desktop");
  EXPECT_THAT(ofDoubleClicks(), ElementsAre("DesktopDblClick", "DblClick"));
}

TEST_F(TreeClicks, ADoubleClickOnEmptySpaceRaisesDblClickOnly) {
  tree().clickEmptySpace();
  record();
  tree().DblClick();
  EXPECT_THAT(events(), ElementsAre("DblClick"));
}

TEST_F(TreeClicks, TheRightButtonRaisesTheEventOfItsKindAndSelectsNothing) {
  recordInput();
  tree().rightClick("C:\\PICTURES");
  EXPECT_THAT(events(), ElementsAre("MouseDown 2 0", "MouseUp 2 0", "FolderRightClick C:\\Pictures"));
  EXPECT_EQ(selectedKey(), "C:");
  tree().rightClick("My Computer");
  EXPECT_THAT(events(), ElementsAre("MouseDown 2 0", "MouseUp 2 0", "MyComputerRightClick"));
  tree().rightClick("Desktop");
  EXPECT_THAT(events(), ElementsAre("MouseDown 2 0", "MouseUp 2 0", "DesktopRightClick"));
}

TEST_F(TreeClicks, TheRightButtonOnEmptySpaceRaisesTheMouseEventsOnly) {
  recordInput();
  tree().clickEmptySpace(kRightButton);
  EXPECT_THAT(events(), ElementsAre("MouseDown 2 0", "MouseUp 2 0"));
}

TEST_F(TreeClicks, MouseKeysAndChecksAreRaisedAsTheyCome) {
  recordInput();
  tree().move(0, kShiftMask, 3, 4);
  tree().pressKey(40, kCtrlMask);
  EXPECT_THAT(events(), ElementsAre("MouseMove 0 1", "KeyDown 40 2", "FolderClick C:\\Pictures\\",
                                    "NodeClick C:\\PICTURES", "KeyUp 40 2"));
  tree().pressKey('C', 0, 'c');
  EXPECT_THAT(events(), ElementsAre("KeyDown 67 0", "KeyPress 99", "KeyUp 67 0"));
  control().Checkboxes(true);
  tree().clickCheckBox("C:\\PICTURES");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "NodeCheck C:\\PICTURES", "MouseUp 1 0", "Click"));
  EXPECT_TRUE(node("C:\\PICTURES").Checked());
}

TEST_F(TreeClicks, AFailureOfAHandlerShowsTheErrorBoxAndTheTreeStays) {
  const Connection connection = control().FolderClick.Connect(
      [](const std::string&) { throw RuntimeError(53, "The host has failed."); });
  platform().user().answers(kAnswerOK);
  tree().click("C:\\PICTURES");
  ASSERT_EQ(platform().user().boxes().size(), 1U);
  EXPECT_EQ(platform().user().boxes()[0].title, "Application Error");
  EXPECT_TRUE(has("C:\\PICTURES"));
  EXPECT_EQ(selectedKey(), "C:\\PICTURES");
}

TEST_F(TreeClicks, AsABrowseDialogAFolderIsOpenWhenSelectedElseWhenExpanded) {
  tree().click("C:\\PICTURES");
  EXPECT_EQ(tree().imageOf("C:\\PICTURES"), "Folder Open");
  tree().click("C:");
  node("C:\\PICTURES").Expanded(true);
  EXPECT_EQ(tree().imageOf("C:\\PICTURES"), "Folder Closed");

  control().ActAsBrowseDialog(false);
  tree().click("C:\\PICTURES");
  EXPECT_EQ(tree().imageOf("C:\\PICTURES"), "Folder Closed");
  node("C:\\PICTURES").Expanded(true);
  EXPECT_EQ(tree().imageOf("C:\\PICTURES"), "Folder Open");
}

}  // namespace
}  // namespace kestrel
