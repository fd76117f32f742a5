#include "EditingTest.h"
#include "imaging/modImgX.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr engine::Pixel kRed{255, 0, 0, 255};

class EditingSelection : public EditingTest {
 protected:
  engine::Bitmap clipboard() { return platform().Clipboard().take(); }
};

// -- The tests for a selection ----------------------------------------------------------------------------

TEST_P(EditingSelection, IsValidWhenShownWithNonzeroSizes) {
  EXPECT_FALSE(modImgX::ValidSelection(nullptr));
  EXPECT_FALSE(modImgX::ValidSelection(&view()));
  view().SetSelectionRect(1, 2, 3, 4);
  EXPECT_FALSE(modImgX::ValidSelection(&view())) << "not shown";
  view().SelectionVisible(true);
  EXPECT_TRUE(modImgX::ValidSelection(&view()));
  view().SelectionWidth(0);
  EXPECT_FALSE(modImgX::ValidSelection(&view()));
  view().SelectionWidth(3);
  view().SelectionHeight(0);
  EXPECT_FALSE(modImgX::ValidSelection(&view()));
  view().SelectionHeight(-4);
  view().SelectionWidth(-3);
  EXPECT_TRUE(modImgX::ValidSelection(&view())) << "negative sizes pass";
}

TEST_P(EditingSelection, ThePictureRegionReachesOnePixelBeyondThePicture) {
  const auto inside = [this](std::int32_t x, std::int32_t y) {
    const Point at = position(x, y);
    return modImgX::InImageRegion(view(), at.X, at.Y);
  };
  EXPECT_TRUE(inside(0, 0));
  EXPECT_TRUE(inside(kWidth, kHeight));
  EXPECT_FALSE(inside(kWidth + 1, 0));
  EXPECT_FALSE(inside(0, kHeight + 1));
  EXPECT_FALSE(inside(-1, 0));
  EXPECT_FALSE(inside(0, -1));
  editor().Picture(nullptr);
  EXPECT_FALSE(inside(0, 0)) << "no picture";
}

TEST_P(EditingSelection, APointIsInTheSelectionIncludingTheFarEdges) {
  editor().SetSelection(5, 6, 10, 8);
  const auto inside = [this](std::int32_t x, std::int32_t y) {
    const Point at = position(x, y);
    return modImgX::InImageSelection(view(), at.X, at.Y, false);
  };
  EXPECT_TRUE(inside(5, 6));
  EXPECT_TRUE(inside(15, 14));
  EXPECT_FALSE(inside(4, 6));
  EXPECT_FALSE(inside(5, 5));
  EXPECT_FALSE(inside(16, 14));
  EXPECT_FALSE(inside(15, 15));
}

TEST_P(EditingSelection, WithPixelsTheOriginIsTestedForAnyPoint) {
  editor().SetSelection(5, 6, 10, 8);
  EXPECT_FALSE(modImgX::InImageSelection(view(), 8, 8, true));
  editor().SetSelection(0, 0, 10, 8);
  EXPECT_TRUE(modImgX::InImageSelection(view(), 500, 500, true));
}

// -- The rectangle ----------------------------------------------------------------------------------------

TEST_P(EditingSelection, SetSelectionPlacesAndShowsTheRectangle) {
  editor().SetSelection(1, 2, 3, 4);
  EXPECT_THAT(calls(), ElementsAre("SetSelectionRect(1, 2, 3, 4)", "SelectionVisible=True"));
}

TEST_P(EditingSelection, SetSelectionWithAnotherToolSwitchesToolsFirst) {
  editor().Tool(ipToolLine);
  view().SetSelectionRect(9, 9, 9, 9);
  log().clear();
  editor().SetSelection(1, 2, 3, 4);
  EXPECT_EQ(editor().Tool(), ipToolSelect);
  EXPECT_THAT(calls(),
              ElementsAre("Tool=1", "MousePointer=0", "SelectionHeight=0", "SelectionWidth=0",
                          "SelectionVisible=False", "SetSelectionRect(1, 2, 3, 4)", "SelectionVisible=True"));
}

TEST_P(EditingSelection, SelectAllTakesTheWholePictureWithTheSelectionTool) {
  editor().Tool(ipToolPan);
  click("btnSelectionAll");
  EXPECT_EQ(editor().Tool(), ipToolSelect);
  EXPECT_EQ(view().SelectionLeft(), 0);
  EXPECT_EQ(view().SelectionTop(), 0);
  EXPECT_EQ(view().SelectionWidth(), kWidth);
  EXPECT_EQ(view().SelectionHeight(), kHeight);
  EXPECT_TRUE(view().SelectionVisible());
}

TEST_P(EditingSelection, SelectNoneWritesHeightThenWidthThenVisible) {
  editor().SetSelection(1, 2, 3, 4);
  log().clear();
  click("btnSelectionNone");
  EXPECT_THAT(calls(), ElementsAre("SelectionHeight=0", "SelectionWidth=0", "SelectionVisible=False"));
  EXPECT_EQ(panel("pnlSize"), "40, 30");
}

