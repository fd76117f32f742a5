// Initial state of commands and surface, and their changes with the host's properties and the picture.

#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class EditorSwitches : public EditorTest {};

TEST_P(EditorSwitches, StartTheSameOnADesignSurfaceAndAtRunTime) {
  for (const bool userMode : {false, true}) {
    create(userMode);
    EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
    for (const char* key : {"btnFileSave", "btnEditUndo", "btnZoomActualSize", "btnDrawPicker"}) {
      EXPECT_FALSE(command(key).Enabled()) << key;
    }
    EXPECT_EQ(command("cboZoom").Items().Count(), 25);
    EXPECT_EQ(editor().Filename(), "");
    EXPECT_EQ(panel("pnlStatus"), "");
    endEditor();
  }
}

// -- Properties -------------------------------------------------------------------------------------------

TEST_P(EditorSwitches, NotifyTheContainerBeforeTheCommandsChange) {
  const struct {
    const char* property;
    const char* key;
    std::function<void()> let;
    std::function<bool()> stored;
  } lets[] = {
      {"UseSimpleTools", "btnEditCut", [&] { editor().UseSimpleTools(true); },
       [&] { return editor().UseSimpleTools(); }},
      {"ShowDrawingTools", "btnDrawLine", [&] { editor().ShowDrawingTools(false); },
       [&] { return !editor().ShowDrawingTools(); }},
      {"UseSimpleSave", "btnFileSimpleSave", [&] { editor().UseSimpleSave(true); },
       [&] { return editor().UseSimpleSave(); }},
      {"ShowClose", "btnFileClose", [&] { editor().ShowClose(true); }, [&] { return editor().ShowClose(); }},
      {"ShowOpen", "btnFileOpen", [&] { editor().ShowOpen(false); }, [&] { return !editor().ShowOpen(); }},
  };
  for (const auto& one : lets) {
    create();
    site().InitProperties();
    int followed = 0;
    connections_.push_back(suite().CommandUpdated.Connect([&](docking::CommandModel& changed) {
      if (changed.Name() != one.key) return;
      ++followed;
      EXPECT_TRUE(one.stored()) << one.property;
      EXPECT_THAT(site().changedProperties(), testing::ElementsAre(one.property));
    }));
    one.let();
    EXPECT_EQ(followed, 1) << one.property;
    connections_.clear();
    endEditor();
  }
}

TEST_P(EditorSwitches, NeverShowBrowseAndBestFit) {
  startWithPicture();
  for (const bool value : {true, false}) {
    editor().AllowUnmodifiedHotKeys(value);
    editor().UseSimpleTools(value);
    editor().ShowDrawingTools(value);
    editor().UseSimpleSave(value);
    editor().ShowClose(value);
    editor().ShowOpen(value);
    editor().ShowMRU(value);
    editor().ShowMenuBar(value);
    EXPECT_FALSE(command("btnFileBrowse").Visible());
    EXPECT_FALSE(command("btnZoomBestFit").Visible());
  }
}

TEST_P(EditorSwitches, RestoreRemovedHotKeysOnlyWithTheStoredLayout) {
  start();
  editor().AllowUnmodifiedHotKeys(true);
  EXPECT_EQ(command("btnDrawLine").HotKeys().Count(), 0);
  create();
  EXPECT_EQ(command("btnDrawLine").HotKeys().Count(), 1);
}

// -- The material colors at the start --------------------------------------------------------------------

TEST_P(EditorSwitches, ABlackBackgroundMaterialFillsFromTheStart) {
  options().MaterialBackColor(0);
  options().MaterialForeColor(0x00FFFFFF);
  start();
  EXPECT_EQ(editor().BackColor(), 0);
  EXPECT_EQ(view().Draw().FillMode(), 6);
  EXPECT_EQ(view().Draw().Color().Value(), 0);
}

TEST_P(EditorSwitches, NoBackgroundMaterialDrawsBlackOutlinesFromTheStart) {
  options().MaterialBackColor(-1);
  options().MaterialForeColor(0);
  start();
  EXPECT_EQ(view().Draw().FillMode(), -1);
  EXPECT_EQ(view().Draw().Color().Value(), 0);
}

// -- The picture ------------------------------------------------------------------------------------------

TEST_P(EditorSwitches, CommandsOfPicturesAreOffWithoutAPicture) {
  startWithPicture();
  editor().Picture(nullptr);
  for (const char* key : {"btnFileSave", "btnFileSaveAs", "btnEditCopy", "btnImageFlip", "btnImageCrop",
                          "btnSelectionAll", "btnDrawLine", "btnZoomActualSize"}) {
    EXPECT_FALSE(command(key).Enabled()) << key;
  }
  EXPECT_TRUE(command("btnFileOpen").Enabled());
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  for (const char* key : {"btnFileSave", "btnImageFlip", "btnDrawLine"}) {
    EXPECT_TRUE(command(key).Enabled()) << key;
  }
}

// -- Single commands --------------------------------------------------------------------------------------

TEST_P(EditorSwitches, AnyOtherHighlightStateShowsTheDefaultText) {
  start();
  editor().Status("Ready", false, true);
  for (const std::int32_t state : {0, 2, -1}) {
    suite().CommandHighlight(command("btnFileOpen"), 1);
    ASSERT_EQ(panel("pnlStatus"), "Opens en existing image");
    suite().CommandHighlight(command("btnFileOpen"), state);
    EXPECT_EQ(panel("pnlStatus"), "Ready") << state;
  }
}

TEST_P(EditorSwitches, ACropThatFailsShowsTheEnginesText) {
  startWithPicture();
  editor().SetSelection(100, 100, 20, 10);
  std::string sentence;
  try {
    editor().CropToSelection();
  } catch (const RuntimeError& error) {
    sentence = error.Description();
  }
  ASSERT_THAT(sentence, Not(IsEmpty()));
  user().answers(kAnswerOK);
  click("btnImageCrop");
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].text, "Failed to crop image: " + sentence);
}

TEST_P(EditorSwitches, AnUnknownBarStyleIsReportedAndChangesNothing) {
  start();
  editor().SetToolbarStyle(1);
  user().answers(kAnswerOK);
  editor().SetToolbarStyle(7);
  EXPECT_EQ(suite().style(), 1);
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
}

KESTREL_WITH_BOTH_PATHS(EditorSwitches);

}  // namespace
}  // namespace kestrel
