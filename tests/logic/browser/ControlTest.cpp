#include "BrowserTest.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class BrowserControl : public BrowserTest {};

// -- Start --------------------------------------------------------------------------------------------------

TEST_F(BrowserControl, ANewControlShowsItsMenuBar) {
  create();
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible()) << "before the property stage";
  site().InitProperties();
  EXPECT_TRUE(browser().ShowMenuBar());
  EXPECT_TRUE(suite().CommandBars()("Menu Bar").Visible());
}

TEST_F(BrowserControl, StoresShowMenuBarUnderItsName) {
  create();
  headless::BagOfProperties bag;
  bag.WriteProperty("ShowMenuBar", false, true);
  site().ReadProperties(bag);
  EXPECT_FALSE(browser().ShowMenuBar());
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
  ASSERT_EQ(bag.reads().size(), 1u);
  EXPECT_EQ(bag.reads()[0].name, "ShowMenuBar");
  EXPECT_TRUE(bag.reads()[0].defaultValue.ToBoolean());

  headless::BagOfProperties written;
  site().WriteProperties(written);
  ASSERT_EQ(written.entries().size(), 1u);
  EXPECT_EQ(written.entries()[0].name, "ShowMenuBar");
  EXPECT_FALSE(written.entries()[0].value.ToBoolean());
}

TEST_F(BrowserControl, ShowMenuBarNotifiesTheContainerOfAnotherValueOnly) {
  start();
  browser().ShowMenuBar(true);
  EXPECT_THAT(site().changedProperties(), IsEmpty());
  browser().ShowMenuBar(false);
  EXPECT_THAT(site().changedProperties(), ElementsAre("ShowMenuBar"));
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
  browser().ShowMenuBar(true);
  EXPECT_TRUE(suite().CommandBars()("Menu Bar").Visible());
}

TEST_F(BrowserControl, OnADesignSurfaceHasNoMenuBarAndNoHelp) {
  create(false);
  site().InitProperties();
  EXPECT_TRUE(browser().ShowMenuBar());
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
  browser().ShowMenuBar(false);
  browser().ShowMenuBar(true);
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
  EXPECT_THAT(view().calls, Contains("UserMode False"));
}

TEST_F(BrowserControl, StartsWithoutAFolderAndWithTheCommandsInStep) {
  create();
  site().InitProperties();
  EXPECT_EQ(view().EmptyText(), kNoFolder);
  EXPECT_EQ(view().Folder(), "");
  EXPECT_THAT(events(), ElementsAre("InvalidPathChange"));
  EXPECT_THAT(view().calls, ElementsAre("Clear", "UserMode True"));
  EXPECT_EQ(checkedViews(), "btnViewThumbnail");
}

TEST_F(BrowserControl, StartsInTheModeThatTheViewHas) {
  create();
  view().View(kViewFilmstrip);
  site().InitProperties();
  EXPECT_EQ(view().View(), kViewFilmstrip);
  EXPECT_EQ(checkedViews(), "btnViewFilmstrip");
}

TEST_F(BrowserControl, PutsTheTreeOnTheLeftAndTheThumbnailsOnTheRight) {
  start();
  const Rectangle area = suite().ClientArea();
  EXPECT_EQ(split().place(), area);
  EXPECT_EQ(split().Position(), 240);
  EXPECT_EQ(treeSite().place(), (Rectangle{0, 0, 240, area.Height}));
  EXPECT_GT(view().place().Left, 240);
  EXPECT_EQ(view().place().Left + view().place().Width, area.Width);
}

TEST_F(BrowserControl, FillsItsContainerAndKeepsTheDivider) {
  start();
  split().drag(300);
  site().Move(0, 0, 1200, 900);
  EXPECT_EQ(suite().place(), (Rectangle{0, 0, 1200, 900}));
  EXPECT_EQ(split().place(), suite().ClientArea());
  EXPECT_EQ(browser().DividerPosition(), 300);
  EXPECT_EQ(treeSite().place().Width, 300);
}

TEST_F(BrowserControl, FollowsTheClientAreaOfTheBars) {
  start();
  const std::int32_t before = split().place().Height;
  suite().showBar("Standard", false);
  EXPECT_EQ(split().place().Height, before + headless::Moorage::kBarHeight);
}