TEST_P(EditingSelection, ResetWithoutAPictureShowsASingleSpace) {
  editor().Picture(nullptr);
  editor().ResetSelection();
  EXPECT_EQ(panel("pnlSize"), " ");
}

TEST_P(EditingSelection, SelectingIsNoStepAndNoChange) {
  dragSelection({4, 6}, {24, 18});
  editor().SelectAll();
  editor().ResetSelection();
  EXPECT_FALSE(editor().Changed());
  EXPECT_EQ(view().UndoName(), "");
  EXPECT_FALSE(view().Modified());
}

// -- Section ----------------------------------------------------------------------------------------------

TEST_P(EditingSelection, ASectionIsACopyOfTheSelectedPixelsWithTheirAlpha) {
  auto picture = gradient(kWidth, kHeight);
  picture.writable().row(7)[6 * 4 + 3] = 99;
  show(picture);
  editor().SetSelection(5, 6, 4, 3);
  const auto section = platform().CreateImgX();
  modImgX::CreateSection(view(), *section);
  const engine::Bitmap pixels = engine::bitmapOf(*section->Image());
  ASSERT_EQ(pixels.width(), 4);
  ASSERT_EQ(pixels.height(), 3);
  for (std::int32_t y = 0; y < 3; ++y) {
    for (std::int32_t x = 0; x < 4; ++x) EXPECT_EQ(pixels.at(x, y), picture.at(x + 5, y + 6));
  }
  EXPECT_EQ(pixels.at(1, 1).a, 99);
  EXPECT_TRUE(same(shown(), picture)) << "the source is untouched";
}

TEST_P(EditingSelection, ASectionOfAnySizeIsDrawnBackAtItsCorner) {
  editor().SetSelection(5, 6, 4, 3);
  const auto section = platform().CreateImgX();
  const Colour red(0x0000FF);
  section->Document().NewImage(8, 2, &red);
  log().clear();
  modImgX::ApplySection(*section, view());
  EXPECT_THAT(calls(),
              ElementsAre("view.Draw.ImageWithAlpha(8x2 picture, 5, 6, \"\")", "SelectionVisible=False"));
  EXPECT_EQ(at(5, 6), kRed);
  EXPECT_EQ(at(12, 7), kRed) << "drawn beyond the selection";
  EXPECT_EQ(at(5, 8), pixelOf(5, 8)) << "unchanged pixels";
  EXPECT_EQ(at(13, 6), pixelOf(13, 6));
}

// -- Copy -------------------------------------------------------------------------------------------------

TEST_P(EditingSelection, CopyWithASelectionCopiesItThroughTheScratchPicture) {
  dragSelection({5, 6}, {15, 14});
  log().clear();
  click("btnEditCopy");
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Crop(5, 6, 10, 8, \"\")",
                          "scratch.Writer.ToClipboard()"));
  EXPECT_EQ(clipboard().width(), 10);
  EXPECT_EQ(clipboard().at(0, 0), pixelOf(5, 6));
  EXPECT_TRUE(view().SelectionVisible()) << "copying keeps the selection";
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingSelection, CopyWithoutUseSelectionIgnoresTheSelection) {
  editor().SetSelection(5, 6, 10, 8);
  log().clear();
  editor().Copy(false);
  EXPECT_THAT(calls(), ElementsAre("view.Writer.ToClipboard()"));
  EXPECT_TRUE(same(clipboard(), gradient(kWidth, kHeight)));
}

TEST_P(EditingSelection, CopyWithAnEmptySelectionCopiesTheWholePicture) {
  editor().SetSelection(5, 6, 0, 8);
  log().clear();
  editor().Copy(true);
  EXPECT_THAT(engineCalls(), ElementsAre("view.Writer.ToClipboard()"));
}

TEST_P(EditingSelection, TheCopyCommandUsesTheSelectionOnlyWithItsTool) {
  editor().SetSelection(5, 6, 10, 8);
  editor().Tool(ipToolPan);
  view().SetSelectionRect(5, 6, 10, 8);
  view().SelectionVisible(true);
  log().clear();
  click("btnEditCopy");
  EXPECT_THAT(calls(), ElementsAre("view.Writer.ToClipboard()"));
}

TEST_P(EditingSelection, ACallOfCopyUsesTheSelectionWithAnyTool) {
  editor().Tool(ipToolPan);
  view().SetSelectionRect(5, 6, 10, 8);
  view().SelectionVisible(true);
  log().clear();
  editor().Copy(true);
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Crop(5, 6, 10, 8, \"\")",
                          "scratch.Writer.ToClipboard()"));
}

