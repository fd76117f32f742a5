#include <set>

#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class EditorCommands : public EditorTest {};

// -- The dispatcher ---------------------------------------------------------------------------------------

TEST_P(EditorCommands, CloseRaisesExitRequestBeforeTheControlIsMarked) {
  start();
  editor().ShowClose(true);
  const auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  int requests = 0;
  connections_.push_back(editor().ExitRequest.Connect([&] {
    ++requests;
    // Hidden during the request the control is not marked yet, so it stays alive.
    site().Visible(false);
    site().Visible(true);
    EXPECT_EQ(editor().EventSink(), sink);
  }));
  click("btnFileClose");
  EXPECT_EQ(requests, 1);
  site().Visible(false);
  EXPECT_EQ(editor().EventSink(), nullptr);
}

TEST_P(EditorCommands, AreFoundByKeyFromTheFourthCharacterInAnyCase) {
  start();
  int requests = 0;
  connections_.push_back(editor().ExitRequest.Connect([&] { ++requests; }));
  const auto clickOn = [this](const char* key) {
    docking::StoredCommand stored;
    stored.key = key;
    docking::CommandModel command(suite(), stored);
    suite().CommandClick(command);
  };
  for (const char* key : {"btnFileClose", "btnFileExit", "BTNFILEEXIT", "mnufileclose"}) clickOn(key);
  EXPECT_EQ(requests, 4);
  for (const char* key : {"", "btn", "fileexit", "btnFileExitNow", "btnFile"}) clickOn(key);
  EXPECT_EQ(requests, 4) << "an unknown key does nothing";
}

TEST_P(EditorCommands, OpenAsksToSaveChangesAndStopsOnCancel) {
  startWithPicture();
  change();
  user().answers(kAnswerCancel);
  click("btnFileOpen");
  EXPECT_THAT(user().boxes(), SizeIs(1));
}

TEST_P(EditorCommands, OpenContinuesToTheDialogAfterNo) {
  startWithPicture();
  change();
  const std::string other = makePicture("other.png", 2, 7, 5);
  user().answers(kAnswerNo);
  user().chooses(other);
  click("btnFileOpen");
  EXPECT_EQ(editor().Filename(), other);
}

TEST_P(EditorCommands, SaveSavesUnderTheName) {
  const std::string file = startWithPicture();
  click("btnFileSave");
  EXPECT_THAT(log().entries(), testing::Contains("ToFile " + file + " 2 0 True"));
}

TEST_P(EditorCommands, SaveAsAsksForAName) {
  startWithPicture();
  user().cancelsFileDialog();
  click("btnFileSaveAs");
}

TEST_P(EditorCommands, ARecentFileOpensWithoutAskingToSaveChanges) {
  const std::string first = startWithPicture("first.png");
  const std::string second = makePicture("second.png", 2);
  ASSERT_TRUE(editor().OpenImage(second));
  change();
  EXPECT_TRUE(suite().chooseItem("mnuFileMRU", 2));
  EXPECT_EQ(editor().Filename(), first);
}

TEST_P(EditorCommands, WithoutRecentFilesAClickShowsABox) {
  const std::string file = startWithPicture();
  editor().ShowMRU(false);
  user().answers(kAnswerOK);
  dispatch("mnuFileMRU");
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].text, "MRU functionality is not available.");
  EXPECT_EQ(user().boxes()[0].style, kBoxInformation);
  EXPECT_EQ(editor().Filename(), file);
}

TEST_P(EditorCommands, TheSimpleSaveIsLeftToTheHost) {
  startWithPicture();
  editor().UseSimpleSave(true);
  editor().Changed(true);
  bool save = false;
  connections_.push_back(editor().SimpleSaveRequest.Connect([&](bool& saved) { saved = save; }));
  click("btnFileSimpleSave");
  EXPECT_TRUE(editor().Changed()) << "the host did not report success";
  save = true;
  click("btnFileSimpleSave");
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditorCommands, TheToolCommandsChooseTheirTools) {
  startWithPicture();
  const std::pair<const char*, ImageProcessingToolConstants> tools[] = {
      {"btnDrawZoom", ipToolZoom},           {"btnDrawPan", ipToolPan},
      {"btnDrawSelect", ipToolSelect},       {"btnDrawLine", ipToolLine},
      {"btnDrawRectangle", ipToolRectangle}, {"btnDrawEllipse", ipToolEllipse},
      {"btnDrawFreehand", ipToolFreehand},   {"btnDrawPicker", ipToolDropper},
  };
  for (const auto& [key, tool] : tools) {
    click(key);
    EXPECT_EQ(editor().Tool(), tool) << key;
    EXPECT_TRUE(command(key).Checked()) << key;
  }
}

