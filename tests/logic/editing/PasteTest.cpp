#include <limits>

#include "EditingTest.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr char kPasteStatus[] = "Please select where to paste the image, or press Escape to cancel";
constexpr engine::Pixel kRed{255, 0, 0, 255};

/// A picture larger than the view, so that scroll positions count from 0, and a red picture of 60 by 50
/// pixels on the clipboard.
class EditingPaste : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(1000, 900);
    fillClipboard(60, 50, kRed);
  }
  void expectOpen() {
    EXPECT_TRUE(pressed("btnEditPaste"));
    EXPECT_EQ(panel("pnlStatus"), kPasteStatus);
    EXPECT_TRUE(view().SelectionVisible());
  }
  void expectClosed() {
    EXPECT_FALSE(pressed("btnEditPaste"));
    EXPECT_EQ(panel("pnlStatus"), "");
    EXPECT_FALSE(view().SelectionVisible());
    EXPECT_EQ(panel("pnlSize"), "1000, 900");
  }
};

TEST_P(EditingPaste, WithoutABitmapOnTheClipboardShowsABoxOnly) {
  platform().Clipboard().holdNoPicture();
  editor().Tool(ipToolLine);
  log().clear();
  user().answers(kAnswerOK);
  click("btnEditPaste");
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].text, "Nothing to paste.");
  EXPECT_EQ(user().boxes()[0].title, "Paste");
  EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_EQ(editor().Tool(), ipToolLine);
  EXPECT_FALSE(pressed("btnEditPaste"));
}

TEST_P(EditingPaste, OpensInTheOrderPasteToolRectangleRefresh) {
  editor().Tool(ipToolLine);
  view().ScrollLeft(100);
  view().ScrollTop(70);
  log().clear();
  click("btnEditPaste");
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.Paste(\"\")", "Tool=1", "MousePointer=0", "SelectionHeight=0",
                          "SelectionWidth=0", "SelectionVisible=False", "SetSelectionRect(100, 70, 60, 50)",
                          "SelectionVisible=True", "Refresh()", "scratch.Surface.DrawTo(1, 1, 13369376)"));
  expectOpen();
  EXPECT_FALSE(editor().Changed()) << "a floating paste is no change";
  EXPECT_EQ(view().UndoName(), "");
}

TEST_P(EditingPaste, KeepsItsStatusAsTheDefaultText) {
  click("btnEditPaste");
  suite().highlight("btnFileOpen");
  EXPECT_NE(panel("pnlStatus"), kPasteStatus);
  suite().highlight("");
  EXPECT_EQ(panel("pnlStatus"), kPasteStatus);
}

TEST_P(EditingPaste, IsPaintedOverTheViewWithoutChangingThePicture) {
  fillClipboard(60, 50, {255, 0, 0, 128});
  click("btnEditPaste");
  const engine::Bitmap seen = view().painted();
  EXPECT_EQ(seen.at(30, 30).r, 255);
  EXPECT_EQ(seen.at(30, 30).g, 0);
  EXPECT_EQ(at(30, 30), pixelOf(30, 30));
}

TEST_P(EditingPaste, PaintsNothingWhileNoPasteIsOpen) {
  view().Refresh();
  EXPECT_THAT(calls(), ElementsAre("Refresh()"));
}

TEST_P(EditingPaste, DrawsAtTheSelectionMinusTheScrollPositionPlusOne) {
  view().ScrollLeft(100);
  view().ScrollTop(70);
  click("btnEditPaste");
  view().ScrollLeft(90);
  view().ScrollTop(75);
  log().clear();
  view().painted();
  EXPECT_THAT(calls(), ElementsAre("scratch.Surface.DrawTo(11, -4, 13369376)"));
}

TEST_P(EditingPaste, CommittedUnmovedItIsDrawnAtTheOrigin) {
  view().ScrollLeft(100);
  view().ScrollTop(70);
  click("btnEditPaste");
  log().clear();
  editor().Paste();
  EXPECT_THAT(engineCalls(),
              ElementsAre("view.Draw.Image(60x50 picture, 0, 0, Nothing, 1, True, \"Paste\")"));
  EXPECT_EQ(at(0, 0), kRed);
  EXPECT_EQ(at(59, 49), kRed);
  EXPECT_EQ(at(60, 49), pixelOf(60, 49));
  EXPECT_EQ(at(110, 80), pixelOf(110, 80));
  expectClosed();
  EXPECT_EQ(undoCaption(), "&Undo Paste");
}

