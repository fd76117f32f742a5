#include "FollowingTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Following : public test::FollowingTest {};

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
  access_->reportFolderGone();
  ASSERT_TRUE(runUntilCount(0));
  EXPECT_EQ(view().message(), "The folder no longer exists.");
  EXPECT_EQ(view().focusItem(), -1);
}

TEST_F(Following, AFolderThatVanishesWhileItIsListedIsEmpty) {
  events_.clear();
  access_->inNextScan([this] { access_->reportFolderGone(); });
  open("/other");
  EXPECT_EQ(view().itemCount(), 0);
  EXPECT_EQ(view().message(), "The folder no longer exists.");
  EXPECT_THAT(events_, ElementsAre("start", "found 0", "complete"));
}

TEST_F(Following, AFolderThatVanishesWhileItIsListedAgainIsEmpty) {
  access_->inNextScan([this] { access_->reportFolderGone(); });
  view().Refresh();
  settle();
  EXPECT_EQ(view().itemCount(), 0);
  EXPECT_EQ(view().message(), "The folder no longer exists.");
}

TEST_F(Following, AnEmptyFolderThatVanishesIsRepaintedWithTheSentence) {
  for (const char* name : {"b.jpg", "d.jpg", "f.jpg"}) access_->remove(name);
  view().Refresh();
  settle();
  view().invalid.clear();
  view().itemChanges = 0;
  access_->reportFolderGone();
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
  access_->remove("b.jpg");
  access_->reportFolderGone();
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

}  // namespace
}  // namespace kestrel::thumbnails
