#include "ViewTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Recalculation : public test::ViewTest {
 protected:
  void SetUp() override {
    fill(3);
    open();
    events_.clear();
  }

  void scaleTo(double value) { view().layOut({1200, 800}, {value, 32, 20}); }
  bool runUntilEvent(const std::string& event) {
    return runUntil([&] { return !events_.empty() && events_.back() == event; });
  }
};

TEST_F(Recalculation, MakesThumbnailsAgainWhereTheyAreTooSmall) {
  scaleTo(2);
  EXPECT_THAT(events_, IsEmpty()) << "not within the layout";
  ASSERT_TRUE(runUntilEvent("recalculation complete"));
  EXPECT_THAT(events_, ElementsAre("recalculating", "recalculated 1", "recalculated 2", "recalculated 3",
                                   "recalculation complete"));
  EXPECT_EQ(view().pictureOf(0).bitmap.width(), 256);
}

TEST_F(Recalculation, ShowsTheOldThumbnailsUntilThen) {
  access_->hold();
  scaleTo(2);
  ASSERT_TRUE(runUntilEvent("recalculating"));
  EXPECT_TRUE(view().loading());
  EXPECT_EQ(view().pictureOf(0).bitmap.width(), 128);
  EXPECT_EQ(view().pictureOf(0).target.Width, 256) << "enlarged";
  access_->release();
  settle();
}

TEST_F(Recalculation, IsNotNeededForASmallerScale) {
  scaleTo(2);
  ASSERT_TRUE(runUntilEvent("recalculation complete"));
  events_.clear();
  scaleTo(1);
  settle();
  calls_.runPending();
  EXPECT_THAT(events_, IsEmpty());
  EXPECT_EQ(view().pictureOf(0).bitmap.width(), 256);
}

TEST_F(Recalculation, IsNotNeededForAnotherView) {
  view().View(kViewFilmstrip);
  view().View(kViewSingle);
  view().View(kViewThumbnail);
  settle();
  EXPECT_THAT(events_, ElementsAre("view 1", "view 2", "view 0"));
}

TEST_F(Recalculation, WaitsForTheEndOfTheLoad) {
  access_->hold();
  view().Folder("/other");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  ASSERT_TRUE(access_->waitForBegun(4));
  access_->allow(1);
  ASSERT_TRUE(runUntil([this] { return view().factsOf(0).state == ItemState::kShown; }));
  scaleTo(2);
  access_->release();
  ASSERT_TRUE(runUntil([this] { return view().settled(); }));
  const auto complete = std::find(events_.begin(), events_.end(), "complete");
  ASSERT_NE(complete, events_.end());
  EXPECT_EQ(std::count(events_.begin(), complete, "recalculating"), 0);
  for (std::int32_t i = 0; i < 3; ++i) EXPECT_EQ(view().pictureOf(i).bitmap.width(), 256) << i;
}

TEST_F(Recalculation, CancelKeepsTheThumbnails) {
  const Connection cancels = view().RecalculatingThumbnailsStart.Connect([](bool& cancel) { cancel = true; });
  scaleTo(2);
  ASSERT_TRUE(runUntilEvent("recalculation complete"));
  EXPECT_THAT(events_, ElementsAre("recalculating", "recalculation complete"));
  settle();
  EXPECT_EQ(view().pictureOf(0).bitmap.width(), 128);
  EXPECT_FALSE(view().loading());
}

TEST_F(Recalculation, CancelWithoutAThumbnailLeavesASizeForTheNext) {
  for (const char* name : {"1.jpg", "2.jpg", "3.jpg"}) access_->remove(name);
  view().Refresh();
  settle();
  events_.clear();
  const std::size_t begun = access_->begun().size();
  access_->hold();
  access_->put("new.jpg");
  access_->reportChanged("new.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 1; }));
  ASSERT_TRUE(access_->waitForBegun(begun + 1));
  const Connection cancels = view().RecalculatingThumbnailsStart.Connect([](bool& cancel) { cancel = true; });
  scaleTo(2);
  ASSERT_TRUE(runUntilEvent("recalculation complete"));
  access_->release();
  access_->put("other.jpg");
  access_->reportChanged("other.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 2 && view().settled(); }));
  for (const std::int32_t item : {0, 1}) {
    EXPECT_EQ(view().factsOf(item).state, ItemState::kShown) << item;
    EXPECT_EQ(view().pictureOf(item).bitmap.width(), 256) << item;
  }
}

TEST_F(Recalculation, AnotherFolderEndsIt) {
  access_->hold();
  scaleTo(2);
  ASSERT_TRUE(runUntilEvent("recalculating"));
  view().Folder("/other");
  EXPECT_THAT(events_, ElementsAre("recalculating", "recalculation complete", "start"));
  access_->release();
  settle();
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(Recalculation, AFileThatGoesDoesNotHoldItUp) {
  makeWithThreads(4);
  open();
  access_->hold();
  scaleTo(2);
  ASSERT_TRUE(runUntilEvent("recalculating"));
  for (const char* name : {"1.jpg", "2.jpg", "3.jpg"}) {
    access_->remove(name);
    access_->reportGone(name);
  }
  ASSERT_TRUE(runUntilEvent("recalculation complete"));
  EXPECT_FALSE(view().loading());
}

TEST_F(Recalculation, AHandlerMayDestroyTheView) {
  for (const int when : {0, 1, 2}) {
    metrics_ = {};
    make();
    open();
    const auto destroy = [&](int now) {
      if (now == when) view_.reset();
    };
    const Connection start = view().RecalculatingThumbnailsStart.Connect([&](bool&) { destroy(0); });
    const Connection item = view().RecalculatedThumbnail.Connect([&](Thumbnail&) { destroy(1); });
    const Connection end = view().RecalculatingThumbnailsComplete.Connect([&] { destroy(2); });
    scaleTo(2);
    ASSERT_TRUE(runUntil([this] { return !view_; })) << when;
    calls_.runPending();
  }
}

}  // namespace
}  // namespace kestrel::thumbnails