TEST_P(EditorCommands, CopyTakesTheSelectionOnlyWithTheSelectTool) {
  startWithPicture();
  const auto copied = [&] {
    const auto picture = platform().CreateImgX();
    picture->Document().Paste();
    return Size{picture->Image()->Width(), picture->Image()->Height()};
  };
  editor().SetSelection(2, 3, 10, 8);
  click("btnEditCopy");
  EXPECT_EQ(copied(), (Size{10, 8}));
  view().Tool(kViewToolNone);
  editor().Tool(ipToolPan);
  view().SetSelectionRect(2, 3, 10, 8);
  view().SelectionVisible(true);
  click("btnEditCopy");
  EXPECT_EQ(copied(), (Size{40, 30})) << "the whole image although there is a selection";
}

TEST_P(EditorCommands, PasteWithoutABitmapShowsABox) {
  startWithPicture();
  user().answers(kAnswerOK);
  click("btnEditPaste");
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].text, "Nothing to paste.");
  EXPECT_EQ(user().boxes()[0].title, "Paste");
  EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
}

TEST_P(EditorCommands, PasteBeginsWithTheSelectToolAndItsStatus) {
  startWithPicture();
  click("btnEditCopy");
  editor().Tool(ipToolPan);
  click("btnEditPaste");
  EXPECT_EQ(editor().Tool(), ipToolSelect);
  EXPECT_EQ(panel("pnlStatus"), "Please select where to paste the image, or press Escape to cancel");
}

TEST_P(EditorCommands, CropUsesTheSelectionOrBeginsOne) {
  startWithPicture();
  editor().Tool(ipToolPan);
  click("btnImageCrop");
  EXPECT_EQ(editor().Tool(), ipToolSelect);
  EXPECT_EQ(panel("pnlStatus"), "Please select the region to crop the image to, or press Escape to cancel");
  EXPECT_TRUE(command("btnImageCrop").Checked());
  editor().Cancel();
  editor().SetSelection(0, 0, 20, 10);
  click("btnImageCrop");
  EXPECT_EQ(editor().Image()->Width(), 20);
  EXPECT_EQ(editor().Image()->Height(), 10);
}

TEST_P(EditorCommands, ACropThatFailsShowsABox) {
  startWithPicture();
  editor().SetSelection(100, 100, 20, 10);
  user().answers(kAnswerOK);
  click("btnImageCrop");
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].title, "Crop");
  EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
  EXPECT_THAT(user().boxes()[0].text, testing::StartsWith("Failed to crop image: "));
}

TEST_P(EditorCommands, RotateRightAndLeftTurnByAQuarter) {
  startWithPicture();
  click("btnRotateRight");
  EXPECT_EQ(editor().Image()->Width(), 30);
  EXPECT_EQ(editor().Image()->Height(), 40);
  click("btnRotateLeft");
  EXPECT_EQ(editor().Image()->Width(), 40);
}

TEST_P(EditorCommands, SelectAllAndNone) {
  startWithPicture();
  click("btnSelectionAll");
  EXPECT_EQ(view().SelectionWidth(), 40);
  EXPECT_EQ(view().SelectionHeight(), 30);
  EXPECT_TRUE(view().SelectionVisible());
  click("btnSelectionNone");
  EXPECT_FALSE(view().SelectionVisible());
}

TEST_P(EditorCommands, UndoAndRedoStepThroughTheView) {
  startWithPicture();
  change();
  click("btnEditUndo");
  EXPECT_EQ(view().RedoName(), "Flip");
  click("btnEditRedo");
  EXPECT_EQ(view().UndoName(), "Flip");
}

