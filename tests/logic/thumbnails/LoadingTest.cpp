#include "ViewTest.h"
#include "base/RuntimeError.h"

namespace kestrel::thumbnails {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Loading : public test::ViewTest {};

TEST_F(Loading, RaisesItsEventsInOrder) {
  fill(4);
  open();
  EXPECT_THAT(events_, ElementsAre("start", "found 4", "loaded 1 25%", "loaded 2 50%", "loaded 3 75%",
                                   "loaded 4 100%", "complete"));
}

TEST_F(Loading, StartsAtOnceAndFindsLater) {
  fill(1);
  view().Folder("/pictures");
  EXPECT_EQ(view().Folder(), "/pictures");
  EXPECT_THAT(events_, ElementsAre("start"));
  EXPECT_TRUE(view().loading());
  settle();
  EXPECT_FALSE(view().loading());
}

TEST_F(Loading, AFolderWithoutImagesIsComplete) {
  access_->put("notes.txt");
  view().EmptyText("Nothing here.");
  view().Folder("/pictures");
  EXPECT_EQ(view().message(), "") << "while it is searched";
  settle();
  EXPECT_THAT(events_, ElementsAre("start", "found 0", "complete"));
  EXPECT_EQ(view().message(), "Nothing here.");
}

TEST_F(Loading, ListsPicturesInNaturalOrder) {
  for (const char* name : {"img10.jpg", "img2.jpg", "notes.txt", ".hidden.jpg", "IMG1.PNG"}) {
    access_->put(name);
  }
  open("/pictures/");
  EXPECT_THAT(names(), ElementsAre("/pictures/IMG1.PNG", "/pictures/img2.jpg", "/pictures/img10.jpg"));
}

TEST_F(Loading, ThumbnailsAreCountedFromOne) {
  fill(2);
  open();
  EXPECT_EQ(view().Thumbnails().Item(2).Index(), 2);
  for (const std::int32_t index : {0, 3}) {
    EXPECT_THROW(view().Thumbnails().Item(index), RuntimeError);
    EXPECT_THROW(view().SelectedItems().Item(index), RuntimeError);
  }
}

TEST_F(Loading, TheSameFolderIsNotLoadedAgain) {
  fill(1);
  open();
  events_.clear();
  view().Folder("/pictures");
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(Loading, FactsOfAPictureAreKnown) {
  access_->put("a.jpg", {.size = 12345, .modified = 987, .shade = 7});
  open();
  const ItemFacts facts = view().factsOf(0);
  EXPECT_EQ(facts.filename, "/pictures/a.jpg");
  EXPECT_EQ(facts.label, "a.jpg");
  EXPECT_EQ(facts.state, ItemState::kShown);
  EXPECT_EQ(facts.pictureSize, (Size{400, 300}));
  EXPECT_EQ(facts.bytes, 12345u);
  EXPECT_EQ(facts.modified, 987);
  EXPECT_EQ(view().pathOf(0), "/pictures/a.jpg");
}

TEST_F(Loading, ABrokenFileIsShownWithItsReason) {
  access_->put("1.jpg", {.size = 5, .modified = 1, .shade = 0, .broken = true});
  access_->put("2.jpg");
  open();
  EXPECT_EQ(view().factsOf(0).state, ItemState::kBroken);
  EXPECT_EQ(view().factsOf(0).notice, "The file is not a picture.");
  EXPECT_EQ(view().factsOf(1).state, ItemState::kShown);
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(Loading, AFolderThatCannotBeReadSaysWhy) {
  access_->fail(os::FileFailure{os::FileProblem::kDenied});
  open("/secret");
  EXPECT_THAT(events_, ElementsAre("start", "found 0", "complete"));
  EXPECT_EQ(view().message(), "The folder \"/secret\" cannot be read: permission is denied.");
}

// -- Priorities -------------------------------------------------------------------------------------------

TEST_F(Loading, TheVisibleItemsComeFirst) {
  fill(100);
  access_->hold();
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 100; }));
  ASSERT_TRUE(access_->waitForBegun(1));
  view().scrollTo(10 * 170);  // items 41 to 52
  access_->release();
  settle();
  const auto begun = access_->begun();
  for (std::size_t i = 1; i <= 12; ++i) {
    const int number = std::stoi(begun[i]);
    EXPECT_TRUE(number >= 41 && number <= 52) << i << ": " << begun[i];
  }
  EXPECT_EQ(begun.size(), 100u) << "each file is decoded once";
}

