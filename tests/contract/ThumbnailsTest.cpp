#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ContractTest.h"
#include "imaging/contract/ThumbnailView.h"
#include "platform/os/Paths.h"

namespace kestrel::contract {
namespace {

constexpr std::int32_t kPng = 2;
constexpr std::int32_t kEnter = 13;
constexpr std::int32_t kHome = 36;
constexpr std::int32_t kRight = 39;
constexpr std::int32_t kDelete = 46;

/// A view and a folder of pictures. The events of the view are recorded as words.
class Thumbnails : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    thumbnails_ = user().thumbnailsUser();
    folder_ = path("pictures");
    std::filesystem::create_directories(os::pathOf(user().host(folder_)));
    listen();
  }
  void TearDown() override {
    connections_.clear();
    thumbnails_.reset();
    ContractTest::TearDown();
  }

  ThumbnailsUser& thumbnails() { return *thumbnails_; }
  ThumbnailView& view() { return thumbnails_->view(); }
  const std::string& folder() const { return folder_; }
  std::string file(const std::string& name) {
    return folder_ + platform().FileHelpers().PathSeparator() + name;
  }
  void addPicture(const std::string& name) {
    const std::shared_ptr<ImgX> picture = platform().CreateImgX();
    picture->Document().NewImage(40, 30, nullptr);
    picture->Writer().ToFile(file(name), kPng);
  }
  void addPictures() {
    for (const char* name : {"a1.png", "a2.png", "a10.png"}) addPicture(name);
    std::ofstream(os::pathOf(user().host(file("notes.txt")))) << "words";
  }

  /// Loads the folder to its end.
  void load() {
    view().Folder(folder());
    waitForEnd();
  }
  void waitForEnd() {
    EXPECT_TRUE(thumbnails().waitFor([this] { return ended_; }));
    ended_ = false;
  }
  std::string take() { return std::exchange(words_, {}); }
  std::string selected() {
    std::string numbers;
    for (std::int32_t i = 1; i <= view().SelectedItems().Count(); ++i) {
      numbers += std::to_string(view().SelectedItems().Item(i).Index()) + " ";
    }
    return numbers;
  }

  /// Set by a test: its event is canceled.
  std::string canceled_;

 private:
  void add(const std::string& word) { words_ += (words_.empty() ? "" : " ") + word; }
  bool isCanceled(const std::string& event) const { return canceled_ == event; }
  std::string nameOf(Thumbnail& item) { return platform().FileHelpers().GetFileName(item.Filename()); }

  void listen() {
    connections_.push_back(view().FolderLoadStart.Connect([this](bool& cancel) {
      add("start");
      cancel = isCanceled("start");
    }));
    connections_.push_back(view().FolderSearchComplete.Connect(
        [this](std::int32_t count) { add("found:" + std::to_string(count)); }));
    connections_.push_back(
        view().ThumbnailLoaded.Connect([this](Thumbnail& item, std::int32_t percent, bool& cancel) {
          add(nameOf(item) + ":" + std::to_string(percent));
          cancel = isCanceled("loaded");
        }));
    connections_.push_back(view().FolderLoadComplete.Connect([this](bool cancelled) {
      add(cancelled ? "cancelled" : "complete");
      ended_ = true;
    }));
    connections_.push_back(
        view().ViewChange.Connect([this](std::int32_t mode) { add("view:" + std::to_string(mode)); }));
    connections_.push_back(
        view().ThumbnailContextClick.Connect([this](Thumbnail& item) { add("context:" + nameOf(item)); }));
    connections_.push_back(
        view().ThumbnailDblClick.Connect([this](Thumbnail& item) { add("double:" + nameOf(item)); }));
    connections_.push_back(
        view().ThumbnailOpen.Connect([this](Thumbnail& item) { add("open:" + nameOf(item)); }));
    connections_.push_back(view().DeletePressed.Connect([this] { add("delete"); }));
  }

  std::unique_ptr<ThumbnailsUser> thumbnails_;
  std::string folder_;
  std::string words_;
  bool ended_ = false;
  std::vector<Connection> connections_;
};