TEST_P(EditorCommands, BrowseAndBestFitDoNothingWhenClicked) {
  startWithPicture();
  dispatch("btnFileBrowse");
  dispatch("btnZoomBestFit");
  EXPECT_THAT(log().entries(), IsEmpty());
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorCommands, TheViewCommandsToggleTheirWindowsAndTheStatusBar) {
  start();
  for (const auto& [key, window] :
       {std::pair("btnViewMaterialsWindow", "dkwMaterials"), std::pair("btnViewZoomWindow", "dkwZoom")}) {
    const bool before = suite().DockWindows()(window).Visible();
    click(key);
    EXPECT_EQ(suite().DockWindows()(window).Visible(), !before) << key;
    EXPECT_EQ(command(key).Checked(), !before) << key;
    click(key);
    EXPECT_EQ(suite().DockWindows()(window).Visible(), before) << key;
    EXPECT_EQ(command(key).Checked(), before) << key;
  }
  ASSERT_TRUE(suite().CommandBars()("Status Bar").Visible());
  click("btnViewStatusBar");
  EXPECT_FALSE(suite().CommandBars()("Status Bar").Visible());
  EXPECT_FALSE(command("btnViewStatusBar").Checked());
  click("btnViewStatusBar");
  EXPECT_TRUE(suite().CommandBars()("Status Bar").Visible());
  EXPECT_TRUE(command("btnViewStatusBar").Checked());
}

TEST_P(EditorCommands, HelpShowsTheFirstPageOfTheBook) {
  start();
  click("btnHelpContents");
  ASSERT_THAT(platform().helpShown(), SizeIs(1));
  EXPECT_TRUE(platform().helpShown()[0].ends_with("BrindleImgPro/default.html"));
}

TEST_P(EditorCommands, AMissingHelpBookShowsOneBox) {
  start();
  loseHelpBooks();
  user().answers(kAnswerOK);
  click("btnHelpContents");
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].text, "The help book \"BrindleImgPro.chm\" was not found.");
  EXPECT_EQ(user().boxes()[0].title, "Help");
  EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
}

TEST_P(EditorCommands, TheAboutBoxShowsTitleAndVersionAndNoPicture) {
  platform().App().title = "Product";
  platform().App().major = 2;
  platform().App().minor = 1;
  platform().App().revision = 304;
  start();
  user().closesAbout();
  click("btnHelpAbout");
  ASSERT_THAT(user().abouts(), SizeIs(1));
  EXPECT_EQ(user().abouts()[0].title, "Product");
  EXPECT_EQ(user().abouts()[0].versionText, "Version 2.1.304");
  EXPECT_FALSE(user().abouts()[0].hasPicture);
}

// -- Marks that follow the surface ------------------------------------------------------------------------

TEST_P(EditorCommands, HidingTheStatusBarItselfUnchecksItsCommand) {
  start();
  suite().showBar("Status Bar", false);
  EXPECT_FALSE(command("btnViewStatusBar").Checked());
  suite().showBar("Status Bar", true);
  EXPECT_TRUE(command("btnViewStatusBar").Checked());
  suite().showBar("Tools", false);
  EXPECT_TRUE(command("btnViewStatusBar").Checked()) << "another bar does not affect it";
}

TEST_P(EditorCommands, ClosingADockWindowUnchecksOnlyItsCommand) {
  start();
  suite().showDockWindow("dkwZoom", true);
  suite().showDockWindow("dkwMaterials", true);
  suite().showDockWindow("dkwZoom", false);
  EXPECT_FALSE(command("btnViewZoomWindow").Checked());
  EXPECT_TRUE(command("btnViewMaterialsWindow").Checked());
  suite().showDockWindow("dkwMaterials", false);
  EXPECT_FALSE(command("btnViewMaterialsWindow").Checked());
  suite().showDockWindow("dkwZoom", true);
  EXPECT_TRUE(command("btnViewZoomWindow").Checked());
}