TEST_F(Loading, WhatScrolledAwayWaitsForItsTurn) {
  fill(100);
  access_->hold();
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 100; }));
  ASSERT_TRUE(access_->waitForBegun(1));
  view().scrollTo(10 * 170);
  view().scrollTo(20 * 170);  // items 81 to 92
  access_->allow(1);
  ASSERT_TRUE(access_->waitForBegun(2));
  EXPECT_EQ(access_->begun()[1], "81.jpg");
  access_->release();
  settle();
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(Loading, TheFolderIsLoadedToItsEndWhatIsVisibleOrNot) {
  fill(200);
  open();
  EXPECT_THAT(events_, Contains("loaded 200 100%"));
  EXPECT_EQ(events_.back(), "complete");
  EXPECT_EQ(view().factsOf(199).state, ItemState::kShown);
}

TEST_F(Loading, ResultsComeInBatchesThatLetPaintingIn) {
  fill(200);
  access_->hold();
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 200; }));
  access_->release();
  // Workers pause with 64 results; the decoder at work adds one.
  while (events_.back() != "complete") {
    const std::size_t before = events_.size();
    ASSERT_TRUE(calls_.runOne());
    EXPECT_LE(events_.size() - before, 33u) << "32 results and the end";
  }
}

TEST_F(Loading, WorkersPauseWhileTheOwnerIsBusy) {
  fill(200);
  access_->hold();
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 200; }));
  access_->release();
  // Nothing is taken over here, so the workers end up waiting. A job after theirs shows that they do.
  ASSERT_TRUE(access_->waitForBegun(64));
  for (int i = 0; i < 200; ++i) {
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
  }
  EXPECT_EQ(access_->begun().size(), 64u);
  settle();
  EXPECT_EQ(events_.back(), "complete");
}

// -- Cancellation -----------------------------------------------------------------------------------------

TEST_F(Loading, CancelAtTheStartLoadsNothing) {
  fill(3);
  const Connection cancels = view().FolderLoadStart.Connect([](bool& cancel) { cancel = true; });
  open();
  EXPECT_THAT(events_, ElementsAre("start", "canceled"));
  EXPECT_EQ(view().Thumbnails().Count(), 0);
  EXPECT_EQ(access_->scans(), 0);
}

TEST_F(Loading, CancelAtAThumbnailEndsTheLoad) {
  fill(50);
  const Connection cancels = view().ThumbnailLoaded.Connect(
      [](Thumbnail& item, std::int32_t, bool& cancel) { cancel = item.Index() == 3; });
  open();
  EXPECT_EQ(events_.back(), "canceled");
  EXPECT_EQ(std::count(events_.begin(), events_.end(), "canceled"), 1);
  EXPECT_EQ(events_[events_.size() - 2], "loaded 3 6%");
  EXPECT_EQ(view().Thumbnails().Count(), 50);
  const std::size_t decoded = access_->begun().size();
  view().scrollTo(1000);
  calls_.runPending();
  EXPECT_EQ(access_->begun().size(), decoded) << "nothing is loaded any more";
}

TEST_F(Loading, RefreshLoadsWhatACancelLeft) {
  fill(50);
  {
    const Connection cancels =
        view().ThumbnailLoaded.Connect([](Thumbnail&, std::int32_t, bool& cancel) { cancel = true; });
    open();
  }
  events_.clear();
  view().Refresh();
  settle();
  EXPECT_EQ(events_.front(), "start");
  EXPECT_EQ(events_.back(), "complete");
  EXPECT_EQ(view().factsOf(49).state, ItemState::kShown);
}

TEST_F(Loading, LeavingAFolderDoesNotWaitForItsDecoder) {
  fill(10);
  access_->hold();
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 10; }));
  ASSERT_TRUE(access_->waitForBegun(1));
  view().Folder("");  // the decoder is still held up
  EXPECT_EQ(access_->finished(), 0u);
  EXPECT_EQ(view().Thumbnails().Count(), 0);
  EXPECT_EQ(events_.back(), "canceled");
  access_->release();
  settle();
  EXPECT_EQ(events_.back(), "canceled") << "its result is dropped";
  EXPECT_EQ(access_->begun().size(), 1u) << "the others never begin";
}

