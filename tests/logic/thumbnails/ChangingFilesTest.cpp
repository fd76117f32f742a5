#include <new>

#include "FollowingTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;

/// Files of the folder get another content or another name while it is shown.
class ChangingFiles : public test::FollowingTest {};

TEST_F(ChangingFiles, AChangedFileKeepsItsPictureUntilTheNewOneIsThere) {
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

TEST_F(ChangingFiles, ABrokenFileThatIsMendedIsShown) {
  access_->put("d.jpg", {.size = 1, .modified = 2, .shade = 0, .broken = true});
  access_->reportChanged("d.jpg");
  ASSERT_TRUE(runUntil([&] { return view().factsOf(1).state == ItemState::kBroken; }));
  access_->put("d.jpg", {.size = 3, .modified = 3, .shade = 5});
  access_->reportChanged("d.jpg");
  ASSERT_TRUE(runUntil([&] { return view().factsOf(1).state == ItemState::kShown && view().settled(); }));
  EXPECT_EQ(shadeOf(1), 5);
}

TEST_F(ChangingFiles, AFileThatIsReplacedByOneOfEqualSizeAndTimeIsReadAgain) {
  access_->put("d.jpg", {.shade = 9, .changed = 7, .inode = 2});
  access_->reportChanged("d.jpg");
  ASSERT_TRUE(runUntil([&] { return shadeOf(1) == 9; }));
}

TEST_F(ChangingFiles, FilesOfEqualSizeAndTimeThatSwappedTheirNamesUnnoticedAreReadAgain) {
  access_->watchable(false);
  access_->put("b.jpg", {.shade = 2, .inode = 2});
  access_->put("f.jpg", {.shade = 6, .inode = 6});
  open("/network");
  access_->put("f.jpg", {.shade = 2, .changed = 9, .inode = 2});
  access_->put("b.jpg", {.shade = 6, .changed = 9, .inode = 6});
  view().Refresh();
  settle();
  EXPECT_EQ(shadeOf(0), 6);
  EXPECT_EQ(shadeOf(2), 2);
}

TEST_F(ChangingFiles, AFileThatIsReplacedByAnEqualOneWhileItIsReadIsReadAgain) {
  access_->put("e.jpg", {.shade = 5, .inode = 5});
  access_->atEndOfDecode([this](const std::string& name) {
    access_->atEndOfDecode(nullptr);
    access_->put(name, {.shade = 8, .changed = 9, .inode = 8});
  });
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return view().itemCount() == 4 && view().settled(); }));
  EXPECT_EQ(shadeOf(2), 8);
}

TEST_F(ChangingFiles, AFileThatIsTouchedOnlyIsNotReadAgain) {
  const std::size_t decoded = access_->begun().size();
  access_->reportChanged("d.jpg");
  access_->put("z.jpg");
  access_->reportChanged("z.jpg");
  ASSERT_TRUE(runUntilCount(4));
  EXPECT_EQ(access_->begun().size(), decoded + 1);
}

TEST_F(ChangingFiles, ARenamedFileKeepsItsPictureAndItsSelection) {
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

TEST_F(ChangingFiles, ARenamedFileThatKeepsItsPlaceIsShownWithItsName) {
  access_->rename("d.jpg", "e.jpg");
  view().invalid.clear();
  view().itemChanges = 0;
  access_->reportRenamed({{"d.jpg", "e.jpg"}});
  ASSERT_TRUE(runUntil([&] { return view().settled() && nameOf(1) == "e.jpg"; }));
  EXPECT_THAT(view().invalid, testing::Contains(Rectangle{0, 0, 600, 400}));
  EXPECT_GT(view().itemChanges, 0) << "for assistive technology";
}

TEST_F(ChangingFiles, ARenamedFileKeepsItsLargePicture) {
  view().View(kViewSingle);
  settle();
  const std::size_t decoded = access_->begun().size();
  ASSERT_EQ(view().largePicture().bitmap.width(), 400);
  access_->rename("d.jpg", "z.jpg");
  access_->put("z.jpg", {.shade = 1, .changed = 5});
  access_->reportRenamed({{"d.jpg", "z.jpg"}});
  ASSERT_TRUE(runUntil([&] { return view().settled() && nameOf(2) == "z.jpg"; }));
  EXPECT_EQ(view().largeItem(), 2);
  EXPECT_EQ(view().largePicture().bitmap.width(), 400);
  EXPECT_EQ(access_->begun().size(), decoded);
}

TEST_F(ChangingFiles, FilesThatAreRenamedDuringALoadAreLoadedByTheirNewNames) {
  events_.clear();
  const std::size_t before = access_->begun().size();
  access_->hold();
  view().Folder("/other");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  ASSERT_TRUE(access_->waitForBegun(before + 1)) << "b.jpg is at work, the others wait";
  view().selectOnly(2);
  access_->rename("b.jpg", "g.jpg");
  access_->rename("f.jpg", "a.jpg");
  access_->reportRenamed({{"b.jpg", "g.jpg"}, {"f.jpg", "a.jpg"}});
  ASSERT_TRUE(runUntil([this] { return nameOf(0) == "a.jpg"; }));
  access_->release();
  settle();
  EXPECT_THAT(names(), ElementsAre("/other/a.jpg", "/other/d.jpg", "/other/g.jpg"));
  for (std::int32_t item = 0; item < 3; ++item) {
    EXPECT_EQ(view().factsOf(item).state, ItemState::kShown) << item;
    EXPECT_EQ(shadeOf(item), 1) << item;
  }
  EXPECT_THAT(selected(), ElementsAre(0));
  EXPECT_EQ(std::count_if(events_.begin(), events_.end(),
                          [](const std::string& event) { return event.starts_with("loaded"); }),
            3);
  EXPECT_EQ(events_.back(), "complete");
}

TEST_F(ChangingFiles, FilesThatSwapTheirNamesDuringALoadHaveTheirOwnPictures) {
  access_->put("b.jpg", {.shade = 2, .inode = 2});
  access_->put("f.jpg", {.shade = 6, .inode = 6});
  const std::size_t before = access_->begun().size();
  access_->hold();
  view().Folder("/other");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 3; }));
  ASSERT_TRUE(access_->waitForBegun(before + 1));
  access_->put("f.jpg", {.shade = 2, .changed = 9, .inode = 2});
  access_->put("b.jpg", {.shade = 6, .changed = 9, .inode = 6});
  access_->reportRenamed({{"b.jpg", "t.jpg"}, {"f.jpg", "b.jpg"}, {"t.jpg", "f.jpg"}});
  access_->release();
  settle();
  EXPECT_THAT(names(), ElementsAre("/other/b.jpg", "/other/d.jpg", "/other/f.jpg"));
  EXPECT_EQ(shadeOf(0), 6);
  EXPECT_EQ(shadeOf(2), 2);
}