TEST_P(EditingSelection, ABackwardsSelectionReachesTheEngineUnchanged) {
  dragSelection({15, 14}, {5, 6});
  EXPECT_EQ(view().SelectionWidth(), -10);
  EXPECT_EQ(view().SelectionHeight(), -8);
  log().clear();
  editor().Copy(true);
  EXPECT_THAT(calls(), testing::Contains("scratch.Effects.Crop(15, 14, -10, -8, \"\")"));
  EXPECT_EQ(clipboard().at(0, 0), pixelOf(5, 6));
}

// -- Cut --------------------------------------------------------------------------------------------------

TEST_P(EditingSelection, CutCopiesThenResetsThenFillsTheHole) {
  editor().BackColor(0x0000FF);
  dragSelection({5, 6}, {15, 14});
  log().clear();
  click("btnEditCut");
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Crop(5, 6, 10, 8, \"\")",
                          "scratch.Writer.ToClipboard()", "SelectionHeight=0", "SelectionWidth=0",
                          "SelectionVisible=False", "view.Draw.FillMode=6",
                          "view.Draw.Rectangle((5, 6), (15, 14), 0, 0, \"Cut\")"));
  EXPECT_EQ(clipboard().at(0, 0), pixelOf(5, 6));
  EXPECT_EQ(at(5, 6), kRed);
  EXPECT_EQ(at(14, 13), kRed);
  EXPECT_EQ(at(15, 13), pixelOf(15, 13));
  EXPECT_EQ(at(14, 14), pixelOf(14, 14));
  EXPECT_EQ(undoCaption(), "&Undo Cut");
}

TEST_P(EditingSelection, CutWithoutASelectionFillsFromTheOriginToTheViewsOwnSize) {
  open(2000, 20);
  editor().BackColor(0x0000FF);
  log().clear();
  click("btnEditCut");
  const Point end{view().Width(), view().Height()};
  EXPECT_THAT(engineCalls(),
              ElementsAre("view.Writer.ToClipboard()",
                          "view.Draw.Rectangle((0, 0), " + recorded::text(end) + ", 0, 0, \"Cut\")"));
  EXPECT_LT(end.X, 2000);
  EXPECT_EQ(at(end.X - 1, 19), kRed);
  EXPECT_EQ(at(end.X, 19), pixelOf(end.X, 19)) << "need not match the picture's size";
}

TEST_P(EditingSelection, TheCutCommandUsesTheSelectionOnlyWithItsTool) {
  editor().Tool(ipToolPan);
  view().SetSelectionRect(5, 6, 10, 8);
  view().SelectionVisible(true);
  editor().BackColor(0x0000FF);
  click("btnEditCut");
  EXPECT_TRUE(same(clipboard(), gradient(kWidth, kHeight)));
  EXPECT_EQ(at(0, 0), kRed);
}

TEST_P(EditingSelection, CutWithFalseFillsFromTheOriginAndKeepsTheSelection) {
  editor().BackColor(0x0000FF);
  editor().SetSelection(5, 6, 10, 8);
  editor().Cut(false);
  EXPECT_TRUE(same(clipboard(), gradient(kWidth, kHeight)));
  EXPECT_EQ(at(0, 0), kRed);
  EXPECT_EQ(at(kWidth - 1, kHeight - 1), kRed);
  EXPECT_TRUE(modImgX::ValidSelection(&view()));
}

TEST_P(EditingSelection, ABackwardsSelectionIsCutAtItsPixels) {
  editor().BackColor(0x0000FF);
  editor().SetSelection(15, 14, -10, -8);
  log().clear();
  editor().Cut(true);
  EXPECT_THAT(calls(), testing::Contains("view.Draw.Rectangle((15, 14), (5, 6), 0, 0, \"Cut\")"));
  EXPECT_EQ(clipboard().at(0, 0), pixelOf(5, 6));
  EXPECT_EQ(at(5, 6), kRed);
  EXPECT_EQ(at(14, 13), kRed);
  EXPECT_EQ(at(4, 6), pixelOf(4, 6));
  EXPECT_EQ(at(15, 14), pixelOf(15, 14));
}

TEST_P(EditingSelection, CutFillsInTheForeColorWithoutABackColor) {
  editor().ForeColor(0x0000FF);
  editor().BackColor(-1);
  ASSERT_EQ(view().Draw().FillMode(), -1);
  editor().SetSelection(5, 6, 10, 8);
  editor().Cut(true);
  EXPECT_EQ(at(7, 8), kRed);
  EXPECT_EQ(view().Draw().FillMode(), 6);
  editor().BackColor(-1);
  EXPECT_EQ(view().Draw().FillMode(), 6) << "the current color is no change";
  editor().BackColor(1);
  editor().BackColor(-1);
  EXPECT_EQ(view().Draw().FillMode(), -1);
}

TEST_P(EditingSelection, CutOfASelectionOutsideThePictureIsReported) {
  editor().SetSelection(100, 6, 10, 8);
  expectReport();
  editor().Cut(true);
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  EXPECT_FALSE(editor().Changed());
}

KESTREL_WITH_BOTH_PATHS(EditingSelection);

}  // namespace
}  // namespace kestrel
