#include <new>

#include "ViewTest.h"
#include "base/RuntimeError.h"
#include "platform/thumbnailview/LargePictures.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ViewModes : public test::ViewTest {
 protected:
  void SetUp() override {
    fill(30);
    open();
    events_.clear();
  }
};

TEST_F(ViewModes, AChangeIsReportedOnce) {
  view().View(kViewSingle);
  view().View(kViewSingle);
  view().View(kViewThumbnail);
  EXPECT_THAT(events_, ElementsAre("view 2", "view 0"));
}

TEST_F(ViewModes, AreFromZeroToTwo) {
  for (const std::int32_t value : {-1, 3}) {
    try {
      view().View(value);
      ADD_FAILURE() << value;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kInvalidPropertyValue);
    }
  }
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(ViewModes, TheGridHasNoLargePicture) { EXPECT_EQ(view().largeItem(), -1); }

TEST_F(ViewModes, ThePictureShownIsSelected) {
  view().View(kViewSingle);
  EXPECT_EQ(view().largeItem(), 0);
  EXPECT_THAT(selected(), ElementsAre(0));
}

TEST_F(ViewModes, ASelectionOfSeveralStays) {
  view().selectOnly(3);
  view().key(Key::kRight, kShiftMask);
  view().View(kViewFilmstrip);
  EXPECT_THAT(selected(), ElementsAre(3, 4));
  EXPECT_EQ(view().largeItem(), 4);
}

TEST_F(ViewModes, TheSingleViewSelectsThePictureShownAlone) {
  view().selectOnly(3);
  view().key(Key::kRight, kShiftMask);
  view().View(kViewSingle);
  EXPECT_EQ(view().largeItem(), 4);
  EXPECT_THAT(selected(), ElementsAre(4)) << "commands mean what is visible";
}

TEST_F(ViewModes, InTheSingleViewNothingElseCanBeSelected) {
  view().selectOnly(3);
  view().View(kViewSingle);
  EXPECT_TRUE(view().key(Key::kSelectAll, kCtrlMask));
  EXPECT_THAT(selected(), ElementsAre(3));
  view().key(Key::kRight, kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(4));
  view().key(Key::kRight, kCtrlMask);
  EXPECT_THAT(selected(), ElementsAre(5));
  view().key(Key::kSpace, kCtrlMask);
  EXPECT_THAT(selected(), ElementsAre(5));
  view().select(9, true);
  view().select(5, false);
  EXPECT_THAT(selected(), ElementsAre(5));
  // On the picture, on its name, and below it.
  for (const std::int32_t y : {100, 385, 399}) {
    view().pointerDown(kLeftButton, kCtrlMask, {300, y});
    view().pointerUp(kLeftButton, kCtrlMask, {300, y});
    view().contextClick({300, y});
    EXPECT_THAT(selected(), ElementsAre(5)) << y;
  }
}

TEST_F(ViewModes, AChangeOfThePictureShownIsAChangeOfTheSelection) {
  view().View(kViewSingle);
  view().selectionChanges = 0;
  view().key(Key::kRight, 0);
  EXPECT_EQ(view().selectionChanges, 1);
}

TEST_F(ViewModes, ASelectionThatMovesWithThePageIsReported) {
  // The same place of the viewport is selected before and afterwards.
  view().layOut({600, 178}, metrics_);
  view().selectOnly(0);
  view().selectionChanges = 0;
  view().key(Key::kDown, 0);
  EXPECT_EQ(view().placeOf(4).cell.Top, 8);
  EXPECT_EQ(view().selectionChanges, 1);
}

TEST_F(ViewModes, ALargePictureWithoutMemoryIsShownAsTheThumbnail) {
  access_->atEndOfDecode([](const std::string&) { throw std::bad_alloc(); });
  view().View(kViewSingle);
  settle();
  EXPECT_EQ(view().factsOf(0).state, ItemState::kShown);
  EXPECT_FALSE(view().factsOf(0).notice.empty());
  EXPECT_EQ(view().largePicture().bitmap.width(), 128);
  EXPECT_FALSE(view().pictureOf(0).bitmap.empty());
}

TEST_F(ViewModes, ThePictureShownFollowsTheKeys) {
  view().View(kViewSingle);
  for (const Key key : {Key::kRight, Key::kDown, Key::kPageDown}) view().key(key, 0);
  EXPECT_EQ(view().largeItem(), 3);
  EXPECT_THAT(selected(), ElementsAre(3));
  view().key(Key::kPageUp, 0);
  EXPECT_EQ(view().largeItem(), 2);
  view().View(kViewFilmstrip);
  view().key(Key::kPageDown, 0);
  EXPECT_EQ(view().largeItem(), 2 + 5) << "five items of 116 fit into 600";
}

TEST_F(ViewModes, TheLargePictureIsLoadedAtItsSize) {
  view().View(kViewSingle);
  const PaintedPicture enlarged = view().largePicture();
  EXPECT_EQ(enlarged.bitmap.width(), 128) << "the thumbnail until then";
  // 400 by 300 fits into 584 by 362 and is not enlarged.
  EXPECT_EQ(enlarged.target, (Rectangle{100, 39, 400, 300}));
  settle();
  const PaintedPicture large = view().largePicture();
  EXPECT_EQ(large.bitmap.width(), 400);
  EXPECT_EQ(large.target, enlarged.target);
  EXPECT_NE(large.version, enlarged.version);
}

TEST_F(ViewModes, TheNeighborsAreLoadedToo) {
  view().selectOnly(5);
  view().View(kViewSingle);
  settle();
  view().key(Key::kRight, 0);
  EXPECT_EQ(view().largePicture().bitmap.width(), 400) << "at once";
  settle();
  view().key(Key::kLeft, 0);
  EXPECT_EQ(view().largePicture().bitmap.width(), 400);
}

TEST_F(ViewModes, ABrokenPictureHasNoLargeOne) {
  access_->put("31.jpg", {.size = 1, .modified = 1, .shade = 0, .broken = true});
  view().Refresh();
  settle();
  view().selectOnly(30);
  view().View(kViewSingle);
  settle();
  EXPECT_TRUE(view().largePicture().bitmap.empty());
  EXPECT_EQ(view().factsOf(30).state, ItemState::kBroken);
}

TEST_F(ViewModes, TheFocusItemIsInTheMiddleOfTheStrip) {
  view().selectOnly(20);
  view().View(kViewFilmstrip);
  const Rectangle cell = view().placeOf(20).cell;
  EXPECT_NEAR(cell.Left + cell.Width / 2, 300, 8);
}

TEST_F(ViewModes, TheSmallPictureIsFittedIntoItsBox) {
  const PaintedPicture picture = view().pictureOf(0);
  EXPECT_EQ(picture.bitmap.width(), 128);
  EXPECT_EQ(picture.target, (Rectangle{14, 14 + 16, 128, 96}));
}

TEST(LargePictures, AreLoadedAtASizeOfTheStoreOrADoubledOne) {
  EXPECT_EQ(LargePictures::sideFor({0, 0, 100, 90}), 128);
  EXPECT_EQ(LargePictures::sideFor({0, 0, 100, 129}), 256);
  EXPECT_EQ(LargePictures::sideFor({0, 0, 1024, 700}), 1024);
  EXPECT_EQ(LargePictures::sideFor({0, 0, 1025, 700}), 2048);
  EXPECT_EQ(LargePictures::sideFor({0, 0, 1000, 0}), 0);
}

}  // namespace
}  // namespace kestrel::thumbnails
