#include "EditingTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditingUndo : public EditingTest {
 protected:
  std::string undoTip() { return command("btnEditUndo").ToolTip(); }
  std::string redoTip() { return command("btnEditRedo").ToolTip(); }
};

TEST_P(EditingUndo, AStepWithAnEmptyNameShowsAsPlainUndo) {
  editor().FlipHorizontally();
  EXPECT_EQ(undoCaption(), "&Undo");
  EXPECT_EQ(undoTip(), "Undo");
  EXPECT_EQ(redoCaption(), "&Redo");
  EXPECT_EQ(redoTip(), "Redo");
}

TEST_P(EditingUndo, TheCaptionHasTheNameAndTheToolTipNoAccelerator) {
  editor().SetSelection(5, 5, 10, 10);
  editor().Cut(true);
  EXPECT_EQ(undoCaption(), "&Undo Cut");
  EXPECT_EQ(undoTip(), "Undo Cut");
  click("btnEditUndo");
  EXPECT_EQ(undoCaption(), "&Undo");
  EXPECT_EQ(redoCaption(), "&Redo Cut");
  EXPECT_EQ(redoTip(), "Redo Cut");
  click("btnEditRedo");
  EXPECT_EQ(undoCaption(), "&Undo Cut");
  EXPECT_EQ(redoCaption(), "&Redo");
}

TEST_P(EditingUndo, UndoAndRedoAreEnabledWhileThereIsAStep) {
  const auto state = [&] {
    return std::pair(command("btnEditUndo").Enabled(), command("btnEditRedo").Enabled());
  };
  EXPECT_EQ(state(), std::pair(false, false)) << "a new picture";
  editor().FlipHorizontally();
  EXPECT_EQ(state(), std::pair(true, false)) << "an unnamed step is a step";
  editor().FlipVertically();
  editor().Undo();
  EXPECT_EQ(state(), std::pair(true, true));
  editor().Undo();
  EXPECT_EQ(state(), std::pair(false, true));
  editor().SetControls(true);
  EXPECT_EQ(state(), std::pair(false, true)) << "SetControls reads the stack";
  editor().SetControls(false);
  EXPECT_EQ(state(), std::pair(false, false));
  editor().SetControls(true);
  editor().Redo();
  EXPECT_EQ(state(), std::pair(true, true));
  editor().Redo();
  EXPECT_EQ(state(), std::pair(true, false));
  editor().Undo();
  editor().ApplyGrayScale();
  EXPECT_EQ(state(), std::pair(true, false)) << "a change drops what was undone";
  editor().UndoLevels(0);
  EXPECT_EQ(state(), std::pair(false, false)) << "no levels, no steps";
  editor().FlipVertically();
  EXPECT_EQ(state(), std::pair(false, false));
  editor().UndoLevels(3);
  editor().ImageControl().CreateUndoPoint("Host");
  EXPECT_EQ(state(), std::pair(true, false)) << "a host's undo point is a step";
  open(kWidth, kHeight);
  EXPECT_EQ(state(), std::pair(false, false));
  EXPECT_FALSE(suite().click("btnEditUndo"));
}

TEST_P(EditingUndo, AfterANewPictureTheCaptionsArePlainAgain) {
  editor().SetSelection(5, 5, 10, 10);
  editor().Cut(true);
  editor().SetSelection(5, 5, 10, 10);
  editor().Cut(true);
  editor().Undo();
  ASSERT_EQ(undoCaption(), "&Undo Cut");
  ASSERT_EQ(redoCaption(), "&Redo Cut");
  ASSERT_TRUE(editor().OpenImage(makePicture("b.png", 2)));
  EXPECT_EQ(undoCaption(), "&Undo");
  EXPECT_EQ(redoCaption(), "&Redo");
  EXPECT_EQ(undoTip(), "Undo");
  EXPECT_EQ(redoTip(), "Redo");
}

TEST_P(EditingUndo, AnUnnamedStepAfterAnUndoPointIsASeparateStep) {
  const engine::Bitmap before = shown();
  view().CreateUndoPoint("x");
  editor().FlipHorizontally();
  EXPECT_EQ(undoCaption(), "&Undo");
  editor().Undo();
  EXPECT_TRUE(same(shown(), before));
  EXPECT_EQ(undoCaption(), "&Undo x");
  editor().Undo();
  EXPECT_TRUE(same(shown(), before));
  EXPECT_EQ(undoCaption(), "&Undo");
  EXPECT_EQ(redoCaption(), "&Redo x");
}