TEST_P(EditingPaste, MovedByThePointerItIsDrawnAtTheRectangle) {
  click("btnEditPaste");
  dragSelection({30, 25}, {130, 105});
  expectOpen();
  EXPECT_EQ(view().SelectionLeft(), 100);
  EXPECT_EQ(view().SelectionTop(), 80);
  log().clear();
  view().click(position(300, 300));
  EXPECT_THAT(engineCalls(),
              ElementsAre("view.Draw.Image(60x50 picture, 100, 80, Nothing, 1, True, \"Paste\")"));
  EXPECT_EQ(at(100, 80), kRed);
  EXPECT_EQ(at(159, 129), kRed);
  EXPECT_EQ(at(160, 129), pixelOf(160, 129));
  EXPECT_EQ(at(0, 0), pixelOf(0, 0));
  expectClosed();
}

TEST_P(EditingPaste, UnmovedItIsDrawnAtThePositionOfTheLastPaste) {
  click("btnEditPaste");
  dragSelection({30, 25}, {130, 105});
  editor().Paste();
  open(1000, 900);
  click("btnEditPaste");
  editor().Paste();
  EXPECT_EQ(at(100, 80), kRed);
  EXPECT_EQ(at(0, 0), pixelOf(0, 0));
}

TEST_P(EditingPaste, APressCommitsOnlyBeyondTheFarEdge) {
  click("btnEditPaste");
  view().click(position(60, 25));
  view().click(position(30, 50));
  view().click(position(60, 50));
  view().click(position(0, 0));
  expectOpen();
  EXPECT_FALSE(editor().Changed());
  view().click(position(61, 20));
  expectClosed();
  EXPECT_TRUE(editor().Changed());
}

TEST_P(EditingPaste, AClickOnTheFarEdgeAwayFromTheHandlesKeepsTheRectangle) {
  click("btnEditPaste");
  for (const Point edge : {Point{60, 10}, Point{10, 50}}) {
    view().click(position(edge.X, edge.Y));
    expectOpen();
    EXPECT_EQ(view().SelectionWidth(), 60);
    EXPECT_EQ(view().SelectionHeight(), 50);
    EXPECT_EQ(panel("pnlSize"), "60, 50");
  }
  view().click(position(61, 20));
  expectClosed();
  EXPECT_EQ(at(59, 49), kRed);
}

TEST_P(EditingPaste, TheFloatingImageFollowsEachMoveOfADrag) {
  click("btnEditPaste");
  view().press(kLeftButton, 0, position(30, 25));
  log().clear();
  view().move(kLeftButton, 0, position(40, 40));
  EXPECT_THAT(calls(), ElementsAre("Refresh()", "scratch.Surface.DrawTo(11, 16, 13369376)"));
  editor().Cancel();
  view().release(kLeftButton, 0, position(40, 40));
  log().clear();
  dragSelection({200, 200}, {300, 300});
  EXPECT_THAT(calls(), Not(Contains("Refresh()"))) << "a selection alone needs its border only";
}

