#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class EditorLife : public EditorTest {};

// -- Creation ---------------------------------------------------------------------------------------------

TEST_P(EditorLife, CreationRaises730IfAChildControlIsMissing) {
  const auto empty = platform().createSite("ImageProcessingCtl", true);
  try {
    ImageProcessingCtl editor(*empty);
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 730);
  }
}

TEST_P(EditorLife, CreationPointsTheStoreAtItsRoot) {
  platform().RegistryStore().RootKey("Elsewhere");
  platform().RegistryStore().RootHive(0);
  create();
  EXPECT_EQ(platform().RegistryStore().RootKey(), "Software\\Brindlewick\\Common\\ImageProcessing");
  EXPECT_EQ(platform().RegistryStore().RootHive(), HKEY_CURRENT_USER);
}

TEST_P(EditorLife, CreationHidesTheMenuBarAndDisablesTheCommands) {
  create();
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
  EXPECT_FALSE(command("btnFileSave").Enabled());
  EXPECT_FALSE(command("btnZoomActualSize").Enabled());
  EXPECT_FALSE(command("btnDrawPicker").Enabled());
}

TEST_P(EditorLife, TheZoomBarIsVisibleExactlyWhileTheToolIsTheZoomToolFromTheCreation) {
  const auto visible = [this] { return suite().CommandBars()("Zoom").Visible(); };
  create();
  EXPECT_EQ(editor().Tool(), ipToolNone);
  EXPECT_FALSE(visible()) << "after the creation";
  site().InitProperties();
  EXPECT_FALSE(visible()) << "after the properties";
  editor().Initialize();
  EXPECT_FALSE(visible()) << "after the start";
  editor().Tool(ipToolZoom);
  EXPECT_TRUE(visible());
  editor().Tool(ipToolPan);
  EXPECT_FALSE(visible());
}

TEST_P(EditorLife, CreationFillsTheZoomComboWith25Entries) {
  create();
  CommandItems& entries = command("cboZoom").Items();
  ASSERT_EQ(entries.Count(), 25);
  for (std::int32_t i = 1; i <= 25; ++i) {
    EXPECT_EQ(entries.Item(i).Text, std::to_string(i) + ":1");
    EXPECT_EQ(entries.Item(i).Key, std::to_string(i));
  }
}

TEST_P(EditorLife, CreationAppliesTheSkinToTheControlsSurface) {
  create();
  ASSERT_EQ(platform().FormSkin().applied().size(), 1u);
  EXPECT_EQ(platform().FormSkin().applied()[0].name, "ImageProcessingCtl");
  EXPECT_EQ(platform().FormSkin().applied()[0].foreColor, -1);
  EXPECT_EQ(platform().FormSkin().applied()[0].backColor, -1);
}

TEST_P(EditorLife, AFailingSkinIsIgnoredAtCreation) {
  platform().FormSkin().failing = true;
  create();
  EXPECT_EQ(command("cboZoom").Items().Count(), 25);
  EXPECT_THAT(user().boxes(), IsEmpty());
}

// -- The property stage -----------------------------------------------------------------------------------

TEST_P(EditorLife, ANewControlShowsToolsRecentFilesAndOpenButNoClose) {
  create();
  site().InitProperties();
  EXPECT_TRUE(editor().ShowDrawingTools());
  EXPECT_TRUE(editor().ShowMRU());
  EXPECT_TRUE(editor().ShowOpen());
  EXPECT_FALSE(editor().ShowClose());
  EXPECT_FALSE(editor().AllowUnmodifiedHotKeys());
  EXPECT_FALSE(editor().UseSimpleTools());
  EXPECT_FALSE(editor().UseSimpleSave());
  EXPECT_FALSE(editor().AutoUpdateGlobal());
  EXPECT_FALSE(editor().ShowMenuBar());
  EXPECT_EQ(editor().Filename(), "");
  EXPECT_FALSE(editor().Changed());
}

