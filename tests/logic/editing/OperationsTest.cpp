#include <limits>

#include "EditingTest.h"
#include "engine/effects/Crop.h"
#include "engine/effects/DropShadow.h"
#include "engine/effects/Flip.h"
#include "engine/effects/GrayScale.h"
#include "engine/effects/ReplaceColor.h"
#include "engine/effects/Rotate.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class EditingOperations : public EditingTest {
 protected:
  void select() {
    editor().SetSelection(5, 6, 20, 12);
    log().clear();
  }
  /// The pixels of the rectangle that `select` selects.
  static engine::Bitmap section() { return engine::crop(gradient(kWidth, kHeight), 5, 6, 20, 12); }
  /// The gradient with a picture drawn at the selection's corner.
  engine::Bitmap withSection(const engine::Bitmap& section) {
    engine::Bitmap result = gradient(kWidth, kHeight);
    const engine::Pixels pixels = result.writable();
    for (std::int32_t y = 0; y < section.height() && y + 6 < kHeight; ++y) {
      for (std::int32_t x = 0; x < section.width() && x + 5 < kWidth; ++x) {
        reinterpret_cast<engine::Pixel*>(pixels.row(y + 6))[x + 5] = section.at(x, y);
      }
    }
    return result;
  }
};

// -- The whole picture ------------------------------------------------------------------------------------

TEST_P(EditingOperations, ResizePassesItsArgumentsAndReadsNoDefault) {
  editor().Resize(20);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Resize(20, 0, 0, \"\")"));
  EXPECT_EQ(shown().height(), 15);
  log().clear();
  editor().Resize(7, 9, 13);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Resize(7, 9, 13, \"\")"));
}

TEST_P(EditingOperations, ResizeIgnoresTheSelection) {
  select();
  editor().Resize(20);
  EXPECT_THAT(engineCalls(), ElementsAre("view.Effects.Resize(20, 0, 0, \"\")"));
}

TEST_P(EditingOperations, ResizeCanvasTakesTheOptionsColorForMinusOne) {
  options().ResizeCanvasColor(0x123456);
  editor().ResizeCanvas(50, 60, 3, 4);
  editor().ResizeCanvas(50, 60, 3, 4, 0);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.ResizeCanvas(50, 60, #1193046/255, 3, 4, \"\")",
                                   "view.Effects.ResizeCanvas(50, 60, #0/255, 3, 4, \"\")"));
}

TEST_P(EditingOperations, FlattenTakesTheOptionsColorForMinusOne) {
  options().FlattenAlphaColor(0x00FF00);
  editor().FlattenAlpha();
  editor().FlattenAlpha(0);
  EXPECT_THAT(calls(),
              ElementsAre("view.Alpha.Flatten(#65280/255, \"\")", "view.Alpha.Flatten(#0/255, \"\")"));
}

TEST_P(EditingOperations, WithoutASelectionWorkOnTheViewWithAnEmptyUndoName) {
  editor().Rotate(30, 0x0000FF, true);
  editor().FlipHorizontally(true);
  editor().FlipVertically(true);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Rotate(30, #255/255, 0, \"\")", "view.Effects.Flip(0, \"\")",
                                   "view.Effects.Flip(1, \"\")"));
}

TEST_P(EditingOperations, FlipsTurnTheWholePicture) {
  editor().FlipHorizontally();
  EXPECT_EQ(at(0, 3), pixelOf(kWidth - 1, 3));
  editor().FlipHorizontally();
  editor().FlipVertically();
  EXPECT_EQ(at(3, 0), pixelOf(3, kHeight - 1));
}

TEST_P(EditingOperations, GrayScaleIsPalette0OnTheViewsPicture) {
  editor().ApplyGrayScale();
  EXPECT_TRUE(same(shown(), engine::grayScale(gradient(kWidth, kHeight))));
  EXPECT_TRUE(editor().Changed());
}

// -- The selection ----------------------------------------------------------------------------------------