// -- Status -----------------------------------------------------------------------------------------------

TEST_P(EditorCommands, AHighlightShowsTheDescriptionThenTheDefaultText) {
  start();
  editor().Status("Ready", false, true);
  suite().highlight("btnFileOpen");
  EXPECT_EQ(panel("pnlStatus"), "Opens en existing image");
  suite().highlight("");
  EXPECT_EQ(panel("pnlStatus"), "Ready");
}

TEST_P(EditorCommands, ATemporaryStatusIsNotRestored) {
  start();
  editor().Status("Passing");
  EXPECT_EQ(panel("pnlStatus"), "Passing");
  suite().highlight("btnFileOpen");
  suite().highlight("");
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditorCommands, StatusBeginsAndEndsABusyPhase) {
  start();
  platform().FormUtility().forgetPointers();
  editor().Status("Working", true);
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11));
  editor().Status("Still working");
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11)) << "a text alone leaves the pointer";
  editor().Status("", true);
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11, 0));
}

// -- Enabling ---------------------------------------------------------------------------------------------

constexpr const char* kNeedAPicture[] = {"btnFileSave",
                                         "btnFileSaveAs",
                                         "btnFileExport",
                                         "btnEditUndo",
                                         "btnEditRedo",
                                         "btnEditCopy",
                                         "btnEditCut",
                                         "btnEditPaste",
                                         "btnEditPasteSpecial",
                                         "btnImageFlip",
                                         "btnImageMirror",
                                         "btnRotateLeft",
                                         "btnRotateRight",
                                         "btnRotateFree",
                                         "btnImageResizeCanvas",
                                         "btnImageResize",
                                         "btnImageCrop",
                                         "btnImageDropShadow",
                                         "btnImageShapedDropShadow",
                                         "btnImageGrayScale",
                                         "btnToolsFlattenAlpha",
                                         "btnSelectionAll",
                                         "btnSelectionNone",
                                         "btnZoomIn",
                                         "btnZoomOut",
                                         "btnZoomBestFit",
                                         "btnDrawSelect",
                                         "btnDrawPan",
                                         "btnDrawZoom",
                                         "btnDrawLine",
                                         "btnDrawRectangle",
                                         "btnDrawEllipse",
                                         "btnDrawFreehand",
                                         "btnDrawPicker"};
constexpr const char* kAlwaysUsable[] = {
    "btnFileOpen",      "btnFileClose",    "btnFileSimpleSave", "btnViewMaterialsWindow", "btnViewZoomWindow",
    "btnViewStatusBar", "btnHelpContents", "btnHelpAbout",      "btnToolsOptions"};
const std::set<std::string> kNeedAStep = {"btnEditUndo", "btnEditRedo"};

TEST_P(EditorCommands, SetControlsSwitchesOnlyThe34CommandsOfPictures) {
  startWithPicture();
  change();
  view().ImgX()->Effects().Flip(1, "Flip");
  editor().Undo();
  for (const bool enabled : {true, false, true}) {
    editor().SetControls(enabled);
    for (const char* key : kNeedAPicture) {
      EXPECT_EQ(command(key).Enabled(), enabled) << key;
    }
    for (const char* key : kAlwaysUsable) EXPECT_TRUE(command(key).Enabled()) << key;
  }
}

TEST_P(EditorCommands, SetControlsDisablesActualSizeAndTheZoomEnablesIt) {
  start();
  ASSERT_FALSE(command("btnZoomActualSize").Enabled());
  editor().SetControls(true);
  EXPECT_FALSE(command("btnZoomActualSize").Enabled());
  command("btnZoomActualSize").Enabled(true);
  editor().SetControls(true);
  EXPECT_TRUE(command("btnZoomActualSize").Enabled());
  editor().SetControls(false);
  EXPECT_FALSE(command("btnZoomActualSize").Enabled());
}

/// A view that can't say whether there is an undo step.
class UnsureView final : public RecordingView {
 public:
  using RecordingView::RecordingView;
  bool CanUndo() const override {
    if (unsure) throw RuntimeError(err::kInternal, "The stack can't be read.");
    return RecordingView::CanUndo();
  }

