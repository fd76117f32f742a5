#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditorProperties : public EditorTest {
 protected:
  void SetUp() override {
    EditorTest::SetUp();
    create();
    site().InitProperties();
  }
  bool visible(const std::string& key) { return command(key).Visible(); }
};

// -- Which commands are visible ---------------------------------------------------------------------------

TEST_P(EditorProperties, ANewControlHidesCloseAndTheSimpleSaveAlone) {
  EXPECT_TRUE(visible("mnuFileMRU"));
  EXPECT_FALSE(visible("btnFileClose"));
  EXPECT_TRUE(visible("btnFileOpen"));
  EXPECT_TRUE(visible("btnFileSave"));
  EXPECT_FALSE(visible("btnFileSimpleSave"));
  EXPECT_TRUE(visible("btnDrawLine"));
  EXPECT_TRUE(visible("mnuRotate"));
  EXPECT_FALSE(visible("btnFileBrowse")) << "always hidden";
  EXPECT_FALSE(visible("btnZoomBestFit")) << "always hidden";
}

TEST_P(EditorProperties, ShowCloseShowsClose) {
  editor().ShowClose(true);
  EXPECT_TRUE(visible("btnFileClose"));
  editor().ShowClose(false);
  EXPECT_FALSE(visible("btnFileClose"));
}

TEST_P(EditorProperties, UseSimpleSaveReplacesSaveSaveAsAndExport) {
  editor().UseSimpleSave(true);
  for (const char* key : {"btnFileSaveAs", "btnFileSave", "btnFileExport"}) EXPECT_FALSE(visible(key)) << key;
  EXPECT_TRUE(visible("btnFileSimpleSave"));
  editor().UseSimpleSave(false);
  for (const char* key : {"btnFileSaveAs", "btnFileSave", "btnFileExport"}) EXPECT_TRUE(visible(key)) << key;
  EXPECT_FALSE(visible("btnFileSimpleSave"));
}

TEST_P(EditorProperties, ShowDrawingToolsShowsTheFourShapes) {
  editor().ShowDrawingTools(false);
  for (const char* key : {"btnDrawLine", "btnDrawRectangle", "btnDrawEllipse", "btnDrawFreehand"}) {
    EXPECT_FALSE(visible(key)) << key;
  }
  for (const char* key : {"btnDrawSelect", "btnDrawPan", "btnDrawZoom", "btnDrawPicker"}) {
    EXPECT_TRUE(visible(key)) << key;
  }
}

TEST_P(EditorProperties, UseSimpleToolsHides11CommandsAndSeparatesCopy) {
  const auto copyBegins = [&] {
    return std::pair(suite().CommandBars()("Standard").Entries().Item("btnEditCopy").BeginGroup(),
                     command("mnuEdit").Bar().Entries().Item("btnEditCopy").BeginGroup());
  };
  EXPECT_EQ(copyBegins(), std::pair(false, false));
  editor().UseSimpleTools(true);
  const char* const hidden[] = {"mnuRotate",    "btnRotateFree",  "btnRotateLeft",        "btnRotateRight",
                                "btnImageFlip", "btnImageMirror", "btnImageResizeCanvas", "btnImageResize",
                                "btnEditCut",   "btnEditPaste",   "btnEditPasteSpecial"};
  for (const char* key : hidden) EXPECT_FALSE(visible(key)) << key;
  for (const char* key : {"btnEditCopy", "btnImageCrop"}) EXPECT_TRUE(visible(key)) << key;
  EXPECT_EQ(copyBegins(), std::pair(true, true));
  editor().UseSimpleTools(false);
  for (const char* key : hidden) EXPECT_TRUE(visible(key)) << key;
  EXPECT_EQ(copyBegins(), std::pair(false, false));
}

TEST_P(EditorProperties, ShowOpenAlsoSwitchesShowMRU) {
  editor().ShowOpen(false);
  EXPECT_FALSE(visible("btnFileOpen"));
  EXPECT_FALSE(editor().ShowMRU());
  EXPECT_FALSE(visible("mnuFileMRU"));
  editor().ShowOpen(true);
  EXPECT_TRUE(editor().ShowMRU());
  EXPECT_TRUE(visible("mnuFileMRU"));
}