TEST_P(EditingPaste, ARectangleAtTheFarthestPositionIsPaintedThere) {
  view().ScrollLeft(100);
  view().ScrollTop(70);
  click("btnEditPaste");
  view().SetSelectionRect(std::numeric_limits<std::int32_t>::min(), 2'000'000'000, 60, 50);
  log().clear();
  const engine::Bitmap seen = view().painted();
  EXPECT_THAT(calls(), ElementsAre("scratch.Surface.DrawTo(-2147483648, 1999999931, 13369376)"));
  EXPECT_NE(seen.at(30, 30), kRed);
}

TEST_P(EditingPaste, APressWithoutAPictureCommitsNothing) {
  click("btnEditPaste");
  view().Picture(PicturePtr());
  log().clear();
  view().click({300, 300});
  EXPECT_THAT(engineCalls(), Not(Contains(testing::HasSubstr("Draw.Image"))));
  EXPECT_TRUE(pressed("btnEditPaste"));
  editor().Cancel();
}

TEST_P(EditingPaste, APressAboveOrLeftOfTheRectangleCommits) {
  view().ScrollLeft(100);
  view().ScrollTop(100);
  for (const Point outside : {Point{119, 130}, Point{130, 119}, Point{130, 171}}) {
    click("btnEditPaste");
    view().SetSelectionRect(120, 120, 60, 50);
    view().click(position(outside.X, outside.Y));
    expectClosed();
  }
}

TEST_P(EditingPaste, APressOutsideWithAnyButtonCommits) {
  click("btnEditPaste");
  user().picks("");
  view().click(position(300, 300), kRightButton);
  expectClosed();
}

TEST_P(EditingPaste, ResizingTheRectangleIsUndoneAtRelease) {
  click("btnEditPaste");
  dragSelection({60, 50}, {90, 80});
  EXPECT_EQ(view().SelectionWidth(), 60);
  EXPECT_EQ(view().SelectionHeight(), 50);
  EXPECT_EQ(panel("pnlSize"), "60, 50");
  expectOpen();
}

TEST_P(EditingPaste, TheEndOfAMoveWritesTheSizeBackAndRefreshes) {
  click("btnEditPaste");
  dragSelection({30, 25}, {40, 30});
  const auto all = calls();
  const auto end = std::find(all.rbegin(), all.rend(), "SelectionWidth=60");
  ASSERT_NE(end, all.rend());
  const std::vector<std::string> last(end.base() - 1, all.end());
  EXPECT_THAT(last, ElementsAre("SelectionWidth=60", "SelectionHeight=50", "Refresh()",
                                "scratch.Surface.DrawTo(11, 6, 13369376)"));
}

TEST_P(EditingPaste, EscapeCancelsItAndKeepsThePicture) {
  click("btnEditPaste");
  dragSelection({30, 25}, {130, 105});
  site().pressKey(27, 0, 27);
  expectClosed();
  EXPECT_TRUE(same(shown(), gradient(1000, 900)));
  EXPECT_FALSE(editor().Changed());
  log().clear();
  editor().Paste();
  EXPECT_THAT(calls(), IsEmpty()) << "there is nothing left to commit";
}

TEST_P(EditingPaste, OtherKeysDoNotCancelIt) {
  click("btnEditPaste");
  site().pressKey(13, 0, 13);
  expectOpen();
  editor().Cancel();
  expectClosed();
}

TEST_P(EditingPaste, CancelingHidesTheRectangleThenRefreshes) {
  click("btnEditPaste");
  log().clear();
  editor().Cancel();
  EXPECT_THAT(calls(),
              ElementsAre("SelectionHeight=0", "SelectionWidth=0", "SelectionVisible=False", "Refresh()"));
}

TEST_P(EditingPaste, IsCommittedBeforeTheModeEnds) {
  click("btnEditPaste");
  log().clear();
  editor().Paste();
  EXPECT_THAT(calls(),
              ElementsAre("view.Draw.Image(60x50 picture, 0, 0, Nothing, 1, True, \"Paste\")",
                          "SelectionHeight=0", "SelectionWidth=0", "SelectionVisible=False", "Refresh()"));
}

TEST_P(EditingPaste, KeyDownAndKeyUpOfEscapeDoNothing) {
  click("btnEditPaste");
  site().pressKey(27, 0, 0);
  expectOpen();
  editor().Cancel();
}

TEST_P(EditingPaste, CancelingResetsThePointer) {
  click("btnEditPaste");
  platform().FormUtility().forgetPointers();
  editor().Cancel();
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(kBusyDefault));
}

TEST_P(EditingPaste, PasteAndCancelDoNothingWithoutAMode) {
  editor().Paste();
  editor().Cancel();
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingPaste, TheWholePasteIsOneStep) {
  click("btnEditPaste");
  dragSelection({30, 25}, {130, 105});
  editor().Paste();
  editor().Undo();
  EXPECT_TRUE(same(shown(), gradient(1000, 900)));
  EXPECT_EQ(redoCaption(), "&Redo Paste");
  editor().Redo();
  EXPECT_EQ(at(100, 80), kRed);
}

// -- Crop -------------------------------------------------------------------------------------------------

constexpr char kCropStatus[] = "Please select the region to crop the image to, or press Escape to cancel";

class EditingCrop : public EditingTest {
 protected:
  void expectOpen() {
    EXPECT_TRUE(pressed("btnImageCrop"));
    EXPECT_EQ(panel("pnlStatus"), kCropStatus);
    EXPECT_EQ(editor().Tool(), ipToolSelect);
  }
  void expectClosed() {
    EXPECT_FALSE(pressed("btnImageCrop"));
    EXPECT_EQ(panel("pnlStatus"), "");
    EXPECT_FALSE(view().SelectionVisible());
  }
  void expectShows(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
    ASSERT_EQ(shown().width(), width);
    ASSERT_EQ(shown().height(), height);
    EXPECT_EQ(at(0, 0), pixelOf(left, top));
    EXPECT_EQ(at(width - 1, height - 1), pixelOf(left + width - 1, top + height - 1));
    EXPECT_EQ(panel("pnlSize"), ToText(width) + ", " + ToText(height));
  }
};

TEST_P(EditingCrop, WithASelectionCropsAtOnce) {
  dragSelection({5, 6}, {25, 18});
  log().clear();
  click("btnImageCrop");
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Crop(5, 6, 20, 12, \"\")", "SelectionHeight=0",
                                   "SelectionWidth=0", "SelectionVisible=False"));
  expectShows(5, 6, 20, 12);
  EXPECT_FALSE(pressed("btnImageCrop"));
  EXPECT_EQ(undoCaption(), "&Undo");
}

