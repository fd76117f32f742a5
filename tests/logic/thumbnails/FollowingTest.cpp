#include <new>

#include "ViewTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using FileOf = test::FakeAccess::File;

/// The folder changes on the disk while it is shown.
class Following : public test::ViewTest {
 protected:
  void SetUp() override {
    putFiles();
    open();
    view().selectOnly(1);  // d.jpg
    events_.clear();
  }

  std::uint8_t shadeOf(std::int32_t item) { return view().pictureOf(item).bitmap.at(0, 0).r; }
  bool runUntilCount(std::int32_t count) {
    return runUntil([this, count] { return view().itemCount() == count && view().settled(); });
  }
  std::string nameOf(std::int32_t item) { return view().factsOf(item).label; }
  void putFiles() {
    for (const char* name : {"b.jpg", "d.jpg", "f.jpg"}) access_->put(name, {.shade = 1});
  }
  /// The folder cannot be read.
  void close(os::FileProblem problem) {
    for (const char* name : {"b.jpg", "d.jpg", "f.jpg"}) access_->remove(name);
    access_->fail(os::FileFailure{problem});
  }
  void reopen() {
    putFiles();
    access_->fail(std::nullopt);
  }
  /// The folder is removed.
  void loseFolder() {
    close(os::FileProblem::kMissing);
    os::FolderChanges changes;
    changes.folderGone = true;
    access_->report(std::move(changes));
    ASSERT_TRUE(runUntilCount(0));
  }
};

TEST_F(Following, ANewFileAppearsInItsPlace) {
  access_->put("c.jpg", {.shade = 9});
  access_->reportChanged("c.jpg");
  ASSERT_TRUE(runUntilCount(4));
  EXPECT_EQ(nameOf(1), "c.jpg");
  EXPECT_EQ(shadeOf(1), 9);
  EXPECT_THAT(selected(), ElementsAre(2)) << "d.jpg is still selected";
  EXPECT_EQ(view().focusItem(), 2);
  EXPECT_THAT(events_, IsEmpty()) << "no progress for a single file";
}

TEST_F(Following, AFileThatGoesVanishes) {
  access_->remove("b.jpg");
  access_->reportGone("b.jpg");
  ASSERT_TRUE(runUntilCount(2));
  EXPECT_THAT(selected(), ElementsAre(0));
}

TEST_F(Following, TheFocusMovesOnWhenItsFileGoes) {
  access_->remove("d.jpg");
  access_->reportGone("d.jpg");
  ASSERT_TRUE(runUntilCount(2));
  EXPECT_EQ(nameOf(view().focusItem()), "f.jpg");
  EXPECT_THAT(selected(), ElementsAre(1)) << "the next one, for the next command";
}

