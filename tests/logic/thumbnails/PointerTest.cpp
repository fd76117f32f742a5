#include "ViewTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Pointer : public test::ViewTest {
 protected:
  void SetUp() override {
    fill(10);
    open();
    events_.clear();
  }

  void down(Point at, std::int32_t modifiers = 0) { view().pointerDown(kLeftButton, modifiers, at); }
  void moveTo(Point at) { view().pointerMove(0, at); }
  /// A file appears in the folder, and in the view.
  void come(const std::string& name) {
    const std::int32_t count = view().itemCount() + 1;
    access_->put(name);
    access_->reportChanged(name);
    ASSERT_TRUE(runUntil([this, count] { return view().itemCount() == count && view().settled(); }));
  }
  void up(Point at) { view().pointerUp(kLeftButton, 0, at); }
};

TEST_F(Pointer, AClickSelectsOneItem) {
  click(2);
  click(5);
  EXPECT_THAT(selected(), ElementsAre(5));
  EXPECT_EQ(view().focusItem(), 5);
}

TEST_F(Pointer, CtrlTogglesItems) {
  click(2);
  click(5, kCtrlMask);
  EXPECT_THAT(selected(), ElementsAre(2, 5));
  click(2, kCtrlMask);
  EXPECT_THAT(selected(), ElementsAre(5));
}

TEST_F(Pointer, ShiftSelectsFromTheItemClickedBefore) {
  click(2);
  click(5, kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(2, 3, 4, 5));
  click(0, kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(0, 1, 2));
}

TEST_F(Pointer, CtrlAndShiftAddARange) {
  click(0);
  click(3, kCtrlMask);
  click(5, kCtrlMask | kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(0, 3, 4, 5));
}