TEST_F(ChangingFiles, ARenamedFileMayReplaceAnother) {
  access_->remove("d.jpg");
  access_->put("f.jpg", {.shade = 1});
  os::FolderChanges changes;
  changes.changes.push_back({os::FolderChange::Kind::kRenamed, "f.jpg", "d.jpg"});
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntilCount(2));
  EXPECT_THAT(names(), ElementsAre("/pictures/b.jpg", "/pictures/f.jpg"));
  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(ChangingFiles, ASaveThroughATemporaryFileIsAChange) {
  access_->put("d.jpg", {.size = 5, .modified = 5, .shade = 7});
  os::FolderChanges changes;
  changes.changes.push_back({os::FolderChange::Kind::kRenamed, "d.jpg", ".d.jpg.tmp"});
  access_->report(std::move(changes));
  ASSERT_TRUE(runUntil([&] { return view().factsOf(1).bytes == 5 && view().settled(); }));
  EXPECT_EQ(view().itemCount(), 3);
  EXPECT_EQ(shadeOf(1), 7);
  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(ChangingFiles, AFileThatMayNotBeReadIsReadWhenItsPermissionsChange) {
  access_->put("e.jpg", {.shade = 4, .denied = true});
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 4 && view().settled(); }));
  EXPECT_EQ(view().factsOf(2).notice, "Permission is denied.");
  access_->put("e.jpg", {.shade = 4});
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([this] { return view().factsOf(2).state == ItemState::kShown; }));
  EXPECT_EQ(view().factsOf(2).notice, "");
  ASSERT_TRUE(runUntil([this] { return view().settled(); }));
  EXPECT_EQ(shadeOf(2), 4);
}

TEST_F(ChangingFiles, AFileThatMayNotBeReadIsTriedAgainByAnActivatedWindow) {
  access_->watchable(false);
  access_->put("e.jpg", {.shade = 4, .denied = true});
  open("/network");
  access_->put("e.jpg", {.shade = 4});
  view().activated();
  ASSERT_TRUE(runUntil([this] { return view().factsOf(2).state == ItemState::kShown; }));
}

TEST_F(ChangingFiles, AFileThatIsNoPictureIsNotReadAgainWhenItIsTouched) {
  access_->put("e.jpg", {.broken = true});
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 4 && view().settled(); }));
  const std::size_t decoded = access_->begun().size();
  access_->reportChanged("e.jpg");
  access_->put("z.jpg");
  access_->reportChanged("z.jpg");
  ASSERT_TRUE(runUntilCount(5));
  EXPECT_EQ(access_->begun().size(), decoded + 1);
}

TEST_F(ChangingFiles, RefreshReadsAFileAgainThatFailedForLackOfMemory) {
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

TEST_F(ChangingFiles, AFileThatChangesWhileItIsReadIsReadAgain) {
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

TEST_F(ChangingFiles, AFileThatIsReplacedWhileItIsReadDoesNotGetItsPicture) {
  access_->put("e.jpg", {.size = 1, .modified = 1, .shade = 1});
  access_->atEndOfDecode([this](const std::string& name) { access_->remove(name); });
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return access_->begun().back() == "e.jpg" && view().settled(); }));
  EXPECT_EQ(view().itemCount(), 3) << "it is gone";
  EXPECT_FALSE(store_->keeps("/pictures/e.jpg", 128));
}

TEST_F(ChangingFiles, AFileThatWasGivenUpIsReadWhenItsLastChangeIsReported) {
  std::uint64_t size = 1;
  access_->put("e.jpg", {.size = size});
  access_->atEndOfDecode(
      [this, &size](const std::string& name) { access_->put(name, {.size = ++size, .shade = 6}); });
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return view().itemCount() == 4 && view().settled(); }));
  ASSERT_EQ(view().factsOf(2).notice, "The file is being changed.");
  access_->atEndOfDecode(nullptr);
  // The view knows this version already, from its last attempt.
  ASSERT_EQ(view().factsOf(2).bytes, size);
  access_->reportChanged("e.jpg");
  ASSERT_TRUE(runUntil([&] { return view().factsOf(2).state == ItemState::kShown && view().settled(); }));
  EXPECT_EQ(shadeOf(2), 6);
}

TEST_F(ChangingFiles, AFileThatNeverRestsIsGivenUp) {
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
