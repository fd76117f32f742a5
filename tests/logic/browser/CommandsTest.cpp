#include "BrowserTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

class BrowserCommands : public BrowserTest {
 protected:
  void SetUp() override {
    BrowserTest::SetUp();
    start();
  }

  void select(const std::vector<std::string>& names) { view().SelectedItems().files(names); }
};

TEST_F(BrowserCommands, CloseRaisesExitRequest) {
  click("btnFileClose");
  EXPECT_THAT(events(), ElementsAre("ExitRequest"));
}

TEST_F(BrowserCommands, TheThreeViewsSetTheMode) {
  click("btnViewSingle");
  EXPECT_EQ(view().View(), kViewSingle);
  EXPECT_EQ(checkedViews(), "btnViewSingle");
  click("btnViewFilmstrip");
  EXPECT_EQ(view().View(), kViewFilmstrip);
  EXPECT_EQ(checkedViews(), "btnViewFilmstrip");
  click("btnViewThumbnail");
  EXPECT_EQ(view().View(), kViewThumbnail);
  EXPECT_EQ(checkedViews(), "btnViewThumbnail");
}

TEST_F(BrowserCommands, DeleteHandsOverTheNamesWithTheFlag64AndRefreshes) {
  select({"C:\\Photos\\a.png", "C:\\Photos\\b.png"});
  click("btnImageDelete");
  ASSERT_EQ(files().operations.size(), 1u);
  const auto& operation = files().operations[0];
  EXPECT_EQ(operation.what, "delete");
  EXPECT_EQ(operation.buffer, "C:\\Photos\\a.png\0C:\\Photos\\b.png\0"s);
  EXPECT_EQ(operation.flags, 64);
  EXPECT_EQ(operation.owner, site().hWnd());
  EXPECT_THAT(view().calls, ElementsAre("Refresh"));
}