TEST_P(EditingOperations, FlipWithFalseIgnoresTheSelection) {
  select();
  editor().FlipHorizontally(false);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Flip(0, \"\")"));
  EXPECT_TRUE(view().SelectionVisible());
}

TEST_P(EditingOperations, WithFalseTheOthersIgnoreTheSelection) {
  select();
  editor().FlipVertically(false);
  editor().Rotate(90, 0, false);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Flip(1, \"\")", "view.Effects.Rotate(90, #0/255, 0, \"\")"));
  open(kWidth, kHeight);
  select();
  editor().ApplyGrayScale(false);
  EXPECT_TRUE(same(shown(), engine::grayScale(gradient(kWidth, kHeight))));
  EXPECT_TRUE(view().SelectionVisible());
}

TEST_P(EditingOperations, CanvasAndFlattenIgnoreTheSelection) {
  select();
  editor().ResizeCanvas(50, 60, 3, 4, 0);
  editor().FlattenAlpha(0);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.ResizeCanvas(50, 60, #0/255, 3, 4, \"\")",
                                   "view.Alpha.Flatten(#0/255, \"\")"));
  EXPECT_TRUE(view().SelectionVisible());
}

TEST_P(EditingOperations, AnEmptySelectionIsNone) {
  editor().SetSelection(5, 6, 0, 12);
  log().clear();
  editor().FlipHorizontally(true);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Flip(0, \"\")"));
  EXPECT_EQ(at(0, 3), pixelOf(kWidth - 1, 3));
}

TEST_P(EditingOperations, ASectionIsTakenEditedAndDrawnBackOnce) {
  select();
  editor().FlipHorizontally(true);
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Crop(5, 6, 20, 12, \"\")",
                          "scratch.Effects.Flip(0, \"\")",
                          "view.Draw.ImageWithAlpha(20x12 picture, 5, 6, \"\")", "SelectionVisible=False"));
  EXPECT_TRUE(same(shown(), withSection(engine::flip(section(), engine::FlipDirection::LeftToRight))));
  EXPECT_FALSE(view().SelectionVisible());
}

TEST_P(EditingOperations, TheMenuFollowsTheSelection) {
  const struct {
    const char* key;
    const char* call;
  } commands[] = {{"btnImageMirror", "scratch.Effects.Flip(0, \"\")"},
                  {"btnImageFlip", "scratch.Effects.Flip(1, \"\")"},
                  {"btnImageGrayScale", "scratch.Effects.ApplyPalette(0, True, \"\")"},
                  {"btnRotateRight", "scratch.Effects.Rotate(90, #-1/0, 0, \"\")"},
                  {"btnRotateLeft", "scratch.Effects.Rotate(270, #-1/0, 0, \"\")"}};
  options().MaterialBackColor(-1);
  for (const auto& entry : commands) {
    open(kWidth, kHeight);
    select();
    click(entry.key);
    EXPECT_THAT(calls(), Contains(entry.call)) << entry.key;
    EXPECT_THAT(calls(), Contains(HasSubstr("view.Draw.ImageWithAlpha("))) << entry.key;
  }
}