TEST_P(Thumbnails, AreNoneInANewView) {
  EXPECT_EQ(view().Folder(), "");
  EXPECT_EQ(view().View(), kViewThumbnail);
  EXPECT_EQ(view().Thumbnails().Count(), 0);
  EXPECT_EQ(view().SelectedItems().Count(), 0);
  EXPECT_EQ(errorOf([&] { view().Thumbnails().Item(1); }), 9);
  EXPECT_EQ(take(), "");
}

TEST_P(Thumbnails, OfAFolderAreReportedOneByOne) {
  addPictures();
  load();
  EXPECT_EQ(view().Folder(), folder());
  const std::string words = take();
  EXPECT_TRUE(words.starts_with("start found:3 a")) << words;
  EXPECT_TRUE(words.ends_with(":100 complete")) << words;
  for (const char* name : {"a1.png:", "a2.png:", "a10.png:"}) {
    EXPECT_NE(words.find(name), std::string::npos) << words;
  }
}

TEST_P(Thumbnails, LiveUntilAllHandlersOfTheirEventHaveReturned) {
  addPictures();
  load();
  int calls = 0;
  const std::string wanted = view().Thumbnails().Item(1).Filename();
  const auto clear = [this](Thumbnail&) { view().Clear(); };
  const auto read = [&](Thumbnail& item) {
    ++calls;
    EXPECT_EQ(item.Filename(), wanted);
    EXPECT_EQ(item.Index(), 0) << "it is in the view no more";
  };
  const Connection first = view().ThumbnailDblClick.Connect(clear);
  const Connection second = view().ThumbnailDblClick.Connect(read);
  thumbnails().doubleClick(1);
  EXPECT_EQ(calls, 1);
}

TEST_P(Thumbnails, AreInTheNaturalOrderOfTheirNamesCountedFromOne) {
  addPictures();
  load();
  ASSERT_EQ(view().Thumbnails().Count(), 3);
  EXPECT_EQ(view().Thumbnails().Item(1).Filename(), file("a1.png"));
  EXPECT_EQ(view().Thumbnails().Item(2).Filename(), file("a2.png"));
  EXPECT_EQ(view().Thumbnails().Item(3).Filename(), file("a10.png"));
  EXPECT_EQ(view().Thumbnails().Item(3).Index(), 3);
  EXPECT_EQ(errorOf([&] { view().Thumbnails().Item(0); }), 9);
  EXPECT_EQ(errorOf([&] { view().Thumbnails().Item(4); }), 9);
}

TEST_P(Thumbnails, OfAFolderWithoutPicturesAreNone) {
  load();
  EXPECT_EQ(take(), "start found:0 complete");
  EXPECT_EQ(view().Thumbnails().Count(), 0);
  view().EmptyText("No images.");
  EXPECT_EQ(view().EmptyText(), "No images.");
}

TEST_P(Thumbnails, AreNotLoadedIfTheStartIsCanceled) {
  addPictures();
  canceled_ = "start";
  load();
  const std::string words = take();
  EXPECT_TRUE(words.starts_with("start")) << words;
  EXPECT_TRUE(words.ends_with("cancelled")) << words;
  EXPECT_EQ(words.find("a1.png"), std::string::npos) << words;
}

TEST_P(Thumbnails, EndWhereTheirLoadIsCanceled) {
  addPictures();
  canceled_ = "loaded";
  load();
  const std::string words = take();
  EXPECT_TRUE(words.ends_with("cancelled")) << words;
  EXPECT_EQ(words.find(":100 "), std::string::npos) << "only one was loaded: " << words;
}

TEST_P(Thumbnails, AreReadAgainByARefresh) {
  addPictures();
  load();
  take();
  addPicture("a3.png");
  view().Refresh();
  waitForEnd();
  EXPECT_TRUE(take().starts_with("start found:4"));
  EXPECT_EQ(view().Thumbnails().Item(3).Filename(), file("a3.png"));
}