TEST_P(EditingUndo, ASectionAfterAHostsUndoPointIsASeparateStep) {
  view().CreateUndoPoint("x");
  editor().SetSelection(5, 5, 10, 10);
  editor().FlipHorizontally(true);
  EXPECT_EQ(undoCaption(), "&Undo");
  editor().Undo();
  EXPECT_EQ(undoCaption(), "&Undo x");
}

TEST_P(EditingUndo, AFailedContouredShadowChangesNothing) {
  using Editor = ImageProcessingCtl;
  constexpr std::int32_t kTooFar = 2000000000;
  const struct {
    const char* what;
    std::function<void(Editor&)> run;
  } failures[] = {
      {"opacity beyond a byte", [](Editor& e) { e.ApplyMaskedDropShadow(3, 3, 0, 256, 5, 0, false); }},
      {"an engine error after the mask",
       [](Editor& e) { e.ApplyMaskedDropShadow(kTooFar, 3, 0, 200, 5, 0, false); }},
      {"opacity, with a section",
       [](Editor& e) {
         e.SetSelection(5, 5, 10, 10);
         e.ApplyMaskedDropShadow(3, 3, 0, 256, 5, 0, false);
       }},
      {"a mask outside the picture",
       [](Editor& e) {
         e.SetSelection(-5, 5, 20, 10);
         e.ApplyMaskedDropShadow(3, 3, 0, 200, 5, 0, true);
       }},
      {"a selection outside the picture",
       [](Editor& e) {
         e.SetSelection(500, 500, 10, 10);
         e.ApplyMaskedDropShadow(3, 3, 0, 200, 5, 0, false);
       }},
      {"an engine error in the section",
       [](Editor& e) {
         e.SetSelection(5, 5, 10, 10);
         e.ApplyMaskedDropShadow(kTooFar, 3, 0, 200, 5, 0, false);
       }},
  };
  for (const auto& failure : failures) {
    for (const std::int32_t levels : {0, 2, 10}) {
      SCOPED_TRACE(failure.what + (" with levels " + ToText(levels)));
      editor().UndoLevels(levels);
      show(gradient(kWidth, kHeight));
      editor().SetSelection(1, 1, 5, 5);
      editor().Cut(true);
      editor().FlipVertically();
      editor().Undo();
      const engine::Bitmap before = shown();
      const std::string undo = undoCaption(), redo = redoCaption();
      const bool canUndo = view().CanUndo(), canRedo = view().CanRedo();
      editor().Changed(false);
      view().Modified(false);
      int changes = 0;
      const Connection change = editor().Change.Connect([&changes] { ++changes; });
      EXPECT_THROW(failure.run(editor()), RuntimeError);
      EXPECT_TRUE(same(shown(), before));
      EXPECT_FALSE(editor().Changed());
      EXPECT_EQ(changes, 0) << "no Change for what was taken back";
      EXPECT_FALSE(view().Modified());
      EXPECT_EQ(undoCaption(), undo);
      EXPECT_EQ(redoCaption(), redo);
      EXPECT_EQ(view().CanUndo(), canUndo);
      EXPECT_EQ(view().CanRedo(), canRedo);
      editor().Redo();
      EXPECT_EQ(same(shown(), before), !canRedo) << "the undone step can still be redone";
    }
  }
}

TEST_P(EditingUndo, AfterAnUndoTheNextNameIsShownAndChangedStays) {
  editor().Tool(ipToolRectangle);
  dragSelection({5, 5}, {12, 12});
  editor().SetSelection(5, 5, 10, 10);
  editor().Cut(true);
  editor().Undo();
  EXPECT_EQ(undoCaption(), "&Undo Rectangle");
  EXPECT_EQ(redoCaption(), "&Redo Cut");
  EXPECT_TRUE(editor().Changed());
}