TEST_P(EditingOperations, TheMenuTurnsTheWholePictureWithoutASelection) {
  options().MaterialBackColor(-1);
  click("btnRotateRight");
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Rotate(90, #-1/0, 0, \"\")"));
  EXPECT_EQ(shown().width(), kHeight);
  EXPECT_EQ(at(0, 0), pixelOf(0, kHeight - 1));
  click("btnRotateLeft");
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingOperations, ARotatedSectionIsDrawnBackAtTheSelectionsCorner) {
  select();
  editor().Rotate(90, -1, true);
  EXPECT_TRUE(same(shown(), withSection(engine::rotate(section(), 90, {}))))
      << "now 12 by 20; pixels outside it are unchanged";
  EXPECT_EQ(at(20, 7), pixelOf(20, 7));
  EXPECT_FALSE(view().SelectionVisible());
}

TEST_P(EditingOperations, GrayOfASectionLeavesTheRest) {
  select();
  editor().ApplyGrayScale(true);
  EXPECT_TRUE(same(shown(), withSection(engine::grayScale(section()))));
}

TEST_P(EditingOperations, ABackwardsSelectionIsDrawnBackWhereItsPixelsWere) {
  for (const Rectangle& backwards :
       {Rectangle{25, 18, -20, -12}, Rectangle{25, 6, -20, 12}, Rectangle{5, 18, 20, -12}}) {
    open(kWidth, kHeight);
    dragSelection({backwards.Left, backwards.Top},
                  {backwards.Left + backwards.Width, backwards.Top + backwards.Height});
    log().clear();
    click("btnImageGrayScale");
    EXPECT_THAT(calls(), Contains(recorded::call("scratch.Effects.Crop", backwards.Left, backwards.Top,
                                                 backwards.Width, backwards.Height, std::string())));
    EXPECT_THAT(calls(), Contains("view.Draw.ImageWithAlpha(20x12 picture, 5, 6, \"\")"));
    EXPECT_TRUE(same(shown(), withSection(engine::grayScale(section()))));
  }
}

TEST_P(EditingOperations, ASelectionOverTheEdgeIsDrawnBackAtTheCornerOfThePartInside) {
  const engine::Bitmap picture = gradient(kWidth, kHeight);
  for (const Rectangle& over : {Rectangle{-8, -6, 20, 16}, Rectangle{12, 10, -20, -16}}) {
    show(picture);
    editor().SetSelection(over.Left, over.Top, over.Width, over.Height);
    log().clear();
    editor().FlipHorizontally(true);
    EXPECT_THAT(calls(), Contains("view.Draw.ImageWithAlpha(12x10 picture, 0, 0, \"\")"));
    for (std::int32_t y = 0; y < kHeight; ++y) {
      for (std::int32_t x = 0; x < kWidth; ++x) {
        const bool turned = x < 12 && y < 10;
        ASSERT_EQ(at(x, y), turned ? pixelOf(11 - x, y) : pixelOf(x, y)) << x << ", " << y;
      }
    }
  }
}

TEST_P(EditingOperations, ASelectionOverTheFarEdgeIsDrawnBackAtItsOwnCorner) {
  editor().SetSelection(30, 20, 100, 100);
  log().clear();
  editor().FlipVertically(true);
  EXPECT_THAT(calls(), Contains("view.Draw.ImageWithAlpha(10x10 picture, 30, 20, \"\")"));
  EXPECT_EQ(at(35, 20), pixelOf(35, 29));
}

TEST_P(EditingOperations, ASectionFromTheFarthestPositionIsDrawnBack) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  editor().SetSelection(kMost, kMost, -kMost, -kMost);
  log().clear();
  editor().FlipVertically(true);
  EXPECT_THAT(calls(), Contains("view.Draw.ImageWithAlpha(40x30 picture, 0, 0, \"\")"));
}

// -- The color of Rotate ---------------------------------------------------------------------------------