TEST_F(Following, TheFileAfterAllSelectedOnesIsSelectedWhenTheyGo) {
  for (const char* name : {"g.jpg", "h.jpg"}) access_->put(name);
  view().Refresh();
  settle();
  view().key(Key::kRight, kShiftMask);  // d.jpg and f.jpg, which has the focus
  for (const char* name : {"d.jpg", "f.jpg"}) access_->remove(name);
  view().Refresh();
  settle();
  EXPECT_EQ(nameOf(view().focusItem()), "g.jpg");
  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(Following, TheSameWhenTheyGoOneByOne) {
  for (const char* name : {"g.jpg", "h.jpg"}) access_->put(name);
  view().Refresh();
  settle();
  view().key(Key::kRight, kShiftMask);
  std::int32_t count = 5;
  for (const char* name : {"d.jpg", "f.jpg"}) {
    access_->remove(name);
    access_->reportGone(name);
    ASSERT_TRUE(runUntilCount(--count));
  }
  EXPECT_EQ(nameOf(view().focusItem()), "g.jpg");
  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(Following, TheLastFileIsSelectedWhenThoseAtTheEndGo) {
  view().key(Key::kRight, kShiftMask);
  for (const char* name : {"d.jpg", "f.jpg"}) access_->remove(name);
  view().Refresh();
  settle();
  EXPECT_EQ(nameOf(view().focusItem()), "b.jpg");
  EXPECT_THAT(selected(), ElementsAre(0));
}

TEST_F(Following, NothingIsSelectedInPlaceOfAFileThatWasOneOfSeveral) {
  view().key(Key::kLeft, kShiftMask);  // b.jpg and d.jpg
  access_->remove("d.jpg");
  access_->reportGone("d.jpg");
  ASSERT_TRUE(runUntilCount(2));
  EXPECT_THAT(selected(), ElementsAre(0));
}

TEST_F(Following, NothingIsSelectedInPlaceOfAFileThatWasNot) {
  view().select(1, false);
  access_->remove("d.jpg");
  access_->reportGone("d.jpg");
  ASSERT_TRUE(runUntilCount(2));
  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_EQ(nameOf(view().focusItem()), "f.jpg");
}

TEST_F(Following, TheFileThatIsSelectedNextIsVisible) {
  fill(60);
  view().Refresh();
  settle();
  // The first two rows, of which only the second one is visible.
  view().selectOnly(0);
  view().key(Key::kDown, kShiftMask);
  for (int i = 0; i < 3; ++i) view().key(Key::kRight, kShiftMask);
  view().scrollTo(170);
  for (std::int32_t item = 0; item < 8; ++item) access_->remove(nameOf(item));
  view().Refresh();
  settle();
  EXPECT_EQ(view().focusItem(), 0);
  EXPECT_EQ(nameOf(0), "9.jpg");
  EXPECT_GE(view().placeOf(0).cell.Top, 0);
}

TEST_F(Following, ChangesOfFocusAndSelectionAreReported) {
  access_->remove("d.jpg");
  view().focusChanges = view().selectionChanges = view().itemChanges = 0;
  access_->reportGone("d.jpg");
  ASSERT_TRUE(runUntilCount(2));
  EXPECT_GT(view().itemChanges, 0);
  EXPECT_GT(view().selectionChanges, 0);
  EXPECT_GT(view().focusChanges, 0);
  view().focusChanges = view().selectionChanges = 0;
  view().Clear();
  EXPECT_GT(view().selectionChanges, 0);
  EXPECT_GT(view().focusChanges, 0);
}

TEST_F(Following, AChangedFileKeepsItsPictureUntilTheNewOneIsThere) {
  access_->hold();
  access_->put("d.jpg", {.size = 2000, .modified = 2, .shade = 9});
  access_->reportChanged("d.jpg");
  const std::size_t before = access_->begun().size();
  ASSERT_TRUE(runUntil([&] { return view().factsOf(1).bytes == 2000; }));
  ASSERT_TRUE(access_->waitForBegun(before + 1));
  EXPECT_EQ(shadeOf(1), 1) << "no flicker";
  EXPECT_EQ(view().factsOf(1).state, ItemState::kShown);
  access_->release();
  settle();
  EXPECT_EQ(shadeOf(1), 9);
  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(Following, ABrokenFileThatIsMendedIsShown) {
  access_->put("d.jpg", {.size = 1, .modified = 2, .shade = 0, .broken = true});
  access_->reportChanged("d.jpg");
  ASSERT_TRUE(runUntil([&] { return view().factsOf(1).state == ItemState::kBroken; }));
  access_->put("d.jpg", {.size = 3, .modified = 3, .shade = 5});
  access_->reportChanged("d.jpg");
  ASSERT_TRUE(runUntil([&] { return view().factsOf(1).state == ItemState::kShown && view().settled(); }));
  EXPECT_EQ(shadeOf(1), 5);
}

TEST_F(Following, AFileThatIsTouchedOnlyIsNotReadAgain) {
  const std::size_t decoded = access_->begun().size();
  access_->reportChanged("d.jpg");
  access_->put("z.jpg");
  access_->reportChanged("z.jpg");
  ASSERT_TRUE(runUntilCount(4));
  EXPECT_EQ(access_->begun().size(), decoded + 1);
}

TEST_F(Following, ARenamedFileKeepsItsPictureAndItsSelection) {
  const std::size_t decoded = access_->begun().size();
  access_->remove("d.jpg");
  access_->put("z.jpg", {.shade = 1});
  os::FolderChanges changes;
  changes.changes.push_back({os::FolderChange::Kind::kRenamed, "z.jpg", "d.jpg"});
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntil([&] { return view().settled() && nameOf(2) == "z.jpg"; }));
  EXPECT_THAT(names(), ElementsAre("/pictures/b.jpg", "/pictures/f.jpg", "/pictures/z.jpg"));
  EXPECT_THAT(selected(), ElementsAre(2));
  EXPECT_EQ(access_->begun().size(), decoded);
}

TEST_F(Following, ARenamedFileMayReplaceAnother) {
  access_->remove("d.jpg");
  access_->put("f.jpg", {.shade = 1});
  os::FolderChanges changes;
  changes.changes.push_back({os::FolderChange::Kind::kRenamed, "f.jpg", "d.jpg"});
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntilCount(2));
  EXPECT_THAT(names(), ElementsAre("/pictures/b.jpg", "/pictures/f.jpg"));
  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(Following, ASaveThroughATemporaryFileIsAChange) {
  access_->put("d.jpg", {.size = 5, .modified = 5, .shade = 7});
  os::FolderChanges changes;
  changes.changes.push_back({os::FolderChange::Kind::kRenamed, "d.jpg", ".d.jpg.tmp"});
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntil([&] { return view().factsOf(1).bytes == 5 && view().settled(); }));
  EXPECT_EQ(view().itemCount(), 3);
  EXPECT_EQ(shadeOf(1), 7);
  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(Following, LostReportsAreMadeUpForByAListing) {
  access_->remove("b.jpg");
  access_->put("x.jpg");
  os::FolderChanges changes;
  changes.overflow = true;
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntil([&] { return view().itemCount() == 3 && nameOf(2) == "x.jpg" && view().settled(); }));
  EXPECT_THAT(selected(), ElementsAre(0));
}

TEST_F(Following, AFolderThatVanishesIsEmpty) {
  os::FolderChanges changes;
  changes.folderGone = true;
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntilCount(0));
  EXPECT_EQ(view().message(), "The folder no longer exists.");
  EXPECT_EQ(view().focusItem(), -1);
}

