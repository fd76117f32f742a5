#include "BrowserTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The container loses its host during a call, and destroys the browser after the call has returned.
class BrowserRetirement : public BrowserTest {
 protected:
  void SetUp() override {
    BrowserTest::SetUp();
    start();
    view().SelectedItems().files({"C:\\Photos\\a.png"});
  }

  void expectSilence() {
    forget();
    browser().ObjectFolderBrowse().FolderClick("C:\\Photos\\");
    browser().ObjectFolderBrowse().DesktopClick();
    suite().CommandClick(suite().Commands()("btnFileClose"));
    suite().CommandClick(suite().Commands()("btnImageDelete"));
    bool cancel = false;
    view().FolderLoadStart(cancel);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(view().calls, IsEmpty());
    EXPECT_NE(panel("pnlStatus"), "Searching for images...");
  }
};

TEST_F(BrowserRetirement, EndsTheLoadAndAllEvents) {
  int opened = 0;
  const Connection connection = view().ThumbnailOpen.Connect([&](Thumbnail&) { ++opened; });
  control().Retire();
  EXPECT_THAT(view().calls, ElementsAre("Clear"));
  view().Thumbnails().files({"C:\\Photos\\a.png"});
  view().ThumbnailOpen(view().Thumbnails().Item(1));
  EXPECT_EQ(opened, 0);
  expectSilence();
}

TEST_F(BrowserRetirement, InAnEventItIsTheLastEvent) {
  onEvent = [this](const std::string&) { control().Retire(); };
  browser().ObjectFolderBrowse().FolderClick("C:\\Photos\\");
  EXPECT_THAT(events(), ElementsAre("PathChange C:\\Photos\\"));
  EXPECT_FALSE(platform().Calls.Any());
  expectSilence();
}

TEST_F(BrowserRetirement, EventsAndWindowsCountAsCallsToTheOutside) {
  std::vector<bool> during;
  const auto note = [&] { during.push_back(platform().Calls.Any()); };
  onEvent = [&](const std::string&) { note(); };
  view().whileBrowsing = note;
  view().chosenFolder = "D:\\Other";
  files().during = note;
  browser().ObjectFolderBrowse().FolderClick("C:\\Photos\\");
  browser().ObjectFolderBrowse().DesktopClick();
  click("btnFileClose");
  click("btnImageDelete");
  click("btnImageCopy");
  click("btnImageMove");
  EXPECT_THAT(during, testing::AllOf(testing::SizeIs(8), testing::Each(true)));
  EXPECT_FALSE(platform().Calls.Any());
}

TEST_F(BrowserRetirement, WhileTheUserChoosesAFolderNoFileIsCopiedOrMoved) {
  view().chosenFolder = "D:\\Other";
  view().whileBrowsing = [this] { control().Retire(); };
  click("btnImageMove");
  EXPECT_THAT(files().operations, IsEmpty());
  expectSilence();
}

TEST_F(BrowserRetirement, DuringAnOperationTheViewIsNotRefreshed) {
  files().during = [this] { control().Retire(); };
  click("btnImageDelete");
  EXPECT_EQ(files().operations.size(), 1u);
  EXPECT_THAT(view().calls, ElementsAre("Clear"));
}

}  // namespace
}  // namespace kestrel