TEST_F(BrowserControl, WithoutAChildControlCannotBeMade) {
  const auto bare = platform().inner().createSite("ImageBrowserCtl", true);
  try {
    const ImageBrowserCtl control(*bare);
    FAIL() << "made without its controls";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 730);
  }
}

// -- Members ------------------------------------------------------------------------------------------------

TEST_F(BrowserControl, GivesAccessToItsControlsAndCollections) {
  start();
  EXPECT_EQ(&browser().ObjectMoorage(), &suite());
  EXPECT_EQ(&browser().ObjectThumbnailView(), &view());
  EXPECT_EQ(&browser().Thumbnails(), &view().Thumbnails());
  EXPECT_EQ(&browser().SelectedItems(), &view().SelectedItems());
  EXPECT_EQ(browser().ObjectFolderBrowse().TypeName(), "FolderTreeView");
}

TEST_F(BrowserControl, StatusWritesThePanelAndOneBlankForAnEmptyText) {
  start();
  browser().Status("Ready");
  EXPECT_EQ(panel("pnlStatus"), "Ready");
  browser().Status({});
  EXPECT_EQ(panel("pnlStatus"), " ");
}

TEST_F(BrowserControl, SetControlsRedrawsOnceAndChangesNothing) {
  start();
  std::vector<bool> before;
  for (std::int32_t i = 1; i <= suite().Commands().Count(); ++i) {
    before.push_back(suite().Commands().Item(i).Enabled());
  }
  // A change that waits for the redraw is displayed at the end.
  suite().Redraw(false);
  suite().Commands()("btnFileClose").Description("other");
  std::vector<std::string> updated;
  const Connection connection = suite().CommandUpdated.Connect(
      [&](docking::CommandModel& command) { updated.push_back(command.Name()); });
  browser().SetControls(false);
  EXPECT_THAT(updated, ElementsAre("btnFileClose"));
  std::vector<bool> after;
  for (std::int32_t i = 1; i <= suite().Commands().Count(); ++i) {
    after.push_back(suite().Commands().Item(i).Enabled());
  }
  EXPECT_EQ(after, before);
}

// -- The tree -----------------------------------------------------------------------------------------------

TEST_F(BrowserControl, AClickOnAFolderShowsItAndRaisesPathChange) {
  start();
  browser().ObjectFolderBrowse().FolderClick("C:\\Photos\\");
  EXPECT_EQ(view().Folder(), "C:\\Photos\\");
  EXPECT_EQ(view().EmptyText(),
            "There are no image files to view in this location. Please select a different folder from the "
            "list to the left.");
  EXPECT_THAT(events(), ElementsAre("PathChange C:\\Photos\\"));
}

TEST_F(BrowserControl, AFolderWithoutImagesRaisesPathChangeAllTheSame) {
  start();
  browser().ObjectFolderBrowse().FolderClick("C:\\Empty\\");
  view().load({});
  EXPECT_EQ(browser().Thumbnails().Count(), 0);
  EXPECT_EQ(view().EmptyText(),
            "There are no image files to view in this location. Please select a different folder from the "
            "list to the left.");
  EXPECT_THAT(events(), ElementsAre("PathChange C:\\Empty\\"));
}

TEST_F(BrowserControl, AClickOnTheDesktopLeavesTheViewWithoutImagesAndWithItsFolder) {
  start();
  browser().ObjectFolderBrowse().FolderClick("C:\\Photos\\");
  view().load({"C:\\Photos\\a.png"});
  forget();
  browser().ObjectFolderBrowse().DesktopClick();
  EXPECT_EQ(view().EmptyText(), kNoFolder);
  EXPECT_EQ(browser().Thumbnails().Count(), 0);
  EXPECT_EQ(view().Folder(), "C:\\Photos\\");
  EXPECT_THAT(events(), ElementsAre("InvalidPathChange"));
}

TEST_F(BrowserControl, AClickOnMyComputerDoesTheSame) {
  start();
  browser().ObjectFolderBrowse().FolderClick("C:\\Photos\\");
  view().load({"C:\\Photos\\a.png"});
  forget();
  browser().ObjectFolderBrowse().MyComputerClick();
  EXPECT_EQ(view().EmptyText(), kNoFolder);
  EXPECT_EQ(browser().Thumbnails().Count(), 0);
  EXPECT_EQ(view().Folder(), "C:\\Photos\\");
  EXPECT_THAT(events(), ElementsAre("InvalidPathChange"));
}