struct Stored {
  const char* name;
  bool initial;
};
constexpr Stored kStored[] = {
    {"AllowUnmodifiedHotKeys", false},
    {"UseSimpleTools", false},
    {"ShowDrawingTools", true},
    {"UseSimpleSave", false},
    {"ShowClose", false},
    {"AutoUpdateGlobal", false},
    {"ShowMRU", true},
    {"ShowOpen", true},
    {"ShowMenuBar", false},
};

TEST_P(EditorLife, TheBagIsReadForNinePropertiesInOrderWithTheirDefaults) {
  create();
  headless::BagOfProperties bag;
  site().ReadProperties(bag);
  ASSERT_EQ(bag.reads().size(), std::size(kStored));
  for (std::size_t i = 0; i < std::size(kStored); ++i) {
    EXPECT_EQ(bag.reads()[i].name, kStored[i].name);
    EXPECT_EQ(bag.reads()[i].defaultValue.ToBoolean(), kStored[i].initial) << kStored[i].name;
  }
  EXPECT_TRUE(editor().ShowDrawingTools());
  EXPECT_TRUE(editor().ShowMRU());
  EXPECT_TRUE(editor().ShowOpen());
  EXPECT_FALSE(editor().ShowClose());
}

TEST_P(EditorLife, TheBagIsWrittenWithTheSameNineInTheSameOrder) {
  create();
  site().InitProperties();
  editor().ShowClose(true);
  headless::BagOfProperties bag;
  site().WriteProperties(bag);
  ASSERT_EQ(bag.entries().size(), std::size(kStored));
  for (std::size_t i = 0; i < std::size(kStored); ++i) {
    const bool written = kStored[i].name == std::string("ShowClose") || kStored[i].initial;
    EXPECT_EQ(bag.entries()[i].name, kStored[i].name);
    EXPECT_EQ(bag.entries()[i].defaultValue.ToBoolean(), kStored[i].initial) << kStored[i].name;
    EXPECT_EQ(bag.entries()[i].value.ToBoolean(), written) << kStored[i].name;
  }
}

TEST_P(EditorLife, PropertiesRoundTripThroughTheBag) {
  create();
  site().InitProperties();
  editor().ShowMRU(false);
  editor().UseSimpleSave(true);
  editor().AutoUpdateGlobal(true);
  headless::BagOfProperties bag;
  site().WriteProperties(bag);
  create();
  site().ReadProperties(bag);
  EXPECT_FALSE(editor().ShowMRU());
  EXPECT_TRUE(editor().UseSimpleSave());
  EXPECT_TRUE(editor().AutoUpdateGlobal());
  EXPECT_TRUE(editor().ShowOpen());
}

TEST_P(EditorLife, OnADesignSurfaceSuiteAndMenuBarAreHidden) {
  create(false);
  headless::BagOfProperties bag;
  bag.WriteProperty("ShowMenuBar", true, false);
  site().ReadProperties(bag);
  EXPECT_FALSE(suite().Visible());
  EXPECT_FALSE(suite().CommandBars()("Menu Bar").Visible());
}

TEST_P(EditorLife, AtRunTimeTheSuiteIsVisibleAndTheMenuBarAsSet) {
  create();
  headless::BagOfProperties bag;
  bag.WriteProperty("ShowMenuBar", true, false);
  site().ReadProperties(bag);
  EXPECT_TRUE(suite().Visible());
  EXPECT_TRUE(suite().CommandBars()("Menu Bar").Visible());
}

// -- Initialize -------------------------------------------------------------------------------------------

TEST_P(EditorLife, OnADesignSurfaceInitializeDoesOnlyZoomActualSize) {
  create(false);
  site().InitProperties();
  log().clear();
  editor().Initialize();
  EXPECT_THAT(log().entries(), ElementsAre("Zoom=1"));
  EXPECT_EQ(editor().BrowseDialog(), nullptr);
  EXPECT_EQ(suite().attached("dkwMaterials"), nullptr);
  EXPECT_EQ(suite().attached("dkwZoom"), nullptr);
  EXPECT_EQ(editor().Tool(), ipToolNone);
}