TEST_P(Thumbnails, AreClearedWhileTheFolderStays) {
  addPictures();
  load();
  take();
  view().Clear();
  EXPECT_EQ(view().Thumbnails().Count(), 0);
  EXPECT_EQ(view().Folder(), folder());
  view().Refresh();
  EXPECT_EQ(view().Thumbnails().Count(), 0);
  take();
  load();
  EXPECT_EQ(view().Thumbnails().Count(), 3) << "the same folder, written again";
}

TEST_P(Thumbnails, HaveThreeViews) {
  view().View(kViewFilmstrip);
  view().View(kViewFilmstrip);
  view().View(kViewSingle);
  view().View(kViewThumbnail);
  EXPECT_EQ(take(), "view:1 view:2 view:0");
  EXPECT_EQ(errorOf([&] { view().View(3); }), 380);
  EXPECT_EQ(errorOf([&] { view().View(-1); }), 380);
  EXPECT_EQ(view().View(), kViewThumbnail);
}

TEST_P(Thumbnails, AreSelectedByThePointer) {
  addPictures();
  load();
  thumbnails().click(2, 0);
  EXPECT_EQ(selected(), "2 ");
  thumbnails().click(3, kCtrlMask);
  EXPECT_EQ(selected(), "2 3 ");
  thumbnails().click(2, kCtrlMask);
  EXPECT_EQ(selected(), "3 ");
  thumbnails().click(1, kShiftMask);
  EXPECT_EQ(view().SelectedItems().Item(1).Index(), 1) << "in the order of the view";
  EXPECT_EQ(errorOf([&] { view().SelectedItems().Item(0); }), 9);
}

TEST_P(Thumbnails, ASelectionIsAPartOfAll) {
  EXPECT_EQ(&view().SelectedItems().All(), &view().Thumbnails());
  EXPECT_EQ(&view().Thumbnails().All(), &view().Thumbnails());
}

TEST_P(Thumbnails, AreSelectedByTheKeyboard) {
  addPictures();
  load();
  EXPECT_TRUE(thumbnails().pressKey(kHome, 0));
  EXPECT_EQ(selected(), "1 ");
  EXPECT_TRUE(thumbnails().pressKey(kRight, kShiftMask));
  EXPECT_EQ(selected(), "1 2 ");
  EXPECT_TRUE(thumbnails().pressKey('A', kCtrlMask));
  EXPECT_EQ(selected(), "1 2 3 ");
}

TEST_P(Thumbnails, ReportWhatTheUserDoesWithThem) {
  addPictures();
  load();
  take();
  thumbnails().doubleClick(2);
  EXPECT_EQ(take(), "double:a2.png");
  thumbnails().contextClick(3);
  EXPECT_EQ(take(), "context:a10.png");
  EXPECT_EQ(selected(), "3 ");
  thumbnails().pressKey(kEnter, 0);
  EXPECT_EQ(take(), "open:a10.png");
  thumbnails().pressKey(kDelete, 0);
  EXPECT_EQ(take(), "delete");
}

TEST_P(Thumbnails, AreGoneWithTheirFilesAndTheNextIsSelected) {
  addPictures();
  load();
  thumbnails().click(1, 0);
  std::filesystem::remove(os::pathOf(user().host(file("a1.png"))));
  view().Refresh();
  EXPECT_TRUE(thumbnails().waitFor([this] { return view().Thumbnails().Count() == 2; }));
  EXPECT_EQ(selected(), "1 ");
  EXPECT_EQ(view().SelectedItems().Item(1).Filename(), file("a2.png"));
}

TEST_P(Thumbnails, AskForAFolder) {
  std::filesystem::create_directories(os::pathOf(user().host(file("target"))));
  user().willChooseFolder(file("target"));
  EXPECT_EQ(view().BrowseForFolder("Please select the folder:", "Copy To", folder()), file("target"));
  user().willCancelFolderDialog();
  EXPECT_EQ(view().BrowseForFolder("Please select the folder:", "Copy To", ""), "");
}

KESTREL_ON_ALL_PLATFORMS(Thumbnails);

}  // namespace
}  // namespace kestrel::contract