TEST_F(Following, AnEmptyFolderThatVanishesIsRepaintedWithTheSentence) {
  for (const char* name : {"b.jpg", "d.jpg", "f.jpg"}) access_->remove(name);
  view().Refresh();
  settle();
  view().invalid.clear();
  view().itemChanges = 0;
  os::FolderChanges changes;
  changes.folderGone = true;
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntil([this] { return view().message() == "The folder no longer exists."; }));
  EXPECT_THAT(view().invalid, testing::Contains(Rectangle{0, 0, 600, 400}));
  EXPECT_GT(view().itemChanges, 0) << "for assistive technology";
}

TEST_F(Following, IsNotDelayedByDecodersOnAllThreads) {
  access_->hold();
  const std::size_t begun = access_->begun().size();
  access_->put("e.jpg");
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 4; }));
  ASSERT_TRUE(access_->waitForBegun(begun + 1)) << "the only thread for decoders has one";
  access_->remove("b.jpg");
  access_->reportGone("b.jpg");
  EXPECT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  EXPECT_EQ(nameOf(0), "d.jpg");
}

TEST_F(Following, AFolderThatComesBackIsListedWhenTheWindowIsActivated) {
  loseFolder();
  reopen();
  view().activated();
  ASSERT_TRUE(runUntilCount(3));
  access_->remove("b.jpg");
  access_->reportGone("b.jpg");
  EXPECT_TRUE(runUntilCount(2)) << "it is watched again";
}