TEST_F(BrowserCommands, DeleteRefreshesAfterAFailureToo) {
  files().result = false;
  select({"C:\\Photos\\a.png"});
  click("btnImageDelete");
  EXPECT_THAT(view().calls, ElementsAre("Refresh"));
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_F(BrowserCommands, DeleteAndMoveWithNothingSelectedHandOverAnEmptyBuffer) {
  click("btnImageDelete");
  view().chosenFolder = "D:\\Other";
  click("btnImageMove");
  ASSERT_EQ(files().operations.size(), 2u);
  EXPECT_EQ(files().operations[0].buffer, "");
  EXPECT_EQ(files().operations[1].what, "move");
  EXPECT_EQ(files().operations[1].buffer, "");
}

TEST_F(BrowserCommands, CopyAsksForAFolderAndDoesNotRefresh) {
  select({"C:\\Photos\\a.png"});
  view().chosenFolder = "D:\\Other";
  click("btnImageCopy");
  EXPECT_THAT(view().calls,
              ElementsAre("Browse Copy To|Please select the folder to copy the selected file(s) to:|"));
  ASSERT_EQ(files().operations.size(), 1u);
  const auto& operation = files().operations[0];
  EXPECT_EQ(operation.what, "copy");
  EXPECT_EQ(operation.buffer, "C:\\Photos\\a.png\0"s);
  EXPECT_EQ(operation.folder, "D:\\Other");
  EXPECT_EQ(operation.flags, 0);
  EXPECT_EQ(operation.owner, site().hWnd());
}

TEST_F(BrowserCommands, MoveAsksForAFolderAndRefreshes) {
  select({"C:\\Photos\\a.png", "C:\\Photos\\b.png"});
  view().chosenFolder = "D:\\Other";
  click("btnImageMove");
  EXPECT_THAT(
      view().calls,
      ElementsAre("Browse Move To|Please select the folder to move the selected file(s) to:|", "Refresh"));
  ASSERT_EQ(files().operations.size(), 1u);
  const auto& operation = files().operations[0];
  EXPECT_EQ(operation.what, "move");
  EXPECT_EQ(operation.buffer, "C:\\Photos\\a.png\0C:\\Photos\\b.png\0"s);
  EXPECT_EQ(operation.folder, "D:\\Other");
  EXPECT_EQ(operation.flags, 0);
  EXPECT_EQ(operation.owner, site().hWnd());
}

TEST_F(BrowserCommands, CopyAndMoveDoNothingWithoutAnAnswer) {
  select({"C:\\Photos\\a.png"});
  click("btnImageCopy");
  click("btnImageMove");
  EXPECT_THAT(files().operations, IsEmpty());
  EXPECT_EQ(view().calls.size(), 2u) << "two questions, no refresh";
}

TEST_F(BrowserCommands, CopyTakesTheSelectionAfterTheAnswer) {
  select({"C:\\Photos\\a.png"});
  view().chosenFolder = "D:\\Other";
  view().whileBrowsing = [this] { select({"C:\\Photos\\b.png"}); };
  click("btnImageCopy");
  ASSERT_EQ(files().operations.size(), 1u);
  EXPECT_EQ(files().operations[0].buffer, "C:\\Photos\\b.png\0"s);
}

TEST_F(BrowserCommands, RenameAndInformationDoNothing) {
  select({"C:\\Photos\\a.png"});
  click("btnImageRename");
  click("btnImageInformation");
  EXPECT_THAT(files().operations, IsEmpty());
  EXPECT_THAT(view().calls, IsEmpty());
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_F(BrowserCommands, ContentsShowsTheFirstPageOfTheHelp) {
  click("btnHelpContents");
  ASSERT_EQ(platform().inner().helpShown().size(), 1u);
  EXPECT_THAT(platform().inner().helpShown()[0], testing::EndsWith("BrindleImgPro/default.html"));
}

TEST_F(BrowserCommands, TheStatusShowsTheDescriptionOfTheHighlightedCommand) {
  browser().Status("Ready");
  suite().highlight("btnImageCopy");
  EXPECT_EQ(panel("pnlStatus"), "Copies the selected image file(s) to another location");
  suite().highlight("mnuImage");
  EXPECT_EQ(panel("pnlStatus"), " ") << "it has no description";
  suite().highlight("");
  EXPECT_EQ(panel("pnlStatus"), "Ready");
  suite().highlight("btnViewSingle");
  browser().Status("Loading");
  EXPECT_EQ(panel("pnlStatus"), "Loading");
  suite().highlight("");
  EXPECT_EQ(panel("pnlStatus"), "Loading");
}

TEST_F(BrowserCommands, AMissingHelpBookIsABoxAndNoReport) {
  loseHelpBooks();
  user().answers(kAnswerOK);
  click("btnHelpContents");
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Help");
  EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
}

TEST_F(BrowserCommands, AboutShowsTitleAndVersion) {
  user().closesAbout();
  click("btnHelpAbout");
  const AppInfo& app = platform().App();
  ASSERT_EQ(user().abouts().size(), 1u);
  EXPECT_EQ(user().abouts()[0].title, app.Title());
  EXPECT_EQ(user().abouts()[0].versionText, "Version " + std::to_string(app.Major()) + "." +
                                                std::to_string(app.Minor()) + "." +
                                                std::to_string(app.Revision()));
  EXPECT_FALSE(user().abouts()[0].hasPicture);
}

TEST_F(BrowserCommands, AFailureInACommandIsReportedAndTheControlWorksOn) {
  select({"C:\\Photos\\a.png"});
  files().during = [] { throw RuntimeError(70, "Permission denied"); };
  user().answers(kAnswerOK);
  click("btnImageDelete");
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("Module: ImageBrowserCtl"));
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("Procedure: mrgUI_CommandClick"));
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("Permission denied (70)"));
  files().during = nullptr;
  click("btnImageDelete");
  EXPECT_EQ(files().operations.size(), 2u);
}

}  // namespace
}  // namespace kestrel
