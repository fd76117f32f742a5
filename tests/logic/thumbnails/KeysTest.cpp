#include "ViewTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Keys : public test::ViewTest {
 protected:
  /// 4 columns; rows of 0 to 3, 4 to 7 and 8 to 9.
  void SetUp() override {
    fill(10);
    open();
    events_.clear();
  }

  std::int32_t after(Key key, std::int32_t from) {
    view().selectOnly(from);
    EXPECT_TRUE(view().key(key, 0));
    EXPECT_THAT(selected(), ElementsAre(view().focusItem()));
    return view().focusItem();
  }
};

TEST_F(Keys, TheFocusBeginsAtTheFirstItemWithoutSelection) {
  EXPECT_EQ(view().focusItem(), 0);
  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(Keys, LeftAndRightMoveAlongTheList) {
  EXPECT_EQ(after(Key::kRight, 0), 1);
  EXPECT_EQ(after(Key::kRight, 3), 4);
  EXPECT_EQ(after(Key::kRight, 9), 9);
  EXPECT_EQ(after(Key::kLeft, 4), 3);
  EXPECT_EQ(after(Key::kLeft, 0), 0);
}

TEST_F(Keys, UpAndDownMoveByRows) {
  EXPECT_EQ(after(Key::kDown, 1), 5);
  EXPECT_EQ(after(Key::kUp, 5), 1);
  EXPECT_EQ(after(Key::kUp, 1), 1);
  EXPECT_EQ(after(Key::kDown, 9), 9);
}

TEST_F(Keys, DownIntoAShortLastRowEndsAtTheLastItem) {
  EXPECT_EQ(after(Key::kDown, 5), 9);
  EXPECT_EQ(after(Key::kDown, 7), 9);
}

TEST_F(Keys, HomeAndEndMoveToTheEnds) {
  EXPECT_EQ(after(Key::kEnd, 2), 9);
  EXPECT_EQ(view().scroll(), view().arrangement().scrollRange()) << "the item becomes visible";
  EXPECT_EQ(after(Key::kHome, 7), 0);
  EXPECT_EQ(view().scroll(), 0);
}

TEST_F(Keys, PageKeysMoveByTheRowsThatAreVisibleAsAWhole) {
  // Two rows of 170 fit into 400.
  EXPECT_EQ(after(Key::kPageDown, 1), 9);
  EXPECT_EQ(after(Key::kPageDown, 0), 8);
  EXPECT_EQ(after(Key::kPageUp, 8), 0);
  EXPECT_EQ(after(Key::kPageUp, 5), 1);
}

TEST_F(Keys, ShiftSelectsFromTheAnchor) {
  view().selectOnly(2);
  view().key(Key::kRight, kShiftMask);
  view().key(Key::kRight, kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(2, 3, 4));
  view().key(Key::kLeft, kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(2, 3));
  view().key(Key::kHome, kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(0, 1, 2));
}

TEST_F(Keys, CtrlMovesTheFocusAlone) {
  view().selectOnly(2);
  view().key(Key::kRight, kCtrlMask);
  EXPECT_EQ(view().focusItem(), 3);
  EXPECT_THAT(selected(), ElementsAre(2));
  view().key(Key::kSpace, kCtrlMask);
  EXPECT_THAT(selected(), ElementsAre(2, 3));
  view().key(Key::kSpace, kCtrlMask);
  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(Keys, CtrlAndShiftAddARange) {
  view().selectOnly(0);
  view().key(Key::kEnd, kCtrlMask);
  view().key(Key::kSpace, kCtrlMask);
  view().key(Key::kLeft, kCtrlMask | kShiftMask);
  EXPECT_THAT(selected(), ElementsAre(0, 8, 9));
}

TEST_F(Keys, SpaceSelectsTheFocusItem) {
  EXPECT_TRUE(view().key(Key::kSpace, 0));
  EXPECT_THAT(selected(), ElementsAre(0));
}

TEST_F(Keys, CtrlASelectsAll) {
  EXPECT_TRUE(view().key(Key::kSelectAll, kCtrlMask));
  EXPECT_EQ(view().SelectedItems().Count(), 10);
}

TEST_F(Keys, EnterOpensTheFocusItem) {
  view().selectOnly(4);
  EXPECT_TRUE(view().key(Key::kEnter, 0));
  EXPECT_THAT(events_, ElementsAre("open 5"));
  EXPECT_FALSE(view().key(Key::kEnter, kAltMask)) << "a key of the window";
}

TEST_F(Keys, DeleteIsReported) {
  view().selectOnly(4);
  EXPECT_TRUE(view().key(Key::kDelete, 0));
  EXPECT_THAT(events_, ElementsAre("delete"));
  EXPECT_FALSE(view().key(Key::kDelete, kShiftMask)) << "no silent way around the trash";
}

TEST_F(Keys, TheMenuKeySelectsTheFocusItemFirst) {
  view().selectOnly(2);
  view().key(Key::kRight, kCtrlMask);
  EXPECT_TRUE(view().contextKey());
  EXPECT_THAT(selected(), ElementsAre(3));
  EXPECT_THAT(events_, ElementsAre("context 4"));
}

TEST_F(Keys, AnEmptyViewLeavesThemToTheContainer) {
  view().Clear();
  for (const Key key : {Key::kLeft, Key::kHome, Key::kSpace, Key::kEnter, Key::kEscape, Key::kSelectAll}) {
    EXPECT_FALSE(view().key(key, 0));
  }
  EXPECT_FALSE(view().type("a"));
  EXPECT_FALSE(view().contextKey());
}

TEST_F(Keys, EscapeLeadsBackFromTheSingleView) {
  EXPECT_FALSE(view().key(Key::kEscape, 0));
  view().View(kViewFilmstrip);
  view().View(kViewSingle);
  EXPECT_TRUE(view().key(Key::kEscape, 0));
  EXPECT_EQ(view().View(), kViewFilmstrip);
}

class TypedNames : public test::ViewTest {
 protected:
  void SetUp() override {
    for (const char* name : {"Apple.jpg", "banana.jpg", "blue sky.jpg", "Blue.jpg", "cherry.jpg"}) {
      access_->put(name);
    }
    open();  // in the order Apple, banana, Blue, blue sky, cherry
  }
};

TEST_F(TypedNames, FindTheNextItemThatBeginsWithThem) {
  EXPECT_TRUE(view().type("b"));
  EXPECT_EQ(view().focusItem(), 1);
  EXPECT_TRUE(view().type("L"));
  EXPECT_EQ(view().focusItem(), 2);
  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(TypedNames, StayWhereNothingFits) {
  view().type("c");
  EXPECT_TRUE(view().type("x"));
  EXPECT_EQ(view().focusItem(), 4);
}

TEST_F(TypedNames, BeginAnewAfterASecond) {
  view().type("b");
  now_ += std::chrono::milliseconds(1001);
  view().type("c");
  EXPECT_EQ(view().focusItem(), 4);
}

TEST_F(TypedNames, GoRoundWithOneLetter) {
  for (const std::int32_t expected : {1, 2, 3, 1}) {
    view().type("b");
    EXPECT_EQ(view().focusItem(), expected);
  }
}

TEST_F(TypedNames, MayHaveASpace) {
  for (const char* letter : {"b", "l", "u", "e"}) view().type(letter);
  EXPECT_EQ(view().focusItem(), 2);
  EXPECT_TRUE(view().key(Key::kSpace, 0));
  EXPECT_EQ(view().focusItem(), 3);
}

TEST_F(TypedNames, AreForgottenAtEscapeAndAtArrows) {
  view().type("b");
  EXPECT_TRUE(view().key(Key::kEscape, 0));
  view().type("c");
  EXPECT_EQ(view().focusItem(), 4);
  view().key(Key::kHome, 0);
  view().type("b");
  EXPECT_EQ(view().focusItem(), 1);
}

TEST_F(TypedNames, AreNoControlCharacters) {
  EXPECT_FALSE(view().type("\x1B"));
  EXPECT_FALSE(view().type("\r"));
  EXPECT_FALSE(view().type(""));
}

}  // namespace
}  // namespace kestrel::thumbnails