TEST_P(EditorProperties, ShowMRUNeitherSetsShowOpenNorNotifiesTheContainer) {
  editor().ShowMRU(false);
  EXPECT_TRUE(editor().ShowOpen());
  EXPECT_TRUE(visible("btnFileOpen"));
  EXPECT_FALSE(visible("mnuFileMRU"));
  EXPECT_THAT(site().changedProperties(), IsEmpty());
}

// -- Hot keys ---------------------------------------------------------------------------------------------

TEST_P(EditorProperties, HotKeysWithoutAModifierOrWithShiftAloneAreRemoved) {
  EXPECT_EQ(suite().Commands().HotKeyOptions().AllowUnmodified(), 0);
  for (const char* key : {"btnToolsOptions", "btnHelpContents", "btnDrawZoom", "btnDrawLine", "btnZoomIn",
                          "btnZoomOut", "btnImageResize", "btnImageCrop"}) {
    EXPECT_EQ(command(key).HotKeys().Count(), 0) << key;
  }
  for (const char* key :
       {"btnFileOpen", "btnFileSave", "btnFileClose", "btnRotateFree", "btnZoomActualSize"}) {
    EXPECT_EQ(command(key).HotKeys().Count(), 1) << key;
  }
}

TEST_P(EditorProperties, AllowingUnmodifiedHotKeysLaterDoesNotRestoreThem) {
  editor().AllowUnmodifiedHotKeys(true);
  EXPECT_EQ(suite().Commands().HotKeyOptions().AllowUnmodified(), 1);
  EXPECT_EQ(command("btnToolsOptions").HotKeys().Count(), 0);
}

TEST_P(EditorProperties, HotKeysWithoutAModifierStayWhereTheBagAllowsThem) {
  create();
  headless::BagOfProperties bag;
  bag.WriteProperty("AllowUnmodifiedHotKeys", true, false);
  site().ReadProperties(bag);
  EXPECT_EQ(suite().Commands().HotKeyOptions().AllowUnmodified(), 1);
  EXPECT_EQ(command("btnToolsOptions").HotKeys().Count(), 1);
  EXPECT_EQ(command("btnImageCrop").HotKeys().Count(), 1);
  editor().AllowUnmodifiedHotKeys(false);
  EXPECT_EQ(command("btnToolsOptions").HotKeys().Count(), 0);
}

// -- Lets -------------------------------------------------------------------------------------------------

TEST_P(EditorProperties, EachChangeNotifiesTheContainerOnce) {
  const auto setAll = [&] {
    editor().AllowUnmodifiedHotKeys(true);
    editor().UseSimpleTools(true);
    editor().ShowDrawingTools(false);
    editor().UseSimpleSave(true);
    editor().ShowClose(true);
    editor().ShowOpen(false);
    editor().ShowMenuBar(true);
    editor().AutoUpdateGlobal(true);
    editor().UndoLevels(7);
  };
  setAll();
  setAll();
  EXPECT_THAT(site().changedProperties(),
              ElementsAre("AllowUnmodifiedHotKeys", "UseSimpleTools", "ShowDrawingTools", "UseSimpleSave",
                          "ShowClose", "ShowOpen", "ShowMenuBar", "AutoUpdateGlobal", "UndoLevels"));
}

TEST_P(EditorProperties, ShowMenuBarShowsTheBarAtRunTimeOnly) {
  editor().ShowMenuBar(true);
  EXPECT_TRUE(suite().CommandBars()("Menu Bar").Visible());
  editor().ShowMenuBar(false);
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());

  create(false);
  site().InitProperties();
  editor().ShowMenuBar(true);
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
}

TEST_P(EditorProperties, AutoUpdateGlobalRefreshesTheControl) {
  editor().AutoUpdateGlobal(true);
  EXPECT_EQ(site().refreshes(), 1);
  editor().AutoUpdateGlobal(true);
  EXPECT_EQ(site().refreshes(), 1);
}

TEST_P(EditorProperties, UndoLevelsReachTheViewAndNeverTheOptions) {
  editor().AutoUpdateGlobal(true);
  log().clear();
  editor().UndoLevels(3);
  EXPECT_THAT(log().entries(), ElementsAre("UndoLevels=3"));
  EXPECT_EQ(options().UndoLevels(), 10);
}