TEST_F(Following, AFolderThatComesBackIsShownAgain) {
  loseFolder();
  events_.clear();
  reopen();
  access_->reportChanged("pictures");  // in the folder above
  ASSERT_TRUE(runUntilCount(3));
  settle();
  EXPECT_EQ(view().message(), "");
  EXPECT_THAT(events_, IsEmpty());
  access_->remove("b.jpg");
  access_->reportGone("b.jpg");
  EXPECT_TRUE(runUntilCount(2)) << "it is watched again";
}

TEST_F(Following, AFolderThatIsReplacedAtOnceIsShown) {
  access_->put("pictures", {.kind = os::EntryKind::kFolder});
  os::FolderChanges changes;
  changes.folderGone = true;
  access_->remove("b.jpg");
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntilCount(2));
}

TEST_F(Following, TheSameFolderIsLoadedAgainOnRequestAfterItWasGone) {
  loseFolder();
  view().Folder("/pictures");
  settle();
  EXPECT_EQ(view().itemCount(), 0);
  reopen();
  events_.clear();
  view().Folder("/pictures");
  settle();
  EXPECT_EQ(view().itemCount(), 3);
  ASSERT_GE(events_.size(), 2U);
  EXPECT_EQ(events_[0], "start");
  EXPECT_EQ(events_[1], "found 3");
  events_.clear();
  view().Folder("/pictures");
  EXPECT_THAT(events_, IsEmpty()) << "a folder that is shown is not loaded again";
}

TEST_F(Following, AFolderWithoutPermissionIsListedWhenItsPermissionsChange) {
  close(os::FileProblem::kDenied);
  view().Refresh();
  settle();
  ASSERT_EQ(view().message(), "The folder \"/pictures\" cannot be read: permission is denied.");
  reopen();
  const int scans = access_->scans();
  access_->reportChanged("others");
  settle();
  EXPECT_EQ(access_->scans(), scans);
  access_->reportChanged("pictures");
  EXPECT_TRUE(runUntilCount(3));
}

TEST_F(Following, WhatIsVisibleStaysWhereItIsWhenFilesComeAboveIt) {
  fill(60);
  view().Refresh();
  settle();
  view().scrollTo(5 * 170);
  const std::int32_t first = view().visibleItems().first;
  const std::string name = nameOf(first);
  const Rectangle before = view().placeOf(first).cell;
  for (const char* early : {"0a.jpg", "0b.jpg", "0c.jpg", "0d.jpg"}) {
    access_->put(early);
    access_->reportChanged(early);
  }
  ASSERT_TRUE(runUntilCount(67));
  EXPECT_EQ(nameOf(first + 4), name);
  EXPECT_EQ(view().placeOf(first + 4).cell, before);
}

