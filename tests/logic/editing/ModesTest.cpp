#include "EditingTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Commands that use the scratch picture or change what the mode works on.
constexpr const char* kHeldByBoth[] = {
    "btnFileSave",          "btnFileSaveAs",   "btnFileExport",     "btnEditCopy",
    "btnEditCut",           "btnEditPaste",    "btnImageFlip",      "btnImageMirror",
    "btnEditPasteSpecial",  "btnRotateLeft",   "btnRotateRight",    "btnRotateFree",
    "btnImageResizeCanvas", "btnImageResize",  "btnImageGrayScale", "btnImageDropShadow",
    "btnToolsFlattenAlpha", "btnSelectionAll", "btnSelectionNone",  "btnImageShapedDropShadow",
    "btnDrawSelect",        "btnDrawPan",      "btnDrawZoom",       "btnDrawLine",
    "btnDrawRectangle",     "btnDrawEllipse",  "btnDrawFreehand",   "btnDrawPicker"};
constexpr const char* kNeverHeld[] = {"btnFileOpen", "btnFileClose", "btnZoomIn", "btnZoomOut"};

/// Commands during a floating paste or a pending crop, and the end of these modes.
class EditingModes : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    fillClipboard(6, 5, {255, 0, 0, 255});
    for (const char* key : kHeldByBoth) enabled_.push_back(command(key).Enabled());
    enabledCrop_ = command("btnImageCrop").Enabled();
  }

  void expectHeld(bool crop) {
    for (const char* key : kHeldByBoth) EXPECT_FALSE(command(key).Enabled()) << key;
    EXPECT_EQ(command("btnImageCrop").Enabled(), !crop);
    for (const char* key : kNeverHeld) EXPECT_TRUE(command(key).Enabled()) << key;
  }
  void expectReleased() {
    for (std::size_t i = 0; i < enabled_.size(); ++i) {
      EXPECT_EQ(command(kHeldByBoth[i]).Enabled(), enabled_[i]) << kHeldByBoth[i];
    }
    EXPECT_EQ(command("btnImageCrop").Enabled(), enabledCrop_);
    EXPECT_FALSE(pressed("btnEditPaste"));
    EXPECT_FALSE(pressed("btnImageCrop"));
    EXPECT_FALSE(view().SelectionVisible());
    EXPECT_EQ(panel("pnlStatus"), "");
  }
  /// Opens each mode and ends it by `end`.
  void endsBy(const std::function<void()>& end) {
    for (const char* key : {"btnEditPaste", "btnImageCrop"}) {
      click(key);
      ASSERT_TRUE(pressed(key));
      end();
      expectReleased();
    }
  }

 private:
  std::vector<bool> enabled_;
  bool enabledCrop_ = false;
};

TEST_P(EditingModes, APasteDisablesCommandsOfTheScratchPictureAndCrop) {
  click("btnEditPaste");
  expectHeld(true);
  editor().Cancel();
  expectReleased();
}

TEST_P(EditingModes, ACropDisablesTheSameButItself) {
  click("btnImageCrop");
  expectHeld(false);
  editor().Cancel();
  expectReleased();
}

TEST_P(EditingModes, EnableAgainByACommit) {
  click("btnEditPaste");
  view().click(position(30, 20));
  expectReleased();
  EXPECT_EQ(undoCaption(), "&Undo Paste");
  click("btnImageCrop");
  dragSelection({5, 6}, {25, 18});
  expectReleased();
  EXPECT_EQ(shown().width(), 20);
}

TEST_P(EditingModes, EnableAgainByEscape) {
  endsBy([this] { site().pressKey(27, 0, 27); });
}

TEST_P(EditingModes, EndBeforeAnotherPictureIsAssigned) {
  endsBy([this] { open(kWidth, kHeight); });
}

TEST_P(EditingModes, EndBeforeAFileIsOpened) {
  const std::string file = makePicture("other.png", 2);
  std::vector<std::string> order;
  note(editor().ImageOpen, std::function<void(const std::string&)>([&](const std::string&) {
         EXPECT_FALSE(pressed("btnEditPaste"));
         EXPECT_FALSE(pressed("btnImageCrop"));
       }));
  endsBy([&] { EXPECT_TRUE(editor().OpenImage(file)); });
}

TEST_P(EditingModes, EndBeforeTheUserIsAskedForAFile) {
  note(editor().RequestOpenFilename,
       std::function<void(std::string&, bool&)>([&](std::string&, bool& cancel) {
         expectReleased();
         cancel = true;
       }));
  endsBy([this] { click("btnFileOpen"); });
}

TEST_P(EditingModes, EndBeforeTheEditorIsClosed) {
  int raised = 0;
  when(editor().ExitRequest, [&] {
    ++raised;
    expectReleased();
  });
  endsBy([this] { dispatch("btnFileClose"); });
  EXPECT_EQ(raised, 2);
}

TEST_P(EditingModes, EndBeforeTheUserIsAskedAboutUnsavedChanges) {
  change();
  endsBy([this] {
    user().answers(kAnswerCancel);
    EXPECT_FALSE(editor().SaveChanges());
  });
}

TEST_P(EditingModes, AnotherPictureGetsNothingOfAFloatingPaste) {
  click("btnEditPaste");
  dragSelection({2, 2}, {12, 12});
  open(kWidth, kHeight);
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  editor().Paste();
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingModes, AFailedCommitEndsThePasteAndReportsTheError) {
  click("btnEditPaste");
  view().Picture(PicturePtr());
  expectReport();
  editor().Paste();
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_NE(user().boxes()[0].text.find("There is no picture."), std::string::npos) << user().boxes()[0].text;
  expectReleased();
}