TEST_P(EditorLife, InitializeConfiguresTheViewThenAppliesOptionsAndColors) {
  create();
  site().InitProperties();
  log().clear();
  editor().Initialize();
  const std::vector<std::string> expected = {
      "Zoom=1",
      "ImageBorder=True",
      "MousePointerStyle=2",
      "AutoRedrawSelection=False",
      "SelectionStyle=0",
      "Draw.PenSetting=1",
      "Visible=True",
      "DoubleBuffer=True",
      "BackgroundImage",
      "Draw.FillMode=-1",  // the background color is none
      "UndoLevels=10",
      "SelectionHeight=0",  // the tool is set last, which clears the selection
      "SelectionWidth=0",
      "SelectionVisible=False",
  };
  EXPECT_THAT(log().entries(), ElementsAreArray(expected));
  EXPECT_EQ(view().Draw().PenSetting(), 1);
  EXPECT_EQ(view().Draw().Color().Value(), 255) << "the foreground color, as there is no background";
}

TEST_P(EditorLife, InitializeTakesColorsAndUndoLevelsFromTheOptions) {
  options().MaterialBackColor(0x00112233);
  options().MaterialForeColor(0x00445566);
  options().UndoLevels(4);
  start();
  EXPECT_EQ(editor().BackColor(), 0x00112233);
  EXPECT_EQ(editor().ForeColor(), 0x00445566);
  EXPECT_EQ(editor().UndoLevels(), 4);
  EXPECT_EQ(view().UndoLevels(), 4);
}

TEST_P(EditorLife, InitializePreparesTheFileDialog) {
  start();
  auto* dialog = dynamic_cast<headless::FileDialog*>(editor().BrowseDialog());
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->ownerWindow(), site().hWnd());
  EXPECT_EQ(dialog->DefaultExt(), "bmp");
  EXPECT_TRUE(dialog->centered());
  EXPECT_EQ(dialog->filterIndex(), 0);
  EXPECT_EQ(dialog->maxFiles(), 1);
}

TEST_P(EditorLife, InitializePutsToolWindowsIntoTheirDockWindows) {
  start();
  ASSERT_NE(suite().attached("dkwMaterials"), nullptr);
  ASSERT_NE(suite().attached("dkwZoom"), nullptr);
  EXPECT_EQ(suite().attached("dkwMaterials")->Name(), "frmMaterials");
  EXPECT_EQ(suite().attached("dkwZoom")->Name(), "frmZoom");
}

TEST_P(EditorLife, InitializeShowsTheZoomOfTheView) {
  start();
  EXPECT_EQ(panel("pnlZoom"), "1:1 (100%)");
  EXPECT_FALSE(command("btnZoomActualSize").Enabled());
}

TEST_P(EditorLife, InitializeLoadsTheRecentFilesFromTheEditorsKey) {
  const std::string key = "Software\\Brindlewick\\Common\\ImageProcessing\\RecentFiles";
  const std::string file = makePicture("recent.png", 2);
  platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, key, "MRU1", file, kStoreString);
  start();
  ASSERT_EQ(command("mnuFileMRU").Items().Count(), 1);
  EXPECT_EQ(command("mnuFileMRU").Items().Item(1).Text, file);
}

TEST_P(EditorLife, InitializeEndsWithTheSelectTool) {
  create();
  site().InitProperties();
  std::vector<std::int32_t> tools;
  connections_.push_back(
      editor().ToolChange.Connect([&](ImageProcessingToolConstants tool) { tools.push_back(tool); }));
  editor().Initialize();
  EXPECT_EQ(editor().Tool(), ipToolSelect);
  EXPECT_THAT(tools, ElementsAre(ipToolSelect));
  EXPECT_TRUE(command("btnDrawSelect").Checked());
}

// -- The container's calls --------------------------------------------------------------------------------