TEST_P(EditingOperations, RotateWithoutABackgroundLeavesCornersTransparent) {
  options().MaterialBackColor(-1);
  options().MaterialForeColor(0x0000FF);
  editor().Rotate(45);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Rotate(45, #-1/0, 0, \"\")"));
  EXPECT_EQ(at(0, 0).a, 0);
}

TEST_P(EditingOperations, RotateWithABackgroundFillsInTheForegroundMaterial) {
  options().MaterialBackColor(0x00FF00);
  options().MaterialForeColor(0x0000FF);
  editor().Rotate(45);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Rotate(45, #255/255, 0, \"\")"));
  EXPECT_EQ(at(0, 0), (engine::Pixel{255, 0, 0, 255}));
}

TEST_P(EditingOperations, RotateUsesAGivenColorUnchanged) {
  editor().Rotate(45, 0);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.Rotate(45, #0/255, 0, \"\")"));
}

// -- Drop shadow ------------------------------------------------------------------------------------------

TEST_P(EditingOperations, TheShadowsDefaultsAreTheStoredOnes) {
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 5);
  EXPECT_EQ(options().DropShadowVerticalOffset(), 5);
  EXPECT_EQ(options().DropShadowColor(), 0);
  EXPECT_EQ(options().DropShadowBlur(), 128);
  EXPECT_TRUE(options().DropShadowAutomaticMask());
  EXPECT_EQ(options().DropShadowMaskColor(), 0);
}

TEST_P(EditingOperations, EachShadowArgumentOfMinusOneTakesItsOption) {
  options().DropShadowHorizontalOffset(1);
  options().DropShadowVerticalOffset(2);
  options().DropShadowColor(3);
  options().DropShadowOpacity(4);
  options().DropShadowBlur(5);
  editor().ApplyDropShadow();
  editor().ApplyDropShadow(11, -1, 13, -1, 15);
  editor().ApplyDropShadow(-1, 12, -1, 14, -1);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.DropShadow(1, 2, #3/4, 5, True, \"\")",
                                   "view.Effects.DropShadow(11, 2, #13/4, 15, True, \"\")",
                                   "view.Effects.DropShadow(1, 12, #3/14, 5, True, \"\")"));
}

TEST_P(EditingOperations, AnExplicitZeroOfTheShadowIsUsedAsZero) {
  editor().ApplyDropShadow(0, 0, 0, 0, 0);
  EXPECT_THAT(calls(), ElementsAre("view.Effects.DropShadow(0, 0, #0/0, 0, True, \"\")"));
}

TEST_P(EditingOperations, AnOpacityBeyondAByteRaisesAnOverflow) {
  for (const std::int32_t opacity : {256, 1000, -2}) {
    try {
      editor().ApplyDropShadow(1, 1, 0, opacity, 1);
      ADD_FAILURE() << opacity;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kOverflow);
    }
  }
  EXPECT_THAT(engineCalls(), IsEmpty());
  EXPECT_NO_THROW(editor().ApplyDropShadow(1, 1, 0, 255, 1));
}

TEST_P(EditingOperations, TheShadowOfASectionIsDrawnBackWithIt) {
  select();
  editor().ApplyDropShadow(3, 4, 0, 200, 10, true);
  EXPECT_THAT(engineCalls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Crop(5, 6, 20, 12, \"\")",
                          "scratch.Effects.DropShadow(3, 4, #0/200, 10, True, \"\")",
                          HasSubstr("view.Draw.ImageWithAlpha(")));
}

TEST_P(EditingOperations, DropShadowWithFalseIgnoresTheSelection) {
  select();
  editor().ApplyDropShadow(3, 4, 0, 200, 10, false);
  EXPECT_THAT(engineCalls(), ElementsAre("view.Effects.DropShadow(3, 4, #0/200, 10, True, \"\")"));
}

// -- Contoured drop shadow --------------------------------------------------------------------------------

TEST_P(EditingOperations, TheContouredShadowMakesItsUndoPointFirst) {
  editor().ApplyMaskedDropShadow(3, 4, 7, 200, 10, 99, false);
  EXPECT_THAT(calls(), ElementsAre("CreateUndoPoint(\"Contoured Drop Shadow\")",
                                   "view.Effects.ReplaceColor(#99/255, #0/0, 1, 0, \"No Undo\")",
                                   "view.Effects.DropShadow(3, 4, #7/200, 10, True, \"No Undo\")"));
  EXPECT_EQ(undoCaption(), "&Undo Contoured Drop Shadow");
}

TEST_P(EditingOperations, TheContouredShadowTakesItsMaskFromTheOptionsForMinusOne) {
  options().DropShadowMaskColor(0x102030);
  editor().ApplyMaskedDropShadow(3, 4, 7, 200, 10, -1, false);
  EXPECT_THAT(calls(), Contains("view.Effects.ReplaceColor(#1056816/255, #0/0, 1, 0, \"No Undo\")"));
}

