// The browser with its real thumbnail view, tree and file operations, on the platform without windows.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "browser/frmImageBrowser.h"
#include "imaging/contract/Document.h"
#include "imaging/contract/Writer.h"
#include "platform/headless/Moorage.h"
#include "platform/headless/Platform.h"
#include "platform/headless/Site.h"
#include "platform/headless/controls/ThumbnailView.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

using headless::PathStyle;
using testing::ElementsAre;

class BrowserStory : public testing::TestWithParam<PathStyle> {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-story-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    headless::Setup setup;
    setup.pathStyle = GetParam();
    setup.scratch = scratch_;
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    modProcessing::Attach(*platform_);
    modProcessing::Main();
    for (const char* folder : {"Photos", "Other"}) {
      std::filesystem::create_directories(platform_->files().host(path(folder)));
    }
    for (const char* file : {"img2.png", "img10.png", "Lake.bmp"}) makePicture(inPhotos(file));
    window_ = std::make_unique<frmImageBrowser>();
    window_->Title("Browser");
    window_->Form().Show();
    window_->Form().Width(900);
    window_->Form().Height(600);
    window_->Browser().Path(path("Photos"));
    settle();
  }

  void TearDown() override {
    window_.reset();
    modProcessing::Detach();
    EXPECT_EQ(user().left(), "") << "still expected by the user";
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  IImageBrowserCtl& browser() { return window_->Browser(); }
  headless::User& user() { return platform_->user(); }
  headless::ThumbnailView& view() {
    return dynamic_cast<headless::ThumbnailView&>(browser().ObjectThumbnailView());
  }
  headless::Moorage& suite() { return dynamic_cast<headless::Moorage&>(browser().ObjectMoorage()); }
  void settle() { EXPECT_TRUE(view().settle()); }

  std::string path(const std::string& name) {
    return platform_->files().scratch() + platform_->files().separator() + name;
  }
  std::string inPhotos(const std::string& name) {
    return path("Photos") + platform_->files().separator() + name;
  }
  std::string inOther(const std::string& name) {
    return path("Other") + platform_->files().separator() + name;
  }
  bool exists(const std::string& file) { return platform_->files().exists(file); }

  void makePicture(const std::string& file) {
    const auto picture = platform_->CreateImgX();
    const Colour background(0x00336699);
    picture->Document().NewImage(40, 30, &background);
    picture->Writer().ToFile(file, file.ends_with("png") ? 2 : 6);
  }

  std::vector<std::string> names(Thumbnails& thumbnails) {
    std::vector<std::string> names;
    for (std::int32_t i = 1; i <= thumbnails.Count(); ++i) {
      names.push_back(platform_->FileHelpers().GetFileName(thumbnails.Item(i).Filename()));
    }
    return names;
  }
  std::vector<std::string> shown() { return names(browser().Thumbnails()); }

  std::unique_ptr<headless::Platform> platform_;
  std::unique_ptr<frmImageBrowser> window_;

 private:
  std::string scratch_;
};

TEST_P(BrowserStory, ShowsTheFolderThatThePathNames) {
  EXPECT_EQ(window_->Form().Caption(), "Photos - Browser");
  EXPECT_THAT(shown(), ElementsAre("img2.png", "img10.png", "Lake.bmp"));
  EXPECT_EQ(browser().Thumbnails().Item(1).Filename(), inPhotos("img2.png"));
  EXPECT_FALSE(suite().StatusPanel("Progress").Visible());
  EXPECT_EQ(suite().StatusPanel("pnlStatus").Caption(), " ");
}

TEST_P(BrowserStory, LeavesTheViewWithoutImagesOnTheDesktopAndComesBack) {
  browser().ObjectFolderBrowse().Nodes().Item("Desktop").Selected(true);
  settle();
  EXPECT_EQ(browser().Thumbnails().Count(), 0);
  EXPECT_EQ(view().EmptyText(),
            "This location does not support image files. Please select a folder from the list to the left.");
  browser().Path(path("Photos"));
  settle();
  EXPECT_EQ(browser().Thumbnails().Count(), 3);
}

TEST_P(BrowserStory, ADoubleClickShowsOnePicture) {
  view().doubleClick(1);
  EXPECT_EQ(view().View(), kViewSingle);
  EXPECT_TRUE(suite().Commands()("btnViewSingle").Checked());
  EXPECT_THAT(names(browser().SelectedItems()), ElementsAre("img10.png"));
}

