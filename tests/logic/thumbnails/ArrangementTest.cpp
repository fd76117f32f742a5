#include "platform/thumbnailview/Arrangement.h"

#include <gtest/gtest.h>

#include "ViewTest.h"

namespace kestrel::thumbnails {
namespace {

constexpr Metrics kPlain{};

TEST(Grid, HasAsManyColumnsAsFit) {
  // Cells of 140 with 8 between and around them: 4 need 600.
  EXPECT_EQ(Arrangement(kViewThumbnail, 10, {600, 400}, kPlain).columns(), 4);
  EXPECT_EQ(Arrangement(kViewThumbnail, 10, {599, 400}, kPlain).columns(), 3);
  EXPECT_EQ(Arrangement(kViewThumbnail, 10, {20, 400}, kPlain).columns(), 1);
  EXPECT_EQ(Arrangement(kViewThumbnail, 10, {0, 0}, kPlain).columns(), 1);
}

TEST(Grid, PlacesPictureAndNameInTheCell) {
  const Arrangement grid(kViewThumbnail, 10, {600, 400}, kPlain);
  const ItemPlace first = grid.place(0, 0);
  EXPECT_EQ(first.cell, (Rectangle{8, 8, 140, 162}));
  EXPECT_EQ(first.picture, (Rectangle{14, 14, 128, 128}));
  EXPECT_EQ(first.name, (Rectangle{8, 148, 140, 16})) << "as wide as the cell";
  EXPECT_EQ(grid.place(5, 0).cell, (Rectangle{156, 178, 140, 162}));
  EXPECT_EQ(grid.place(5, 100).cell, (Rectangle{156, 78, 140, 162}));
}

TEST(Grid, SpreadsTheRoomThatIsLeftOver) {
  const Arrangement grid(kViewThumbnail, 10, {640, 400}, kPlain);
  EXPECT_EQ(grid.place(0, 0).cell.Left, 8 + 5);
  EXPECT_EQ(grid.place(1, 0).cell.Left, 8 + 5 + 158);
}

TEST(Grid, ScalesWithTheScreen) {
  const Arrangement grid(kViewThumbnail, 10, {1200, 800}, {2, 32, 20});
  EXPECT_EQ(grid.columns(), 4);
  EXPECT_EQ(grid.place(0, 0).cell, (Rectangle{16, 16, 280, 324}));
  EXPECT_EQ(grid.place(0, 0).picture.Width, 256);
}

TEST(Grid, ScrollsByItsLength) {
  const Arrangement grid(kViewThumbnail, 10, {600, 400}, kPlain);
  EXPECT_EQ(grid.length(), 8 + 3 * 170);
  EXPECT_EQ(grid.scrollRange(), 118);
  EXPECT_EQ(Arrangement(kViewThumbnail, 4, {600, 400}, kPlain).scrollRange(), 0);
  EXPECT_EQ(Arrangement(kViewThumbnail, 0, {600, 400}, kPlain).length(), 0);
}

TEST(Grid, HasPositionsBeyond32Bits) {
  const std::int32_t count = 100'000'000;
  const Arrangement grid(kViewThumbnail, count, {150, 400}, kPlain);
  EXPECT_EQ(grid.length(), 8 + std::int64_t{170} * count);
  const std::int64_t end = grid.scrollRange();
  EXPECT_EQ(grid.visible(end).last, count);
  EXPECT_EQ(grid.place(count - 1, end).cell.Top, 400 - 8 - 162);
  EXPECT_EQ(grid.hit({75, 300}, end), count - 1);
}

TEST(Grid, ShowsTheItemsOfWhichAPartIsVisible) {
  const Arrangement grid(kViewThumbnail, 100, {600, 400}, kPlain);
  EXPECT_EQ(grid.visible(0), (ItemRange{0, 12}));
  // The first row ends at 170; the fourth begins at 518.
  EXPECT_EQ(grid.visible(169), (ItemRange{0, 16}));
  EXPECT_EQ(grid.visible(170), (ItemRange{4, 16}));
  EXPECT_EQ(grid.visible(118), (ItemRange{0, 12}));
  EXPECT_EQ(grid.visible(119), (ItemRange{0, 16}));
  EXPECT_EQ(Arrangement(kViewThumbnail, 5, {600, 400}, kPlain).visible(0), (ItemRange{0, 5}));
}

TEST(Grid, IsHitInsideOfCells) {
  const Arrangement grid(kViewThumbnail, 6, {600, 400}, kPlain);
  EXPECT_EQ(grid.hit({8, 8}, 0), 0);
  EXPECT_EQ(grid.hit({147, 169}, 0), 0);
  EXPECT_EQ(grid.hit({148, 20}, 0), -1);
  EXPECT_EQ(grid.hit({20, 170}, 0), -1);
  EXPECT_EQ(grid.hit({160, 180}, 0), 5);
  EXPECT_EQ(grid.hit({310, 180}, 0), -1) << "behind the last item";
  EXPECT_EQ(grid.hit({20, 20}, 170), 4);
}

TEST(Grid, ScrollsAsFarAsNeededToShowAnItem) {
  const Arrangement grid(kViewThumbnail, 100, {600, 400}, kPlain);
  EXPECT_EQ(grid.scrollToShow(5, 0), 0) << "visible as a whole";
  EXPECT_EQ(grid.scrollToShow(8, 0), 118);
  EXPECT_EQ(grid.scrollToShow(0, 118), 0);
  EXPECT_EQ(grid.scrollToShow(99, 0), grid.scrollRange());
}

TEST(FilmStrip, HasALargePictureAboveARow) {
  const Arrangement strip(kViewFilmstrip, 20, {600, 400}, kPlain);
  // Cells of 108 by 130, with 8 around them.
  EXPECT_EQ(strip.strip(), (Rectangle{0, 254, 600, 146}));
  EXPECT_EQ(strip.large(), (Rectangle{8, 8, 584, 238}));
  EXPECT_EQ(strip.place(0, 0).cell, (Rectangle{8, 262, 108, 130}));
  EXPECT_EQ(strip.place(1, 0).cell, (Rectangle{124, 262, 108, 130}));
  EXPECT_TRUE(strip.scrollsSideways());
  EXPECT_EQ(strip.length(), 8 + 20 * 116);
  EXPECT_EQ(strip.visible(116), (ItemRange{1, 7}));
  EXPECT_EQ(strip.hit({130, 300}, 0), 1);
  EXPECT_EQ(strip.hit({130, 100}, 0), -1);
}

TEST(FilmStrip, HasSmallerPicturesInItsRowWhereItIsLow) {
  // The row has 40 % of the height: 120, of which 50 are names and gaps.
  const Arrangement low(kViewFilmstrip, 20, {600, 300}, kPlain);
  EXPECT_EQ(low.strip(), (Rectangle{0, 180, 600, 120}));
  EXPECT_EQ(low.place(0, 0).picture, (Rectangle{14, 194, 70, 70}));
  EXPECT_EQ(low.large(), (Rectangle{8, 8, 584, 164}));
  // At least 32 pixels a side.
  const Arrangement lower(kViewFilmstrip, 20, {600, 160}, kPlain);
  EXPECT_EQ(lower.place(0, 0).picture.Width, 32);
  EXPECT_EQ(lower.strip().Height, 82);
  EXPECT_EQ(lower.large().Height, 62);
  const Arrangement scaledStrip(kViewFilmstrip, 20, {1200, 320}, {2, 32, 20});
  EXPECT_EQ(scaledStrip.place(0, 0).picture.Width, 64);
}

TEST(FilmStrip, HasNoRowWhereThatLeavesNoLargePicture) {
  const Arrangement strip(kViewFilmstrip, 20, {600, 129}, kPlain);
  EXPECT_EQ(strip.strip(), (Rectangle{0, 129, 600, 0}));
  EXPECT_EQ(strip.large(), (Rectangle{8, 8, 584, 113}));
  EXPECT_EQ(Arrangement(kViewFilmstrip, 20, {600, 130}, kPlain).strip().Height, 82);
}

TEST(SingleView, IsOnePictureAboveItsName) {
  const Arrangement single(kViewSingle, 20, {600, 400}, kPlain);
  EXPECT_EQ(single.large(), (Rectangle{8, 8, 584, 362}));
  EXPECT_EQ(single.place(3, 0).name.Top, 378);
  EXPECT_EQ(single.scrollRange(), 0);
  EXPECT_TRUE(single.visible(0).empty());
}

TEST(Fitted, KeepsTheProportionsInTheMiddle) {
  EXPECT_EQ(fitted({400, 200}, {10, 20, 100, 100}), (Rectangle{10, 45, 100, 50}));
  EXPECT_EQ(fitted({200, 400}, {0, 0, 100, 100}), (Rectangle{25, 0, 50, 100}));
  EXPECT_EQ(fitted({100000, 1}, {0, 0, 100, 100}), (Rectangle{0, 49, 100, 1}));
}

TEST(Fitted, DoesNotEnlarge) { EXPECT_EQ(fitted({10, 10}, {0, 0, 100, 100}), (Rectangle{45, 45, 10, 10})); }

class LayOutTest : public test::ViewTest {};

TEST_F(LayOutTest, ANewWidthKeepsTheFirstVisibleRow) {
  fill(200);
  open();
  view().scrollTo(10 * 170 + 20);
  const std::int32_t first = view().visibleItems().first;
  ASSERT_EQ(first, 40);
  view().layOut({300, 400}, metrics_);
  EXPECT_TRUE(view().visibleItems().contains(first));
  EXPECT_EQ(view().placeOf(first).cell.Top, 8 - 20) << "where it was";
}

TEST_F(LayOutTest, AtTheBeginningItStaysThere) {
  fill(200);
  open();
  view().layOut({300, 400}, metrics_);
  EXPECT_EQ(view().scroll(), 0);
}

TEST_F(LayOutTest, ScrollPositionsAreClamped) {
  fill(10);
  open();
  view().scrollTo(1'000'000);
  EXPECT_EQ(view().scroll(), 118);
  view().scrollBy(-500);
  EXPECT_EQ(view().scroll(), 0);
}

}  // namespace
}  // namespace kestrel::thumbnails