TEST_F(Loading, ClosingTheViewDoesNotWaitForADecoder) {
  fill(10);
  access_->hold();
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 10; }));
  ASSERT_TRUE(access_->waitForBegun(1));
  view_.reset();
  EXPECT_EQ(access_->finished(), 0u);
  access_->release();
  workers_.reset();  // waits for the decoder
  calls_.runPending();
  EXPECT_EQ(access_->begun().size(), 1u);
}

TEST_F(Loading, LeavingAFolderStopsItsDecoders) {
  makeWithThreads(2);
  access_->noticeCancellation();
  access_->hold();
  fill(3);
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  ASSERT_TRUE(access_->waitForBegun(2));
  view().Folder("/other");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  // The threads are free although nobody has let the decoders go on.
  EXPECT_TRUE(access_->waitForBegun(4));
  EXPECT_EQ(access_->canceled(), 2u);
  access_->release();
  settle();
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(Loading, ClosingTheViewStopsItsDecoders) {
  access_->noticeCancellation();
  access_->hold();
  fill(1);
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 1; }));
  ASSERT_TRUE(access_->waitForBegun(1));
  view_.reset();
  // Its end waits for the job at work.
  workers_.reset();
  EXPECT_EQ(access_->canceled(), 1u);
}

TEST_F(Loading, ALargePictureThatIsNoLongerShownIsCanceled) {
  fill(30);
  open();
  access_->noticeCancellation();
  access_->hold();
  const std::size_t begun = access_->begun().size();
  view().View(kViewSingle);
  ASSERT_TRUE(access_->waitForBegun(begun + 1));
  view().selectOnly(20);
  ASSERT_TRUE(access_->waitForBegun(begun + 2));
  EXPECT_EQ(access_->begun()[begun], "1.jpg");
  EXPECT_EQ(access_->begun()[begun + 1], "21.jpg");
  access_->release();
  settle();
  EXPECT_EQ(view().largePicture().bitmap.width(), 400);
  view().selectOnly(0);
  settle();
  EXPECT_EQ(view().largePicture().bitmap.width(), 400) << "it is loaded when it is shown again";
}

TEST_F(Loading, AThumbnailThatScrolledAwayIsNotCanceledDuringTheLoad) {
  access_->noticeCancellation();
  access_->hold();
  fill(100);
  view().Folder("/pictures");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 100; }));
  ASSERT_TRUE(access_->waitForBegun(1));
  view().scrollTo(2000);
  access_->release();
  settle();
  EXPECT_EQ(access_->canceled(), 0u);
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(Loading, AnotherFolderEndsTheLoadFirst) {
  fill(2);
  access_->hold();
  view().Folder("/one");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 2; }));
  view().Folder("/two");
  access_->release();
  settle();
  EXPECT_THAT(events_, ElementsAre("start", "found 2", "canceled", "start", "found 2", "loaded 1 50%",
                                   "loaded 2 100%", "complete"));
  EXPECT_THAT(names(), ElementsAre("/two/1.jpg", "/two/2.jpg"));
}

TEST_F(Loading, ClearShowsNothingAndKeepsTheFolder) {
  fill(2);
  open();
  events_.clear();
  view().EmptyText("Not a folder.");
  view().Clear();
  EXPECT_EQ(view().Folder(), "/pictures");
  EXPECT_EQ(view().Thumbnails().Count(), 0);
  EXPECT_EQ(view().message(), "Not a folder.");
  view().Refresh();
  EXPECT_THAT(events_, IsEmpty());
  view().Folder("/pictures");
  settle();
  EXPECT_EQ(view().Thumbnails().Count(), 2);
}

TEST_F(Loading, NothingIsLoadedInDesignMode) {
  fill(2);
  view().UserMode(false);
  open();
  EXPECT_THAT(events_, IsEmpty());
  view().UserMode(true);
  settle();
  EXPECT_EQ(view().Thumbnails().Count(), 2);
}

// -- Handlers that change the view ------------------------------------------------------------------------