TEST_F(BrowserControl, F5ShowsFoldersAndThumbnailsAsTheyAreOnTheDisk) {
  makeFolder("C:\\Photos\\2001");
  start();
  browser().Path("C:\\Photos");
  makeFolder("C:\\Photos\\2002");
  forget();
  site().KeyDown(116, kShiftMask);
  EXPECT_THAT(view().calls, IsEmpty());
  site().KeyDown(116, 0);
  EXPECT_NE(browser().ObjectFolderBrowse().Nodes().Find("C:\\PHOTOS\\2002"), nullptr);
  EXPECT_THAT(view().calls, ElementsAre("Refresh"));
  EXPECT_EQ(browser().Path(), "C:\\Photos\\");
  EXPECT_THAT(events(), IsEmpty());
}

// -- Progress -----------------------------------------------------------------------------------------------

TEST_F(BrowserControl, ShowsTheProgressOfALoad) {
  start();
  EXPECT_FALSE(suite().StatusPanel("Progress").Visible());
  bool cancel = false;
  view().FolderLoadStart(cancel);
  EXPECT_FALSE(cancel);
  EXPECT_EQ(panel("pnlStatus"), "Searching for images...");
  EXPECT_FALSE(suite().StatusPanel("Progress").Visible());

  view().Thumbnails().files({"a.png", "b.png"});
  view().FolderSearchComplete(2);
  EXPECT_TRUE(suite().StatusPanel("Progress").Visible());
  EXPECT_EQ(panel("pnlStatus"), "Searching for images...") << "unchanged";

  view().ThumbnailLoaded(view().Thumbnails().Item(1), 0, cancel);
  EXPECT_DOUBLE_EQ(suite().StatusPanel("Progress").progress(), 0) << "below the minimum, 1";
  view().ThumbnailLoaded(view().Thumbnails().Item(1), 50, cancel);
  EXPECT_DOUBLE_EQ(suite().StatusPanel("Progress").progress(), 49.0 / 99) << "50 of 1 to 100";
  view().ThumbnailLoaded(view().Thumbnails().Item(2), 100, cancel);
  EXPECT_DOUBLE_EQ(suite().StatusPanel("Progress").progress(), 1);
  EXPECT_FALSE(cancel);

  view().FolderLoadComplete(false);
  EXPECT_FALSE(suite().StatusPanel("Progress").Visible());
  EXPECT_EQ(panel("pnlStatus"), " ");
}

TEST_F(BrowserControl, ACanceledLoadEndsTheProgressToo) {
  start();
  bool cancel = false;
  view().FolderLoadStart(cancel);
  view().FolderSearchComplete(7);
  view().FolderLoadComplete(true);
  EXPECT_FALSE(suite().StatusPanel("Progress").Visible());
  EXPECT_EQ(panel("pnlStatus"), " ");
}

TEST_F(BrowserControl, ShowsTheProgressOfARecalculation) {
  start();
  view().Thumbnails().files({"a.png", "b.png", "c.png"});
  bool cancel = false;
  view().RecalculatingThumbnailsStart(cancel);
  EXPECT_FALSE(cancel);
  EXPECT_TRUE(suite().StatusPanel("Progress").Visible());
  EXPECT_EQ(panel("pnlStatus"), "Recalculating thumbnails...");
  view().RecalculatedThumbnail(view().Thumbnails().Item(2));
  EXPECT_DOUBLE_EQ(suite().StatusPanel("Progress").progress(), 0.5) << "2 of 1 to 3";
  view().RecalculatingThumbnailsComplete();
  EXPECT_FALSE(suite().StatusPanel("Progress").Visible());
  EXPECT_EQ(panel("pnlStatus"), " ");
}

TEST_F(BrowserControl, EndsALoadAndARecalculationAtOnceWhenItIsHidden) {
  start();
  bool cancel = false;
  view().FolderLoadStart(cancel);
  ASSERT_FALSE(cancel);
  forget();
  site().Visible(false);
  EXPECT_THAT(view().calls, ElementsAre("Refresh")) << "it ends the load, and is canceled at its start";
  view().FolderLoadStart(cancel);
  EXPECT_TRUE(cancel);
  view().FolderLoadComplete(true);

  site().Visible(true);
  cancel = false;
  view().RecalculatingThumbnailsStart(cancel);
  forget();
  site().Visible(false);
  EXPECT_THAT(view().calls, ElementsAre("Refresh"));
}