TEST_P(EditorLife, TheSuiteFillsTheControlAndTheViewTheSuitesClientArea) {
  start();
  site().Move(5, 6, 640, 480);
  EXPECT_EQ(suite().Left(), 0);
  EXPECT_EQ(suite().Top(), 0);
  EXPECT_EQ(suite().Width(), 640);
  EXPECT_EQ(suite().Height(), 480);
  const Rectangle area = suite().ClientArea();
  EXPECT_EQ((Rectangle{view().Left(), view().Top(), view().Width(), view().Height()}), area);
  suite().CommandBars()("Status Bar").Visible(false);
  EXPECT_GT(suite().ClientArea().Height, area.Height);
  EXPECT_EQ(view().Height(), suite().ClientArea().Height);
}

TEST_P(EditorLife, EscapeCancelsACropThatIsBeingDrawn) {
  startWithPicture();
  click("btnImageCrop");
  EXPECT_TRUE(command("btnImageCrop").Checked());
  site().pressKey(65, 0, 97);
  EXPECT_TRUE(command("btnImageCrop").Checked()) << "any other key does nothing";
  site().pressKey(27, 0, 27);
  EXPECT_FALSE(command("btnImageCrop").Checked());
}

TEST_P(EditorLife, EscapeThatEndsNothingIsLeftToTheContainer) {
  startWithPicture();
  std::vector<std::int32_t> left;
  const Connection container =
      site().KeyPress.Connect([&left](std::int32_t& character) { left.push_back(character); });
  site().pressKey(27, 0, 27);
  click("btnImageCrop");
  site().pressKey(65, 0, 97);
  site().pressKey(27, 0, 27);
  site().pressKey(27, 0, 27);
  EXPECT_THAT(left, ElementsAre(27, 97, 0, 27));
}

// -- Tear-down --------------------------------------------------------------------------------------------

TEST_P(EditorLife, HidingTheControlKeepsItAlive) {
  start();
  const auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  site().Visible(false);
  EXPECT_EQ(editor().EventSink(), sink);
  EXPECT_NE(suite().attached("dkwZoom"), nullptr);
}

TEST_P(EditorLife, HidingItAfterAnExitTearsItDown) {
  start();
  editor().ShowClose(true);
  const auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  click("btnFileClose");
  EXPECT_EQ(editor().EventSink(), sink) << "only the hiding tears down";
  site().Visible(false);
  EXPECT_EQ(editor().EventSink(), nullptr);
}

TEST_P(EditorLife, TerminateReleasesSinkAndOptionsAndMayBeRepeated) {
  start();
  const auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  const auto before = modProcessing::GetOptions();
  editor().Terminate();
  EXPECT_EQ(editor().EventSink(), nullptr);
  EXPECT_NE(modProcessing::GetOptions(), before);
  EXPECT_EQ(editor().MaterialsWindow(), nullptr);
  EXPECT_EQ(editor().ZoomWindow(), nullptr);
  editor().Terminate();
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorLife, TerminateClosesTheDockWindows) {
  start();
  ASSERT_TRUE(editor().DockWindows()("dkwMaterials").Visible());
  ASSERT_TRUE(editor().DockWindows()("dkwZoom").Visible());
  editor().Terminate();
  EXPECT_FALSE(editor().DockWindows()("dkwMaterials").Visible());
  EXPECT_FALSE(editor().DockWindows()("dkwZoom").Visible());
}

TEST_P(EditorLife, TheSinkIsNotKeptAlive) {
  start();
  EXPECT_EQ(editor().EventSink(), nullptr);
  auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  EXPECT_EQ(editor().EventSink(), sink);
  sink.reset();
  EXPECT_EQ(editor().EventSink(), nullptr);
  EXPECT_TRUE(editor().OpenImage(makePicture("a.png", 2))) << "an expired sink is skipped";
}

TEST_P(EditorLife, ASecondEditorWorksAfterTheFirstHasEnded) {
  startWithPicture();
  endEditor();
  start();
  EXPECT_TRUE(editor().OpenImage(makePicture("b.png", 2)));
}

KESTREL_WITH_BOTH_PATHS(EditorLife);

}  // namespace
}  // namespace kestrel