// -- Colors ----------------------------------------------------------------------------------------------

class EditorColors : public EditorTest {
 protected:
  void SetUp() override {
    EditorTest::SetUp();
    start();
    editor().BackColor(0x00101010);
    editor().ForeColor(0x00202020);
    log().clear();
    connections_.push_back(
        editor().BackColorChange.Connect([this](OLE_COLOR color) { log().add("back " + ToText(color)); }));
    connections_.push_back(
        editor().ForeColorChange.Connect([this](OLE_COLOR color) { log().add("fore " + ToText(color)); }));
  }
  OLE_COLOR drawColor() { return view().Draw().Color().Value(); }
};

TEST_P(EditorColors, ABackgroundColorIsDrawnAndFilledWith) {
  editor().BackColor(0x00ABCDEF);
  EXPECT_EQ(drawColor(), 0x00ABCDEF);
  EXPECT_THAT(log().entries(), ElementsAre("Draw.FillMode=6", "back 11259375"));
}

TEST_P(EditorColors, ABackgroundOfMinus1DrawsOutlinesInTheForegroundColor) {
  editor().BackColor(-1);
  EXPECT_EQ(drawColor(), 0x00202020);
  EXPECT_THAT(log().entries(), ElementsAre("Draw.FillMode=-1", "back -1"));
  editor().ForeColor(0x00303030);
  EXPECT_EQ(drawColor(), 0x00303030) << "later foreground colors apply, too";
}

TEST_P(EditorColors, WithABackgroundTheForegroundDoesNotTouchTheFill) {
  editor().ForeColor(0x00303030);
  EXPECT_EQ(drawColor(), 0x00101010);
  EXPECT_THAT(log().entries(), ElementsAre("fore 3158064"));
}

TEST_P(EditorColors, SettingTheCurrentColorDoesNothing) {
  editor().BackColor(0x00101010);
  editor().ForeColor(0x00202020);
  EXPECT_THAT(log().entries(), IsEmpty());
}

TEST_P(EditorColors, WithoutAutoUpdateGlobalTheOptionsStay) {
  editor().BackColor(5);
  editor().ForeColor(6);
  EXPECT_EQ(options().MaterialBackColor(), -1);
  EXPECT_EQ(options().MaterialForeColor(), 255);
}

TEST_P(EditorColors, WithAutoUpdateGlobalTheOptionsFollowBeforeTheEvents) {
  editor().AutoUpdateGlobal(true);
  std::vector<OLE_COLOR> stored;
  connections_.push_back(
      editor().BackColorChange.Connect([&](OLE_COLOR) { stored.push_back(options().MaterialBackColor()); }));
  connections_.push_back(
      editor().ForeColorChange.Connect([&](OLE_COLOR) { stored.push_back(options().MaterialForeColor()); }));
  editor().BackColor(5);
  editor().ForeColor(6);
  EXPECT_THAT(stored, ElementsAre(5, 6));
}

// -- Changed, Format, Picture -----------------------------------------------------------------------------

class EditorState : public EditorTest {};

TEST_P(EditorState, ChangedRaisesChangeOnlyWhenItBecomesTrue) {
  start();
  int changes = 0;
  connections_.push_back(editor().Change.Connect([&] { ++changes; }));
  editor().Changed(true);
  editor().Changed(true);
  EXPECT_EQ(changes, 1);
  editor().Changed(false);
  EXPECT_EQ(changes, 1);
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditorState, FormatWithoutAnOpenFileChangesTheFormatOnly) {
  start();
  editor().Format(1);
  EXPECT_EQ(editor().Format(), 1);
  EXPECT_EQ(editor().Filename(), "");
}

TEST_P(EditorState, FormatChangesTheExtensionAndKeepsThePicture) {
  startWithPicture("a.b.png");
  EXPECT_EQ(editor().Format(), 2);
  editor().Format(1);
  EXPECT_EQ(editor().Filename(), path("a.b.jpg"));
  EXPECT_EQ(view().Image()->Format(), 2);
  EXPECT_THAT(log().entries(), IsEmpty());
  editor().Format(0);
  EXPECT_EQ(editor().Filename(), path("a.b.")) << "no format has no extension";
}