TEST_P(EditingUndo, EveryOperationIsOneStepForUndoAndRedo) {
  using Editor = ImageProcessingCtl;
  const struct {
    const char* what;
    std::function<void(Editor&)> run;
    const char* caption;
  } operations[] = {
      {"Resize", [](Editor& e) { e.Resize(20); }, "&Undo"},
      {"ResizeCanvas", [](Editor& e) { e.ResizeCanvas(60, 50, 5, 5, 0xFF); }, "&Undo"},
      {"Rotate", [](Editor& e) { e.Rotate(30); }, "&Undo"},
      {"Flip", [](Editor& e) { e.FlipVertically(); }, "&Undo"},
      {"Grey", [](Editor& e) { e.ApplyGrayScale(); }, "&Undo"},
      {"Shadow", [](Editor& e) { e.ApplyDropShadow(3, 3, 0, 200, 5); }, "&Undo"},
      {"Contoured shadow", [](Editor& e) { e.ApplyMaskedDropShadow(3, 3, 0, 200, 5, -1, true); },
       "&Undo Contoured Drop Shadow"},
      {"Crop",
       [](Editor& e) {
         e.SetSelection(5, 5, 10, 10);
         e.CropToSelection();
       },
       "&Undo"},
      {"Cut",
       [](Editor& e) {
         e.SetSelection(5, 5, 10, 10);
         e.Cut(true);
       },
       "&Undo Cut"},
      {"Section",
       [](Editor& e) {
         e.SetSelection(5, 5, 10, 10);
         e.Rotate(90, -1, true);
       },
       "&Undo"},
      {"Grey section",
       [](Editor& e) {
         e.SetSelection(5, 5, 10, 10);
         e.ApplyGrayScale(true);
       },
       "&Undo"},
      {"Contoured shadow of a section",
       [](Editor& e) {
         e.SetSelection(5, 5, 10, 10);
         e.ApplyMaskedDropShadow(3, 3, 0, 200, 5, -1, true);
       },
       "&Undo Contoured Drop Shadow"},
  };
  const engine::Bitmap before = gradient(kWidth, kHeight);
  for (const auto& operation : operations) {
    show(before);
    editor().BackColor(0x0000FF);
    operation.run(editor());
    EXPECT_EQ(undoCaption(), operation.caption) << operation.what;
    const engine::Bitmap after = shown();
    EXPECT_FALSE(same(after, before)) << operation.what;
    editor().Undo();
    EXPECT_TRUE(same(shown(), before)) << operation.what;
    EXPECT_EQ(undoCaption(), "&Undo") << operation.what;
    editor().Undo();
    EXPECT_TRUE(same(shown(), before)) << operation.what << " was one step";
    editor().Redo();
    EXPECT_TRUE(same(shown(), after)) << operation.what;
  }
}

TEST_P(EditingUndo, FlattenIsOneUnnamedStep) {
  show(engine::Bitmap::filled(8, 8, {10, 20, 30, 100}));
  editor().FlattenAlpha(0xFFFFFF);
  EXPECT_EQ(undoCaption(), "&Undo");
  EXPECT_EQ(at(3, 3).a, 255);
  editor().Undo();
  EXPECT_EQ(at(3, 3).a, 100);
}

TEST_P(EditingUndo, SelectingCopyingViewingToolsAndColorsAreNoChange) {
  open(1000, 900);
  dragSelection({10, 10}, {100, 100});
  editor().Copy(true);
  editor().ZoomIn();
  view().ScrollLeft(50);
  editor().Tool(ipToolPan);
  editor().ForeColor(77);
  editor().BackColor(-1);
  EXPECT_FALSE(editor().Changed());
  editor().Undo();
  EXPECT_TRUE(same(shown(), gradient(1000, 900)));
  EXPECT_FALSE(editor().Changed()) << "an empty stack changes nothing";
}

TEST_P(EditingUndo, ChangeIsRaisedOncePerRunOfChanges) {
  int changes = 0;
  when(editor().Change, [&] { ++changes; });
  editor().FlipHorizontally();
  editor().FlipVertically();
  editor().Undo();
  EXPECT_EQ(changes, 1);
  editor().Changed(false);
  EXPECT_EQ(changes, 1) << "a clear raises nothing";
  editor().Redo();
  EXPECT_EQ(changes, 2);
  EXPECT_TRUE(editor().Changed());
}

TEST_P(EditingUndo, ALoadDoesNotRaiseChange) {
  std::vector<std::string> names;
  when(editor().Change, [&] { names.push_back(editor().Filename()); });
  const std::string a = makePicture("a.png", 2), b = makePicture("b.png", 2, 7, 5);
  ASSERT_TRUE(editor().OpenImage(a));
  editor().FlipHorizontally();
  editor().Changed(false);
  names.clear();
  ASSERT_TRUE(editor().OpenImage(b));
  EXPECT_THAT(names, IsEmpty()) << "the picture is new and the name still the old one";
  editor().Picture(std::make_shared<engine::PictureObject>(gradient(10, 10)));
  EXPECT_THAT(names, IsEmpty());
  EXPECT_FALSE(editor().Changed());
  editor().FlipHorizontally();
  editor().FlipVertically();
  EXPECT_THAT(names, ElementsAre(b)) << "once, on the first change after the load";
}