TEST_F(Pointer, OtherButtonsDoNotSelect) {
  view().pointerDown(kMiddleButton, 0, middleOf(3));
  view().pointerUp(kMiddleButton, 0, middleOf(3));
  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(Pointer, APressOnTheSelectionKeepsItUntilTheRelease) {
  click(2);
  click(5, kCtrlMask);
  down(middleOf(2));
  EXPECT_THAT(selected(), ElementsAre(2, 5));
  up(middleOf(2));
  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(Pointer, ADragTakesAllSelectedItems) {
  click(2);
  click(5, kCtrlMask);
  const Point at = middleOf(2);
  down(at);
  moveTo({at.X + 9, at.Y});
  EXPECT_EQ(view().drags, 0);
  moveTo({at.X + 10, at.Y});
  EXPECT_EQ(view().drags, 1);
  moveTo({at.X + 50, at.Y});
  up({at.X + 50, at.Y});
  EXPECT_EQ(view().drags, 1);
  EXPECT_THAT(selected(), ElementsAre(2, 5));
}

TEST_F(Pointer, ADragWithCtrlKeepsTheItemInTheSelection) {
  click(2);
  const Point at = middleOf(2);
  down(at, kCtrlMask);
  moveTo({at.X, at.Y + 30});
  EXPECT_EQ(view().drags, 1);
  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(Pointer, ADoubleClickIsReportedOnItemsOnly) {
  click(3);
  view().pointerDoubleClick(kLeftButton, 0, middleOf(3));
  view().pointerDoubleClick(kLeftButton, 0, {150, 20});
  view().pointerDoubleClick(kRightButton, 0, middleOf(3));
  EXPECT_THAT(events_, ElementsAre("double click 4"));
}

TEST_F(Pointer, AContextClickSelectsAnItemThatIsNotSelected) {
  click(2);
  EXPECT_TRUE(view().contextClick(middleOf(4)));
  EXPECT_THAT(selected(), ElementsAre(4));
  EXPECT_THAT(events_, ElementsAre("context 5"));
}

TEST_F(Pointer, AContextClickKeepsTheSelectionItIsIn) {
  click(2);
  click(4, kCtrlMask);
  EXPECT_TRUE(view().contextClick(middleOf(2)));
  EXPECT_THAT(selected(), ElementsAre(2, 4));
}

TEST_F(Pointer, AContextClickOnTheGroundClearsTheSelection) {
  click(2);
  EXPECT_FALSE(view().contextClick({150, 20}));
  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_THAT(events_, IsEmpty());
}

// Between the first two columns, above the second row.
constexpr Point kGround{151, 173};

TEST_F(Pointer, AClickOnTheGroundClearsTheSelection) {
  click(2);
  down(kGround);
  up(kGround);
  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_EQ(view().focusItem(), 2) << "the keyboard goes on from there";
}

TEST_F(Pointer, ARubberBandSelectsWhatItTouches) {
  click(9);
  down(kGround);
  moveTo({310, 200});
  EXPECT_THAT(selected(), ElementsAre(5, 6));
  EXPECT_EQ(view().rubberBand(), (Rectangle{151, 173, 160, 28}));
  moveTo({100, 160});
  EXPECT_THAT(selected(), ElementsAre(0));
  up({100, 160});
  EXPECT_THAT(selected(), ElementsAre(0));
  EXPECT_EQ(view().rubberBand(), Rectangle{});
}

TEST_F(Pointer, ARubberBandWithShiftAddsAndWithCtrlInverts) {
  click(5);
  down(kGround, kShiftMask);
  moveTo({310, 200});
  EXPECT_THAT(selected(), ElementsAre(5, 6));
  up({310, 200});
  down(kGround, kCtrlMask);
  moveTo({310, 160});
  EXPECT_THAT(selected(), ElementsAre(1, 2, 5, 6));
  moveTo({310, 200});
  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(Pointer, EscapeGivesTheRubberBandUp) {
  click(9);
  down(kGround, kShiftMask);
  moveTo({310, 200});
  EXPECT_TRUE(view().key(Key::kEscape, 0));
  EXPECT_THAT(selected(), ElementsAre(9));
  EXPECT_EQ(view().rubberBand(), Rectangle{});
}

TEST_F(Pointer, EscapeGivesBackTheSelectionBeforeTheRubberBand) {
  click(9);
  down(kGround);
  moveTo({310, 200});
  ASSERT_THAT(selected(), ElementsAre(5, 6));
  EXPECT_TRUE(view().key(Key::kEscape, 0));
  EXPECT_THAT(selected(), ElementsAre(9));
}

TEST_F(Pointer, ARubberBandBeyondTheEdgeScrolls) {
  down(kGround);
  moveTo({310, 390});
  EXPECT_FALSE(view().autoScrolls);
  moveTo({310, 420});
  EXPECT_TRUE(view().autoScrolls);
  const Rectangle before = view().rubberBand();
  view().autoScrollTick();
  const std::int64_t scrolled = view().scroll();
  EXPECT_EQ(scrolled, (420 - 400 + 1) / 4 + 1);
  EXPECT_EQ(view().rubberBand().Top, before.Top - scrolled) << "its begin moves with the content";
  while (view().scroll() < view().arrangement().scrollRange()) view().autoScrollTick();
  EXPECT_THAT(selected(), ElementsAre(5, 6, 9));
  up({310, 420});
  EXPECT_FALSE(view().autoScrolls);
}

TEST_F(Pointer, ARubberBandAboveTheEdgeScrollsBack) {
  view().scrollTo(118);
  down({151, 55});
  moveTo({151, -40});
  view().autoScrollTick();
  EXPECT_EQ(view().scroll(), 118 - 11);
}

TEST_F(Pointer, ARubberBandGoesOnWhenFilesCome) {
  click(9);
  down(kGround, kShiftMask);
  moveTo({310, 200});
  ASSERT_THAT(selected(), ElementsAre(5, 6, 9));
  come("0.jpg");
  EXPECT_EQ(view().rubberBand(), (Rectangle{151, 173, 160, 28}));
  EXPECT_THAT(selected(), ElementsAre(5, 6, 10)) << "what it touches now, and what was selected before it";
  moveTo({460, 200});
  EXPECT_THAT(selected(), ElementsAre(5, 6, 7, 10));
  EXPECT_TRUE(view().key(Key::kEscape, 0));
  EXPECT_THAT(selected(), ElementsAre(10));
}

TEST_F(Pointer, ARubberBandStaysInItsPlaceWhenFilesComeAboveIt) {
  fill(60);
  view().Refresh();
  settle();
  view().scrollTo(5 * 170);
  down(kGround);
  moveTo({310, 200});
  const Rectangle band = view().rubberBand();
  const std::int32_t first = selected().front();
  // A row of its own.
  for (const char* name : {"0a.jpg", "0b.jpg", "0c.jpg", "0d.jpg"}) come(name);
  EXPECT_EQ(view().rubberBand(), band);
  EXPECT_THAT(selected(), ElementsAre(first + 4, first + 5)) << "the same files";
}

TEST_F(Pointer, APressOnAnItemGoesOnWhenFilesCome) {
  click(2);
  click(5, kCtrlMask);
  down(middleOf(5));
  come("0.jpg");
  up(middleOf(6));
  EXPECT_THAT(selected(), ElementsAre(6));
}

TEST_F(Pointer, APressOnAnItemThatGoesIsOver) {
  click(2);
  click(5, kCtrlMask);
  down(middleOf(5));
  access_->remove("6.jpg");
  access_->reportGone("6.jpg");
  ASSERT_TRUE(runUntil([this] { return view().itemCount() == 9 && view().settled(); }));
  up(middleOf(5));
  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(Pointer, AWindowThatTakesThePointerEndsTheGesture) {
  down(kGround);
  moveTo({310, 420});
  view().pointerCancel();
  EXPECT_FALSE(view().autoScrolls);
  EXPECT_EQ(view().rubberBand(), Rectangle{});
  view().autoScrollTick();
  EXPECT_EQ(view().scroll(), 0);
}

TEST_F(Pointer, OnlyTheCellsThatDifferAreRepainted) {
  click(2);
  view().invalid.clear();
  click(5);
  EXPECT_THAT(view().invalid, testing::UnorderedElementsAre(view().placeOf(2).cell, view().placeOf(5).cell));
}

TEST_F(Pointer, TheLargePictureIsItsItem) {
  view().View(kViewFilmstrip);
  view().selectOnly(3);
  EXPECT_EQ(view().hitTest({300, 100}), 3);
  view().contextClick({300, 100});
  EXPECT_THAT(events_, ElementsAre("view 1", "context 4"));
}

}  // namespace
}  // namespace kestrel::thumbnails