TEST_P(EditorState, SettingAPictureClearsUndoAndKeepsTheName) {
  const std::string file = startWithPicture();
  change();
  view().SetSelectionRect(1, 2, 3, 4);
  connections_.push_back(editor().PictureSet.Connect([&] { log().add("PictureSet"); }));
  editor().SetControls(false);
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  EXPECT_THAT(log().entries(),
              ElementsAre("Picture", "UndoLevels=0", "UndoLevels=10", "Modified=False", "SelectionHeight=0",
                          "SelectionWidth=0", "SelectionVisible=False", "PictureSet"));
  EXPECT_EQ(editor().Image()->Width(), 12);
  EXPECT_EQ(view().UndoName(), "");
  EXPECT_TRUE(command("btnFileSave").Enabled());
  EXPECT_FALSE(editor().Changed());
  EXPECT_FALSE(view().Modified());
  EXPECT_EQ(editor().Filename(), file);
}

TEST_P(EditorState, ThePictureIsReturnedAsAnObjectOrNothing) {
  start();
  EXPECT_EQ(editor().Picture(), nullptr);
  EXPECT_THAT(user().boxes(), IsEmpty()) << "getters report nothing";
  EXPECT_TRUE(editor().OpenImage(makePicture("a.png", 2)));
  ASSERT_NE(editor().Picture(), nullptr);
  EXPECT_EQ(editor().Picture()->Width(), 40);
}

TEST_P(EditorState, TheReadOnlyPropertiesReturnThePartsOfTheEditor) {
  startWithPicture();
  EXPECT_EQ(&editor().ImageControl(), &view());
  EXPECT_EQ(editor().Image(), view().Image());
  EXPECT_NE(editor().ImgX(), nullptr);
  EXPECT_EQ(editor().Options(), modProcessing::GetOptions());
  EXPECT_EQ(&editor().Commands(), &suite().Commands());
  EXPECT_EQ(&editor().CommandBars(), &suite().CommandBars());
  EXPECT_EQ(&editor().DockWindows(), &suite().DockWindows());
  EXPECT_NE(editor().ZoomWindow(), nullptr);
  EXPECT_NE(editor().MaterialsWindow(), nullptr);
}

/// A view whose sub-objects can fail.
class BrokenView final : public RecordingView {
 public:
  using RecordingView::RecordingView;
  kestrel::Image* Image() override {
    failIfBroken();
    return RecordingView::Image();
  }
  std::shared_ptr<kestrel::ImgX> ImgX() override {
    failIfBroken();
    return RecordingView::ImgX();
  }
  kestrel::Writer& Writer() override {
    failIfBroken();
    return RecordingView::Writer();
  }

  bool fails = false;

 private:
  void failIfBroken() const {
    if (fails) throw RuntimeError(err::kObjectNotSet, "The view is gone.");
  }
};

class EditorWithABrokenView : public EditorTest {
 protected:
  std::unique_ptr<RecordingView> makeView() override {
    return std::make_unique<BrokenView>(log(), platform().desktop(), &site(), "igxImage",
                                        platform().Clipboard(), platform().files());
  }
};

TEST_P(EditorWithABrokenView, PropertyGettersReturnNothingAfterAFailure) {
  startWithPicture();
  auto& broken = dynamic_cast<BrokenView&>(view());
  broken.fails = true;
  EXPECT_EQ(editor().Image(), nullptr);
  EXPECT_EQ(editor().ImgX(), nullptr);
  EXPECT_EQ(editor().Picture(), nullptr);
  EXPECT_EQ(editor().EventSink(), nullptr);
  EXPECT_THAT(user().boxes(), IsEmpty());
  broken.fails = false;
  EXPECT_NE(editor().ImgX(), nullptr);
}

KESTREL_WITH_BOTH_PATHS(EditorWithABrokenView);
KESTREL_WITH_BOTH_PATHS(EditorProperties);
KESTREL_WITH_BOTH_PATHS(EditorColors);
KESTREL_WITH_BOTH_PATHS(EditorState);

}  // namespace
}  // namespace kestrel