TEST_F(BrowserControl, EndsTheLoadOfAClosedWindowAndLoadsWhenItIsShownAgain) {
  start();
  site().Visible(false);
  view().Thumbnails().files({"a.png"});
  bool cancel = false;
  view().ThumbnailLoaded(view().Thumbnails().Item(1), 50, cancel);
  EXPECT_TRUE(cancel);
  view().FolderLoadComplete(true);
  EXPECT_THAT(view().calls, IsEmpty());
  site().Visible(true);
  EXPECT_THAT(view().calls, ElementsAre("Refresh"));
  cancel = false;
  view().FolderLoadStart(cancel);
  EXPECT_FALSE(cancel);
}

TEST_F(BrowserControl, AClosedWindowStartsNoLoad) {
  start();
  site().Visible(false);
  bool cancel = false;
  view().FolderLoadStart(cancel);
  EXPECT_TRUE(cancel);
}

TEST_F(BrowserControl, ALoadThatWasCompleteIsNotRepeatedWhenItIsShownAgain) {
  start();
  view().load({"a.png"});
  forget();
  site().Visible(false);
  site().Visible(true);
  EXPECT_THAT(view().calls, IsEmpty());
}

TEST_F(BrowserControl, TheFirstShowAnnouncesTheFolderThatTheTreeHasSelected) {
  create();
  site().InitProperties();
  site().Move(0, 0, 800, 600);
  EXPECT_THAT(events(), ElementsAre("InvalidPathChange", "PathChange C:\\"));
  EXPECT_EQ(view().Folder(), "C:\\");
  EXPECT_EQ(browser().Path(), "C:\\");
}

TEST_F(BrowserControl, PathPassesToTheTreeAndBack) {
  makeFolder("C:\\Photos\\2001");
  start();
  browser().Path("C:\\Photos\\2001");
  EXPECT_EQ(browser().Path(), "C:\\Photos\\2001\\");
  EXPECT_EQ(browser().ObjectFolderBrowse().Path(), "C:\\Photos\\2001\\");
  EXPECT_EQ(view().Folder(), "C:\\Photos\\2001\\");
}

// -- The view -----------------------------------------------------------------------------------------------

TEST_F(BrowserControl, ADoubleClickShowsTheSingleView) {
  start();
  view().load({"C:\\Photos\\a.png"});
  view().ThumbnailDblClick(view().Thumbnails().Item(1));
  EXPECT_EQ(view().View(), kViewSingle);
  EXPECT_EQ(checkedViews(), "btnViewSingle");
}

TEST_F(BrowserControl, TheCommandsFollowAChangeMadeByTheView) {
  start();
  view().View(kViewFilmstrip);
  EXPECT_EQ(checkedViews(), "btnViewFilmstrip");
  view().View(kViewSingle);
  EXPECT_EQ(checkedViews(), "btnViewSingle");
  view().View(kViewThumbnail);
  EXPECT_EQ(checkedViews(), "btnViewThumbnail");
}

TEST_F(BrowserControl, AContextClickPopsUpTheImageMenu) {
  start();
  view().load({"C:\\Photos\\a.png"});
  user().picks("btnImageDelete");
  view().ThumbnailContextClick(view().Thumbnails().Item(1));
  EXPECT_EQ(files().operations.size(), 1u);
}

TEST_F(BrowserControl, TheDeleteKeyIsTheCommandWhileThatIsEnabled) {
  start();
  view().SelectedItems().files({"C:\\Photos\\a.png"});
  view().DeletePressed();
  ASSERT_EQ(files().operations.size(), 1u);
  EXPECT_EQ(files().operations[0].what, "delete");
  suite().Commands()("btnImageDelete").Enabled(false);
  view().DeletePressed();
  EXPECT_EQ(files().operations.size(), 1u);
}

TEST_F(BrowserControl, LeavesThumbnailOpenToTheHost) {
  start();
  view().load({"C:\\Photos\\a.png"});
  forget();
  view().ThumbnailOpen(view().Thumbnails().Item(1));
  EXPECT_EQ(view().View(), kViewThumbnail);
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_THAT(files().operations, IsEmpty());
}

}  // namespace
}  // namespace kestrel