TEST_P(EditingUndo, UndoingAllStepsSetsChanged) {
  editor().FlipHorizontally();
  editor().Changed(false);
  editor().Undo();
  EXPECT_TRUE(editor().Changed());
}

TEST_P(EditingUndo, TheCaptionsAreSetBeforeChangeIsRaised) {
  std::string caption;
  when(editor().Change, [&] { caption = undoCaption(); });
  editor().SetSelection(5, 5, 10, 10);
  editor().Cut(true);
  EXPECT_EQ(caption, "&Undo Cut");
}

TEST_P(EditingUndo, StepsAreKeptUpToTheLevels) {
  editor().UndoLevels(2);
  const engine::Bitmap before = shown();
  editor().FlipHorizontally();
  const engine::Bitmap first = shown();
  editor().FlipVertically();
  editor().ApplyGrayScale();
  for (int i = 0; i < 5; ++i) editor().Undo();
  EXPECT_TRUE(same(shown(), first));
  EXPECT_FALSE(same(shown(), before));
}

TEST_P(EditingUndo, Levels0StoreNothingAndTheCaptionsStayPlain) {
  editor().UndoLevels(0);
  editor().SetSelection(5, 5, 10, 10);
  editor().Cut(true);
  const engine::Bitmap after = shown();
  EXPECT_EQ(undoCaption(), "&Undo");
  editor().Undo();
  EXPECT_TRUE(same(shown(), after));
  EXPECT_EQ(redoCaption(), "&Redo");
}

TEST_P(EditingUndo, Levels0InTheOptionsStoreNothingFromTheStart) {
  options().UndoLevels(0);
  endEditor();
  start();
  EXPECT_EQ(editor().UndoLevels(), 0);
  EXPECT_EQ(view().UndoLevels(), 0);
  view().Document().NewImage(kWidth, kHeight, nullptr, kPixelFormatRgba, kNoUndo);
  editor().FlipHorizontally();
  EXPECT_FALSE(view().CanUndo());
  EXPECT_FALSE(command("btnEditUndo").Enabled());
}

TEST_P(EditingUndo, APictureThatAHostLoadsWithoutAStepDisablesRedo) {
  editor().SetSelection(5, 5, 10, 10);
  editor().Cut(true);
  editor().Undo();
  ASSERT_TRUE(command("btnEditRedo").Enabled());
  editor().ImageControl().Document().FromPicture(engine::PictureObject(gradient(10, 10)), kNoUndo);
  EXPECT_FALSE(view().CanRedo());
  EXPECT_FALSE(command("btnEditRedo").Enabled());
  EXPECT_EQ(redoCaption(), "&Redo");
  EXPECT_EQ(redoTip(), "Redo");
}

TEST_P(EditingUndo, SettingTheLevelsNotifiesContainerAndSetsTheView) {
  editor().UndoLevels(7);
  EXPECT_THAT(calls(), ElementsAre("UndoLevels=7"));
  EXPECT_EQ(site().changedProperties().back(), "UndoLevels");
  const auto before = site().changedProperties().size();
  log().clear();
  editor().UndoLevels(7);
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_EQ(site().changedProperties().size(), before);
}

TEST_P(EditingUndo, ANewPictureWritesLevels0AndThenTheLevels) {
  editor().UndoLevels(5);
  editor().FlipHorizontally();
  editor().SetSelection(1, 1, 5, 5);
  log().clear();
  std::vector<std::string> raised;
  when(editor().PictureSet, [&] {
    raised.push_back("PictureSet");
    EXPECT_FALSE(editor().Changed());
    EXPECT_FALSE(view().SelectionVisible());
  });
  editor().Picture(std::make_shared<engine::PictureObject>(gradient(10, 10)));
  EXPECT_THAT(calls(), ElementsAre("Picture", "view.Document.FromPicture(\"No Undo\")", "UndoLevels=0",
                                   "UndoLevels=5", "Modified=False", "SelectionHeight=0", "SelectionWidth=0",
                                   "SelectionVisible=False"));
  EXPECT_THAT(raised, ElementsAre("PictureSet"));
  editor().Undo();
  EXPECT_EQ(shown().width(), 10);
}

KESTREL_WITH_BOTH_PATHS(EditingUndo);

}  // namespace
}  // namespace kestrel