TEST_F(Following, FilesThatComeDuringALoadAreReported) {
  makeWithThreads(5);
  access_->hold();
  view().Folder("/other");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  access_->put("a.jpg");
  access_->reportChanged("a.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 4; }));
  access_->release();
  settle();
  EXPECT_EQ(std::count_if(events_.begin(), events_.end(),
                          [](const std::string& event) { return event.starts_with("loaded"); }),
            4);
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(Following, AFileThatGoesDuringALoadDoesNotHoldItUp) {
  makeWithThreads(4);
  access_->hold();
  view().Folder("/other");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  access_->remove("b.jpg");
  access_->remove("d.jpg");
  access_->remove("f.jpg");
  for (const char* name : {"b.jpg", "d.jpg", "f.jpg"}) access_->reportGone(name);
  ASSERT_TRUE(runUntil([this] { return !view().loading(); }));
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(Following, AnActivatedWindowListsAFolderThatCannotBeWatched) {
  access_->watchable(false);
  open("/network");
  events_.clear();
  access_->put("c.jpg");
  view().activated();
  ASSERT_TRUE(runUntilCount(4));
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(Following, AnActivatedWindowDoesNotListAWatchedFolder) {
  const int scans = access_->scans();
  view().activated();
  settle();
  EXPECT_EQ(access_->scans(), scans);
}

TEST_F(Following, RefreshReadsAFileAgainThatFailedForLackOfMemory) {
  access_->atEndOfDecode([](const std::string&) { throw std::bad_alloc(); });
  access_->put("e.jpg", {.shade = 4});
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 4 && view().settled(); }));
  EXPECT_EQ(view().factsOf(2).state, ItemState::kBroken);
  EXPECT_FALSE(view().factsOf(2).notice.empty());
  EXPECT_FALSE(store_->keepsFailure("/pictures/e.jpg")) << "the file is not to blame";
  EXPECT_EQ(shadeOf(1), 1) << "the others are shown";
  access_->atEndOfDecode(nullptr);
  view().Refresh();
  settle();
  EXPECT_EQ(view().factsOf(2).state, ItemState::kShown);
  EXPECT_EQ(shadeOf(2), 4);
}

TEST_F(Following, RefreshKeepsPicturesAndSelection) {
  const std::size_t decoded = access_->begun().size();
  access_->put("a.jpg");
  view().Refresh();
  EXPECT_EQ(view().itemCount(), 3) << "nothing vanishes meanwhile";
  settle();
  EXPECT_THAT(events_, ElementsAre("start", "found 4", "loaded 1 100%", "complete"));
  EXPECT_THAT(selected(), ElementsAre(2));
  EXPECT_EQ(access_->begun().size(), decoded + 1);
}

TEST_F(Following, TheWatchEndsWithTheFolder) {
  EXPECT_TRUE(access_->watching());
  view().Clear();
  // The watch ends on a worker thread, in the order of its jobs.
  settle();
  std::mutex mutex;
  std::condition_variable ran;
  bool done = false;
  workers_->later([&] {
    const std::lock_guard lock(mutex);
    done = true;
    ran.notify_all();
  });
  std::unique_lock lock(mutex);
  ASSERT_TRUE(ran.wait_for(lock, std::chrono::minutes(1), [&] { return done; }));
  EXPECT_FALSE(access_->watching());
}

// -- Files that change while they are read ----------------------------------------------------------------

TEST_F(Following, AFileThatChangesWhileItIsReadIsReadAgain) {
  access_->put("e.jpg", {.size = 1, .modified = 1, .shade = 1});
  access_->atEndOfDecode([this](const std::string& name) {
    access_->atEndOfDecode(nullptr);
    access_->put(name, {.size = 2, .modified = 2, .shade = 8});
  });
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return view().itemCount() == 4 && view().settled(); }));
  EXPECT_EQ(nameOf(2), "e.jpg");
  EXPECT_EQ(shadeOf(2), 8);
  EXPECT_EQ(view().factsOf(2).bytes, 2u);
}

TEST_F(Following, AFileThatIsReplacedWhileItIsReadDoesNotGetItsPicture) {
  access_->put("e.jpg", {.size = 1, .modified = 1, .shade = 1});
  access_->atEndOfDecode([this](const std::string& name) { access_->remove(name); });
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return access_->begun().back() == "e.jpg" && view().settled(); }));
  EXPECT_EQ(view().itemCount(), 3) << "it is gone";
  EXPECT_FALSE(store_->keeps("/pictures/e.jpg", 128));
}

TEST_F(Following, AFileThatNeverRestsIsGivenUp) {
  std::uint64_t size = 1;
  access_->put("e.jpg", {.size = size});
  access_->atEndOfDecode([this, &size](const std::string& name) { access_->put(name, {.size = ++size}); });
  const std::size_t before = access_->begun().size();
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return view().itemCount() == 4 && view().settled(); }));
  EXPECT_EQ(access_->begun().size() - before, 3u);
  EXPECT_EQ(view().factsOf(2).state, ItemState::kBroken);
  EXPECT_EQ(view().factsOf(2).notice, "The file is being changed.");
  access_->atEndOfDecode(nullptr);
  access_->put("e.jpg", {.size = 100, .modified = 5, .shade = 6});
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return view().factsOf(2).state == ItemState::kShown && view().settled(); }));
  EXPECT_EQ(shadeOf(2), 6);
}

}  // namespace
}  // namespace kestrel::thumbnails