  bool unsure = false;
};

class EditorCommandsOfAnUnsureView : public EditorTest {
 protected:
  std::unique_ptr<RecordingView> makeView() override {
    return std::make_unique<UnsureView>(log(), platform().desktop(), &site(), "igxImage",
                                        platform().Clipboard(), platform().files());
  }
};

TEST_P(EditorCommandsOfAnUnsureView, SetControlsResumesTheRepaintingOfTheBarsAfterAnError) {
  startWithPicture();
  std::vector<std::string> updated;
  connections_.push_back(
      suite().CommandUpdated.Connect([&](docking::CommandModel& model) { updated.push_back(model.Name()); }));
  dynamic_cast<UnsureView&>(view()).unsure = true;
  user().answers(kAnswerOK);  // the report
  editor().SetControls(false);
  dynamic_cast<UnsureView&>(view()).unsure = false;
  EXPECT_THAT(updated, testing::Contains("btnFileSave")) << "what was changed before the error";
  updated.clear();
  command("btnFileOpen").Enabled(false);
  EXPECT_THAT(updated, ElementsAre("btnFileOpen"));
}

KESTREL_WITH_BOTH_PATHS(EditorCommandsOfAnUnsureView);

TEST_P(EditorCommands, SetControlsRepaintsTheBarsOnce) {
  start();
  editor().SetControls(false);
  std::vector<std::string> notified;
  connections_.push_back(suite().CommandUpdated.Connect([&](docking::CommandModel& changed) {
    notified.push_back(changed.Name());
    EXPECT_TRUE(command("btnDrawPicker").Enabled()) << "notified only after the last one was switched";
  }));
  editor().SetControls(true);
  std::vector<std::string> expected;
  for (const char* key : kNeedAPicture) {
    if (!kNeedAStep.count(key)) expected.push_back(key);
  }
  EXPECT_EQ(notified, expected) << "in this order, each once";
}

// -- Hot keys and options ---------------------------------------------------------------------------------

TEST_P(EditorCommands, HotKeysAreCanceledOnADesignSurfaceOnly) {
  create(false);
  site().InitProperties();
  EXPECT_FALSE(suite().pressHotKey(kCtrlMask, 'O'));
  start();
  user().cancelsFileDialog();
  EXPECT_TRUE(suite().pressHotKey(kCtrlMask, 'O'));
}

TEST_P(EditorCommands, SetToolbarStyleChangesTheLookOfTheBars) {
  start();
  editor().SetToolbarStyle(2);
  EXPECT_EQ(suite().style(), 2);
}

TEST_P(EditorCommands, ApplyOptionsSetsGridAndQualityOfTheSurface) {
  start();
  options().BackgroundGridSize(7);
  editor().ApplyOptions();
  EXPECT_THAT(log().entries(), ElementsAre("DoubleBuffer=True", "BackgroundImage"));
  EXPECT_EQ(view().backgroundSize(), (Size{14, 14}));
}

TEST_P(EditorCommands, ApplyOptionsSetsTheQualityOfTheViewsNextJpegFile) {
  startWithPicture();
  options().JPEGQuality(17);
  editor().ApplyOptions();
  EXPECT_EQ(editor().ImgX()->JPEGQuality(), 17);
  EXPECT_EQ(view().JPEGQuality(), 17);
  const auto sizeAt = [&](std::int32_t quality) {
    options().JPEGQuality(quality);
    editor().ApplyOptions();
    view().Writer().ToFile(path("q.jpg"), 1, 0, true);
    return contents(path("q.jpg")).size();
  };
  EXPECT_LT(sizeAt(5), sizeAt(95));
}

TEST_P(EditorCommands, AnAssignedDescriptionIsShownWithTheHighlight) {
  start();
  command("btnFileOpen").Description("Opens a drawing");
  suite().CommandHighlight(command("btnFileOpen"), kHighlightHot);
  EXPECT_EQ(panel("pnlStatus"), "Opens a drawing");
}

KESTREL_WITH_BOTH_PATHS(EditorCommands);

}  // namespace
}  // namespace kestrel