TEST_F(Loading, AHandlerMayChangeTheFolderInEachEvent) {
  fill(3);
  const auto leave = [this](const std::string& folder) {
    if (view().Folder() == folder) view().Folder(folder + "+");
  };
  const Connection start = view().FolderLoadStart.Connect([&](bool&) { leave("/a"); });
  const Connection found = view().FolderSearchComplete.Connect([&](std::int32_t) { leave("/a+"); });
  const Connection loaded =
      view().ThumbnailLoaded.Connect([&](Thumbnail&, std::int32_t, bool&) { leave("/a++"); });
  const Connection complete = view().FolderLoadComplete.Connect([&](bool canceled) {
    if (!canceled) leave("/a+++");
  });
  open("/a");
  EXPECT_EQ(view().Folder(), "/a++++");
  EXPECT_THAT(events_,
              ElementsAre("start", "canceled",                             //
                          "start", "found 3", "canceled",                  //
                          "start", "found 3", "loaded 1 33%", "canceled",  //
                          "start", "found 3", "loaded 1 33%", "loaded 2 66%", "loaded 3 100%",
                          "complete",  //
                          "start", "found 3", "loaded 1 33%", "loaded 2 66%", "loaded 3 100%", "complete"));
}

TEST_F(Loading, AHandlerMayDestroyTheViewInEachEvent) {
  fill(3);
  for (const std::string when :
       {"start", "found", "loaded", "complete", "double click", "open", "delete", "context", "view"}) {
    make();
    const auto destroy = [&](const std::string& now) {
      if (now == when) view_.reset();
    };
    const Connection start = view().FolderLoadStart.Connect([&](bool&) { destroy("start"); });
    const Connection found = view().FolderSearchComplete.Connect([&](std::int32_t) { destroy("found"); });
    const Connection loaded =
        view().ThumbnailLoaded.Connect([&](Thumbnail&, std::int32_t, bool&) { destroy("loaded"); });
    const Connection complete = view().FolderLoadComplete.Connect([&](bool) { destroy("complete"); });
    const Connection click = view().ThumbnailDblClick.Connect([&](Thumbnail&) { destroy("double click"); });
    const Connection opened = view().ThumbnailOpen.Connect([&](Thumbnail&) { destroy("open"); });
    const Connection deleted = view().DeletePressed.Connect([&] { destroy("delete"); });
    const Connection context = view().ThumbnailContextClick.Connect([&](Thumbnail&) { destroy("context"); });
    const Connection mode = view().ViewChange.Connect([&](std::int32_t) { destroy("view"); });
    view().Folder("/pictures");
    ASSERT_TRUE(runUntil([this] { return !view_ || view_->settled(); }));
    if (view_) view_->pointerDoubleClick(kLeftButton, 0, middleOf(0));
    if (view_) view_->key(Key::kEnter, 0);
    if (view_) view_->key(Key::kDelete, 0);
    if (view_) view_->contextKey();
    if (view_) view_->View(kViewSingle);
    EXPECT_FALSE(view_) << when;
    calls_.runPending();
  }
}

// -- The store --------------------------------------------------------------------------------------------

TEST_F(Loading, ThumbnailsComeFromTheStoreTheSecondTime) {
  fill(40);
  open();
  EXPECT_TRUE(store_->keeps("/pictures/40.jpg", 128));
  EXPECT_EQ(access_->begun().size(), 40u);
  make();
  open();
  EXPECT_EQ(access_->begun().size(), 40u);
  EXPECT_FALSE(view().pictureOf(0).bitmap.empty());
  EXPECT_EQ(view().factsOf(39).pictureSize, (Size{400, 300}));
}

TEST_F(Loading, FailuresAreStoredToo) {
  access_->put("1.jpg", {.size = 5, .modified = 1, .shade = 0, .broken = true});
  open();
  EXPECT_TRUE(store_->keepsFailure("/pictures/1.jpg"));
  make();
  open();
  EXPECT_EQ(access_->begun().size(), 1u);
  EXPECT_EQ(view().factsOf(0).notice, "The file is not a picture.");
}

TEST_F(Loading, AViewWithoutAStoreDecodes) {
  fill(3);
  store_ = nullptr;
  make();
  open();
  EXPECT_EQ(events_.back(), "complete");
}

}  // namespace
}  // namespace kestrel::thumbnails