TEST_P(BrowserStory, DeletesTheSelectedFilesAfterAQuestion) {
  view().click(0);
  user().answers(kAnswerYes);
  EXPECT_TRUE(suite().click("btnImageDelete"));
  settle();
  EXPECT_FALSE(exists(inPhotos("img2.png")));
  EXPECT_THAT(shown(), ElementsAre("img10.png", "Lake.bmp"));
}

TEST_P(BrowserStory, KeepsTheFilesWhenTheUserDeclines) {
  view().click(0);
  user().answers(kAnswerNo);
  EXPECT_TRUE(suite().click("btnImageDelete"));
  settle();
  EXPECT_TRUE(exists(inPhotos("img2.png")));
  EXPECT_EQ(browser().Thumbnails().Count(), 3);
}

TEST_P(BrowserStory, CopiesTheSelectedFilesToAFolder) {
  view().click(0);
  view().click(2, kCtrlMask);
  user().choosesFolder(path("Other"));
  EXPECT_TRUE(suite().click("btnImageCopy"));
  for (const char* file : {"img2.png", "Lake.bmp"}) {
    EXPECT_TRUE(exists(inPhotos(file))) << file;
    EXPECT_TRUE(exists(inOther(file))) << file;
  }
  EXPECT_FALSE(exists(inOther("img10.png")));
  EXPECT_EQ(browser().Thumbnails().Count(), 3);
}

TEST_P(BrowserStory, MovesTheSelectedFilesToAFolder) {
  view().click(1);
  user().choosesFolder(path("Other"));
  EXPECT_TRUE(suite().click("btnImageMove"));
  settle();
  EXPECT_FALSE(exists(inPhotos("img10.png")));
  EXPECT_TRUE(exists(inOther("img10.png")));
  EXPECT_THAT(shown(), ElementsAre("img2.png", "Lake.bmp"));
}

TEST_P(BrowserStory, TheContextMenuIsTheImageMenu) {
  user().picks("btnImageRename");
  view().contextClick(2);
  EXPECT_THAT(names(browser().SelectedItems()), ElementsAre("Lake.bmp"));
  EXPECT_EQ(browser().Thumbnails().Count(), 3);
}

TEST_P(BrowserStory, AHiddenBrowserEndsItsLoadAtOnceAndLoadsWhenItIsShownAgain) {
  browser().Path(path("Other"));
  settle();
  int loaded = 0;
  std::vector<bool> completed;
  const Connection each = view().ThumbnailLoaded.Connect([&](Thumbnail&, std::int32_t, bool&) { ++loaded; });
  const Connection end =
      view().FolderLoadComplete.Connect([&](bool canceled) { completed.push_back(canceled); });
  browser().Path(path("Photos"));
  ASSERT_THAT(completed, ElementsAre()) << "the load is under way";

  auto& site = Bind<headless::Site>(window_->Form(), "Browser");
  site.Visible(false);
  ASSERT_FALSE(completed.empty()) << "at once";
  EXPECT_THAT(completed, testing::Each(true));
  settle();
  EXPECT_EQ(loaded, 0);
  EXPECT_FALSE(suite().StatusPanel("Progress").Visible());

  site.Visible(true);
  settle();
  EXPECT_EQ(browser().Thumbnails().Count(), 3);
  EXPECT_EQ(loaded, 3);
  EXPECT_FALSE(completed.back());
}

TEST_P(BrowserStory, AWindowThatIsClosedAfterItsLoadIsNotLoadedAgain) {
  int started = 0;
  const Connection connection = view().FolderLoadStart.Connect([&](bool&) { ++started; });
  window_->Form().Unload();
  window_->Form().Show();
  settle();
  EXPECT_EQ(started, 0);
  EXPECT_EQ(browser().Thumbnails().Count(), 3);
}

INSTANTIATE_TEST_SUITE_P(Paths, BrowserStory, testing::Values(PathStyle::kSlash, PathStyle::kBackslash),
                         [](const auto& row) {
                           return std::string(row.param == PathStyle::kSlash ? "Slash" : "Backslash");
                         });

}  // namespace
}  // namespace kestrel
