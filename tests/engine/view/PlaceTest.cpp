// The scroll position that undo and redo restore.

#include <gtest/gtest.h>

#include "TestView.h"

namespace kestrel::engine {
namespace {

class ViewPlace : public testing::Test {
 protected:
  void SetUp() override { view.load(1000, 600); }
  void scrollTo(std::int32_t left, std::int32_t top) {
    view.ScrollLeft(left);
    view.ScrollTop(top);
  }
  Point place() const { return {view.ScrollLeft(), view.ScrollTop()}; }

  TestView view{200, 100};
};

TEST_F(ViewPlace, OfARotatedPictureComesBackWithUndoAndRedo) {
  scrollTo(700, 400);
  view.Effects().Rotate(90, nullptr, 0);  // 600 by 1000
  EXPECT_EQ(place(), (Point{400, 400}));
  scrollTo(120, 850);
  view.Undo();
  EXPECT_EQ(place(), (Point{700, 400}));
  scrollTo(5, 6);
  view.Redo();
  EXPECT_EQ(place(), (Point{120, 850}));
  view.Undo();
  EXPECT_EQ(place(), (Point{5, 6})) << "the position in which the step was redone";
}

TEST_F(ViewPlace, ComesBackWithEachStepThatChangesTheSize) {
  scrollTo(700, 400);
  view.Effects().Crop(650, 350, 300, 200);
  scrollTo(30, 40);
  view.Effects().ResizeCanvas(50, 20, Colour(0), 0, 0);  // centered in the view
  view.Undo();
  EXPECT_EQ(place(), (Point{30, 40}));
  view.Undo();
  EXPECT_EQ(place(), (Point{700, 400}));
}

TEST_F(ViewPlace, ComesBackAtAZoom) {
  view.Zoom(0.7);
  scrollTo(300, 200);
  const Point before = place();
  view.Effects().Rotate(90, nullptr, 0);
  scrollTo(10, 500);
  view.Undo();
  EXPECT_EQ(place(), before);
}

TEST_F(ViewPlace, StaysIfAStepKeepsTheSize) {
  scrollTo(700, 400);
  view.Effects().Flip(0);
  scrollTo(50, 60);
  view.Undo();
  EXPECT_EQ(place(), (Point{50, 60}));
  view.Redo();
  EXPECT_EQ(place(), (Point{50, 60}));
}

TEST_F(ViewPlace, BelongsToTheSizeAlsoAfterStepsThatKeepIt) {
  scrollTo(700, 400);
  view.Effects().Rotate(90, nullptr, 0);
  scrollTo(10, 20);
  view.Effects().Flip(0);
  scrollTo(300, 350);
  view.Undo();  // the flip
  view.Undo();
  EXPECT_EQ(place(), (Point{700, 400}));
  view.Redo();
  EXPECT_EQ(place(), (Point{300, 350}));
}

TEST_F(ViewPlace, ComesBackWithAnUndoPointAndWhenItIsTakenBack) {
  scrollTo(700, 400);
  const auto point = view.CreateUndoPoint("Turn");
  view.Effects().Rotate(90, nullptr, 0, kNoUndo);
  scrollTo(10, 20);
  view.Effects().Rotate(45, nullptr, 0, kNoUndo);
  scrollTo(11, 21);
  view.Undo();
  EXPECT_EQ(place(), (Point{700, 400}));

  const auto failed = view.CreateUndoPoint("Turn");
  view.Effects().Rotate(90, nullptr, 0, kNoUndo);
  scrollTo(10, 20);
  failed->TakeBack();
  EXPECT_EQ(place(), (Point{700, 400}));
}

TEST_F(ViewPlace, OfAnotherPictureIsItsCorner) {
  scrollTo(700, 400);
  view.load(1200, 1200);
  EXPECT_EQ(place(), (Point{0, 0}));
}

}  // namespace
}  // namespace kestrel::engine