TEST_P(EditingModes, CommandsDisabledByTheHostStayDisabled) {
  command("btnEditCopy").Enabled(false);
  click("btnEditPaste");
  editor().Cancel();
  EXPECT_FALSE(command("btnEditCopy").Enabled());
}

TEST_P(EditingModes, SetControlsDuringAModeEnablesNothing) {
  click("btnEditPaste");
  editor().SetControls(true);
  expectHeld(true);
  editor().SetControls(false);
  editor().Cancel();
  EXPECT_FALSE(command("btnEditCopy").Enabled()) << "there is no picture to copy from";
}

TEST_P(EditingModes, ADirectCallOfAHostIsNotGuarded) {
  click("btnEditPaste");
  editor().FlipHorizontally();
  EXPECT_EQ(at(0, 3), pixelOf(kWidth - 1, 3));
  EXPECT_TRUE(pressed("btnEditPaste"));
  editor().Cancel();
}

// -- The size panel ---------------------------------------------------------------------------------------

class EditingSizePanel : public EditingTest {
 protected:
  std::string size() { return panel("pnlSize"); }
};

TEST_P(EditingSizePanel, ShowsTheSelectionsSizeForAnyWayOfSelecting) {
  EXPECT_EQ(size(), "40, 30");
  editor().SetSelection(5, 6, 20, 12);
  EXPECT_EQ(size(), "20, 12");
  editor().SetSelection(25, 18, -3, -4);
  EXPECT_EQ(size(), "-3, -4");
  click("btnSelectionAll");
  EXPECT_EQ(size(), "40, 30");
  click("btnSelectionNone");
  EXPECT_EQ(size(), "40, 30");
  fillClipboard(6, 5, {255, 0, 0, 255});
  click("btnEditPaste");
  EXPECT_EQ(size(), "6, 5");
  editor().Cancel();
  EXPECT_EQ(size(), "40, 30");
}

TEST_P(EditingSizePanel, ShowsThePicturesSizeAfterADragWithoutAnArea) {
  dragSelection({5, 6}, {5, 20});
  EXPECT_EQ(view().SelectionWidth(), 0);
  EXPECT_EQ(view().SelectionHeight(), 14);
  EXPECT_EQ(size(), "40, 30");
}

TEST_P(EditingSizePanel, FollowsEachChangeOfThePicturesSize) {
  editor().Resize(20);
  EXPECT_EQ(size(), "20, 15");
  editor().Undo();
  EXPECT_EQ(size(), "40, 30");
  editor().Redo();
  EXPECT_EQ(size(), "20, 15");
  editor().Rotate(90);
  EXPECT_EQ(size(), "15, 20");
  editor().ResizeCanvas(50, 60);
  EXPECT_EQ(size(), "50, 60");
  editor().SetSelection(1, 2, 8, 9);
  click("btnImageCrop");
  EXPECT_EQ(size(), "8, 9");
  click("btnEditUndo");
  EXPECT_EQ(size(), "50, 60");
  editor().ImgX()->Effects().Resize(7, 8, 0);
  EXPECT_EQ(size(), "7, 8") << "a host's changes count, too";
  editor().Picture(nullptr);
  EXPECT_EQ(size(), " ");
}

TEST_P(EditingSizePanel, KeepsTheSelectionsSizeWhileThePictureChangesUnderIt) {
  editor().SetSelection(5, 6, 20, 12);
  editor().FlipHorizontally(false);
  EXPECT_EQ(size(), "20, 12");
}

TEST_P(EditingSizePanel, ShowsThePicturesSizeAfterAnEditOfASection) {
  editor().SetSelection(5, 6, 20, 12);
  editor().FlipHorizontally(true);
  EXPECT_EQ(size(), "40, 30");
  editor().SetSelection(5, 6, 20, 12);
  editor().ApplyGrayScale(true);
  EXPECT_EQ(size(), "40, 30");
}

TEST_P(EditingSizePanel, ShowsTheRemainingSizeAfterACanceledDrag) {
  view().press(kLeftButton, 0, position(5, 6));
  view().move(kLeftButton, 0, position(15, 16));
  EXPECT_EQ(size(), "10, 10");
  EXPECT_TRUE(view().keyDown(engine::ViewKey::escape, 0));
  EXPECT_EQ(size(), "40, 30");
  editor().SetSelection(2, 2, 5, 6);
  view().press(kLeftButton, 0, position(20, 16));
  view().move(kLeftButton, 0, position(30, 26));
  EXPECT_TRUE(view().keyDown(engine::ViewKey::escape, 0));
  EXPECT_EQ(size(), "5, 6");
}

TEST_P(EditingSizePanel, ThePositionFollowsAChangedPictureUnderARestingPointer) {
  view().move(0, 0, position(12, 20));
  EXPECT_EQ(panel("pnlPosition"), "12, 20");
  editor().ResizeCanvas(50, 40, 0, 0);
  // The picture is centered in the view and now begins 5 pixels further out on each side.
  EXPECT_EQ(panel("pnlPosition"), "17, 25");
  editor().Undo();
  EXPECT_EQ(panel("pnlPosition"), "12, 20");
  editor().Picture(nullptr);
  EXPECT_EQ(panel("pnlPosition"), " ");
}

TEST_P(EditingSizePanel, ThePositionFollowsAnotherPictureUnderARestingPointer) {
  view().move(0, 0, position(12, 20));
  open(50, 40);
  EXPECT_EQ(panel("pnlPosition"), "17, 25");
  EXPECT_TRUE(editor().OpenImage(makePicture("other.png", 2)));
  EXPECT_EQ(panel("pnlPosition"), "12, 20") << "40 by 30 again";
}

KESTREL_WITH_BOTH_PATHS(EditingModes);
KESTREL_WITH_BOTH_PATHS(EditingSizePanel);

}  // namespace
}  // namespace kestrel