TEST_P(EditingCrop, NormalizesABackwardsSelection) {
  dragSelection({25, 18}, {5, 6});
  log().clear();
  editor().CropToSelection();
  EXPECT_THAT(engineCalls(), ElementsAre("view.Effects.Crop(5, 6, 20, 12, \"\")"));
  expectShows(5, 6, 20, 12);
}

TEST_P(EditingCrop, NormalizesEachDirectionByItself) {
  editor().SetSelection(25, 6, -20, 12);
  editor().CropToSelection();
  expectShows(5, 6, 20, 12);
  open(kWidth, kHeight);
  editor().SetSelection(5, 18, 20, -12);
  editor().CropToSelection();
  expectShows(5, 6, 20, 12);
}

TEST_P(EditingCrop, WithoutASelectionOpensTheModeAndTheNextSelectionCrops) {
  editor().Tool(ipToolEllipse);
  click("btnImageCrop");
  expectOpen();
  EXPECT_FALSE(editor().Changed());
  dragSelection({5, 6}, {25, 18});
  expectShows(5, 6, 20, 12);
  expectClosed();
  open(kWidth, kHeight);
  dragSelection({5, 6}, {25, 18});
  EXPECT_EQ(shown().width(), kWidth) << "the mode has ended";
}

TEST_P(EditingCrop, KeepsItsStatusAsTheDefaultTextUntilCanceled) {
  click("btnImageCrop");
  suite().highlight("btnFileOpen");
  EXPECT_NE(panel("pnlStatus"), kCropStatus);
  suite().highlight("");
  EXPECT_EQ(panel("pnlStatus"), kCropStatus);
  platform().FormUtility().forgetPointers();
  log().clear();
  editor().Cancel();
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(kBusyDefault));
  EXPECT_THAT(calls(), ElementsAre("SelectionHeight=0", "SelectionWidth=0", "SelectionVisible=False"));
}

TEST_P(EditingCrop, AnEmptySelectionIsNone) {
  editor().SetSelection(5, 6, 0, 12);
  click("btnImageCrop");
  expectOpen();
  editor().Cancel();
  expectClosed();
}

TEST_P(EditingCrop, APressAndAClickDoNotEndTheMode) {
  click("btnImageCrop");
  view().click(position(10, 10));
  expectOpen();
  editor().Cancel();
}

TEST_P(EditingCrop, EscapeEndsTheModeAndKeepsThePicture) {
  click("btnImageCrop");
  site().pressKey(27, 0, 27);
  expectClosed();
  dragSelection({5, 6}, {25, 18});
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingCrop, AnErrorOfTheCommandIsShownWithTheEnginesText) {
  editor().SetSelection(100, 6, 20, 12);
  user().answers(kAnswerOK);
  click("btnImageCrop");
  ASSERT_EQ(user().boxes().size(), 1u);
  std::string reason;
  try {
    view().Effects().Crop(100, 6, 20, 12);
  } catch (const RuntimeError& error) {
    reason = error.Description();
  }
  EXPECT_NE(reason, "");
  EXPECT_EQ(user().boxes()[0].text, "Failed to crop image: " + reason);
  EXPECT_EQ(user().boxes()[0].title, "Crop");
  EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingCrop, AnErrorOfTheGestureIsShownAndEndsTheMode) {
  click("btnImageCrop");
  // Drawn outside the picture: both edges clamp to its right edge, so the selection is empty.
  user().answers(kAnswerOK);
  view().drag(position(60, 5), position(80, 20));
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Crop");
  EXPECT_TRUE(user().boxes()[0].text.starts_with("Failed to crop image: "));
  expectClosed();
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingCrop, CropToSelectionPassesTheEnginesErrorToItsCaller) {
  editor().SetSelection(100, 6, 20, 12);
  EXPECT_THROW(editor().CropToSelection(), RuntimeError);
}

TEST_P(EditingCrop, CancelEndsCropBeforePaste) {
  fillClipboard(60, 50, kRed);
  click("btnImageCrop");
  dispatch("btnEditPaste");
  editor().Cancel();
  expectClosed();
  EXPECT_FALSE(pressed("btnEditPaste"));
}

TEST_P(EditingCrop, IsUndoneInOneStep) {
  editor().SetSelection(5, 6, 20, 12);
  click("btnImageCrop");
  click("btnEditUndo");
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

KESTREL_WITH_BOTH_PATHS(EditingPaste);
KESTREL_WITH_BOTH_PATHS(EditingCrop);

}  // namespace
}  // namespace kestrel