TEST_P(EditingOperations, TheAutomaticMaskIsTheCornerPixelBeforeAnythingChanges) {
  const std::string corner = ToText(colorOf(pixelOf(0, 0)));
  editor().ApplyMaskedDropShadow(3, 4, 7, 200, 10, 99, true);
  EXPECT_THAT(calls(), Contains("view.Effects.ReplaceColor(#" + corner + "/255, #0/0, 1, 0, \"No Undo\")"));
}

TEST_P(EditingOperations, TheContouredShadowAlwaysUsesAValidSelection) {
  const std::string corner = ToText(colorOf(pixelOf(5, 6)));
  for (const bool applyToSelection : {false, true}) {
    open(kWidth, kHeight);
    select();
    editor().ApplyMaskedDropShadow(3, 4, 7, 200, 10, 99, true, applyToSelection);
    EXPECT_THAT(
        engineCalls(),
        ElementsAre("CreateUndoPoint(\"Contoured Drop Shadow\")", "scratch.Document.CopyFrom(0, \"\")",
                    "scratch.Effects.Crop(5, 6, 20, 12, \"\")",
                    "scratch.Effects.ReplaceColor(#" + corner + "/255, #0/0, 1, 0, \"No Undo\")",
                    "scratch.Effects.DropShadow(3, 4, #7/200, 10, True, \"No Undo\")",
                    testing::AllOf(HasSubstr("view.Draw.ImageWithAlpha("), HasSubstr("\"No Undo\""))));
    EXPECT_FALSE(view().SelectionVisible());
    EXPECT_EQ(undoCaption(), "&Undo Contoured Drop Shadow");
  }
}

TEST_P(EditingOperations, TheContouredShadowFollowsTheOutlineOfThePicture) {
  engine::Bitmap picture = engine::Bitmap::filled(30, 30, {255, 255, 255, 255});
  const engine::Pixels pixels = picture.writable();
  for (std::int32_t y = 10; y < 20; ++y) {
    for (std::int32_t x = 10; x < 20; ++x) {
      reinterpret_cast<engine::Pixel*>(pixels.row(y))[x] = {255, 0, 0, 255};
    }
  }
  show(picture);
  editor().ApplyMaskedDropShadow(5, 5, 0, 255, 0, -1, true);
  const engine::Bitmap expected = engine::dropShadow(
      engine::replaceColor(picture, {255, 255, 255, 255}, {0, 0, 0, 0}, 1.0), 5, 5, {0, 0, 0, 255}, 0);
  EXPECT_TRUE(same(shown(), expected));
  EXPECT_EQ(at(2, 2).a, 0) << "the background is transparent";
}

TEST_P(EditingOperations, TheContouredShadowsOverflowReachesTheCaller) {
  EXPECT_THROW(editor().ApplyMaskedDropShadow(3, 4, 7, 300, 10, 99, true), RuntimeError);
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight))) << "nor did it lose its background";
}

// -- Failures ---------------------------------------------------------------------------------------------

TEST_P(EditingOperations, EngineErrorsGoToTheCaller) {
  EXPECT_THROW(editor().Resize(0), RuntimeError);
  EXPECT_THROW(editor().Resize(10, 10, 77), RuntimeError);
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingOperations, WithoutAPictureTheEngineRaisesItsError) {
  editor().Picture(nullptr);
  EXPECT_THROW(editor().FlipHorizontally(true), RuntimeError);
  EXPECT_THROW(editor().Rotate(90), RuntimeError);
  EXPECT_THROW(editor().ApplyGrayScale(), RuntimeError);
  EXPECT_THROW(editor().FlattenAlpha(), RuntimeError);
}

TEST_P(EditingOperations, ASectionTakesTheWholePictureByReference) {
  select();
  const std::uint8_t* const before = shown().pixels().data;
  editor().FlipHorizontally(true);
  EXPECT_EQ(shown().pixels().data, before) << "another reference would have caused a copy";
}

KESTREL_WITH_BOTH_PATHS(EditingOperations);

}  // namespace
}  // namespace kestrel
