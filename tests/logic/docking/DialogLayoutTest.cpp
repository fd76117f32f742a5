// The editor's stored layout, read from the block that is compiled into the program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>

#include "LayoutRows.h"
#include "Resources/Layouts.h"

namespace kestrel::docking {
namespace {

using testing::ElementsAre;

const StoredLayout& dialog() {
  static const StoredLayout kLayout = readLayout(resources::dialogLayout());
  return kLayout;
}

const StoredCommand& command(const std::string& key) { return commandOf(dialog(), key); }

struct ButtonRow {
  ButtonTexts texts;
  std::int32_t shift;
  std::int32_t keyCode;  ///< 0: no hot key
};

constexpr ButtonRow kButtons[] = {
    {{"btnFileBrowse", "&Browse...", "Browse", "Displays an image browser", "File", ""}, 0, 0},
    {{"btnFileOpen", "&Open...", "Open", "Opens en existing image", "File", "Open"}, 2, 79},
    {{"btnFileSave", "&Save", "Save", "Saves the current file", "File", "Save"}, 2, 83},
    {{"btnFileSaveAs", "Save &As...", "Save As", "Saves the current file with a new name", "File", ""}, 0, 0},
    {{"btnFileSimpleSave", "&Save...", "Save", "Saves the image", "File", "Save"}, 0, 0},
    {{"btnFileExport", "&Export...", "Export", "Exports the current image to a file", "File", "Image-Save 2"},
     0,
     0},
    {{"btnFileClose", "&Close", "Close", "Closes the image editor", "File", "Window-Close"}, 4, 115},
    {{"btnEditUndo", "&Undo", "Undo", "Undo's the last action", "Edit", "Undo"}, 2, 90},
    {{"btnEditRedo", "&Redo", "Redo", "Redo's the last undo action", "Edit", "Redo"}, 0, 0},
    {{"btnEditCut", "Cu&t", "Cut", "Cuts the selection to the Windows Clipboard", "Edit", "Cut"}, 2, 88},
    {{"btnEditCopy", "&Copy", "Copy", "Copies the selection to the Windows Clipbaord", "Edit", "Copy MRGE"},
     2,
     67},
    {{"btnEditPaste", "&Paste", "Paste", "Pastes data from the Windows Clipboard", "Edit", "Paste"}, 2, 86},
    {{"btnEditPasteSpecial", "Paste &Special...", "Paste Special", "Allows you to paste with extra options",
      "Edit", ""},
     0,
     0},
    {{"btnViewMaterialsWindow", "&Materials Window", "Materials", "Shows or hides the Materials window",
      "View", ""},
     0,
     0},
    {{"btnViewZoomWindow", "&Zoom Window", "Zoom", "Shows or hides the Zoom window", "View", ""}, 0, 0},
    {{"btnViewStatusBar", "&Status Bar", "Status Bar", "Shows or hides the status bar", "View", ""}, 0, 0},
    {{"btnImageFlip", "&Flip", "Flip", "Flips the selection vertically", "Image", "Image-Flip"}, 2, 73},
    {{"btnImageMirror", "&Mirror", "Mirror", "Flips the selection horizontally", "Image", "Image-Mirror"},
     2,
     77},
    {{"btnImageResizeCanvas", "Can&vas Size...", "Canvas Size", "Allows you to resize the canvas", "Image",
      ""},
     0,
     0},
    {{"btnImageResize", "Resi&ze...", "Resize", "Resizes the image", "Image", "Image-Resize"}, 1, 83},
    {{"btnImageCrop", "&Crop", "Crop",
      "Crops the image to the current selection or if no selection defined allows you to define a crop "
      "selection",
      "Image", "Image-Crop"},
     1,
     82},
    {{"btnImageDropShadow", "&Drop shadow...", "Drop shadow", "Adds a drop shadow to the current selection",
      "Image", "Drop Shadow"},
     0,
     0},
    {{"btnImageShapedDropShadow", "Conto&ured Drop Shadow...", "Contoured Drop Shadow", "Draws a drop shadow",
      "Image", "Drop Shadow 2"},
     0,
     0},
    {{"btnImageGrayScale", "&Greyscale", "Gray scale", "Converts the image to a grayscale image", "Image",
      "Image-GrayScale"},
     0,
     0},
    {{"btnRotateFree", "&Free Rotate...", "Rotate", "Rotates the image", "Image", "Rotate"}, 2, 82},
    {{"btnRotateRight", "Rotate right", "Rotate Right", "Rotates the image 90 degrees to the right", "Image",
      "Rotate-Right"},
     0,
     0},
    {{"btnRotateLeft", "Rotate left", "Rotate Left", "Rotates the image 90 degrees to the left", "Image",
      "Rotate Left"},
     0,
     0},
    {{"btnToolsFlattenAlpha", "&Flatten Transparency...", "Flatten Alpha",
      "Flattens (removes) alpha channel information from the image", "Tools", ""},
     0,
     0},
    {{"btnToolsOptions", "&Options...", "Options", "Allows you to view and modify settings", "Tools",
      "Tools"},
     0,
     120},
    {{"btnDrawZoom", "&Zoom", "Zoom", "Allows you to zoom and in our", "Tools", "Search-Left"}, 0, 90},
    {{"btnDrawPan", "&Pan", "Pan", "Allows you to scroll the image by clicking and dragging", "Tools",
      "Crop 2"},
     0,
     0},
    {{"btnDrawSelect", "&Select", "Select", "Allows you to select a region", "Tools", "Select 2"}, 0, 83},
    {{"btnDrawLine", "&Line", "Line", "Allows you to draw lines", "Tools", "Line"}, 0, 76},
    {{"btnDrawRectangle", "&Rectangle", "", "Allows you to draw rectangles", "Tools", "Rectangle"}, 0, 82},
    {{"btnDrawEllipse", "&Ellipse", "", "Allows you to draw ellipses", "Tools", "Ellipse"}, 0, 0},
    {{"btnDrawFreehand", "&Freehand", "Freehand", "Allows freehand drawing", "Tools", "Pencil"}, 0, 66},
    {{"btnDrawPicker", "&Dropper", "Dropper", "Allows you to select a color from the document", "Tools",
      "Colour Picker"},
     0,
     69},
    {{"btnSelectionAll", "Select &All", "Select All", "Selects all content in the image", "Selection",
      "Selection"},
     0,
     0},
    {{"btnSelectionNone", "Select &None", "Select None", "Clears the current selection", "Selection",
      "Selection-None"},
     0,
     0},
    {{"btnZoomActualSize", "&Actual Size", "Actual Size", "Changes the view to actual size", "Zoom",
      "Actual Size"},
     2,
     65},
    {{"btnZoomBestFit", "&Best fit", "Best Fit", "Fits the image into the view area", "Zoom", "Best Fit"},
     2,
     66},
    {{"btnZoomIn", "Zoom &In", "", "Enlarge the image view", "Zoom", "Zoom-In"}, 0, 107},
    {{"btnZoomOut", "Zoom &Out", "Zoom Out", "Reduce the image view", "Zoom", "Zoom-Out"}, 0, 109},
    {{"btnHelpContents", "&Contents...", "Help", "Displays help on using this application", "Help", "Help-2"},
     0,
     112},
    {{"btnHelpAbout", "&About...", "About", "Displays contact, copyright and version information", "Help",
      ""},
     0,
     0},
};

class DialogButton : public testing::TestWithParam<ButtonRow> {};

TEST_P(DialogButton, HasItsTextsCategoryImageAndHotKey) {
  const ButtonRow& row = GetParam();
  const StoredCommand& stored = command(row.texts.key);
  expectButton(stored, row.texts);
  if (row.keyCode == 0) {
    EXPECT_TRUE(stored.hotKeys.empty());
  } else {
    EXPECT_THAT(stored.hotKeys, ElementsAre(StoredHotKey{row.shift, row.keyCode}));
  }
}

TEST_P(DialogButton, IsVisibleUnlessItIsBrowseOrBestFit) {
  const std::string key = GetParam().texts.key;
  EXPECT_EQ(command(key).visible, key != "btnFileBrowse" && key != "btnZoomBestFit");
}

TEST_P(DialogButton, IsPressedOnlyForTheViewsAndTheSelectTool) {
  const std::set<std::string> pressed = {"btnViewMaterialsWindow", "btnViewZoomWindow", "btnViewStatusBar",
                                         "btnDrawSelect"};
  EXPECT_EQ(command(GetParam().texts.key).pressed, pressed.contains(GetParam().texts.key));
}

INSTANTIATE_TEST_SUITE_P(, DialogButton, testing::ValuesIn(kButtons),
                         [](const auto& row) { return std::string(row.param.texts.key); });

constexpr MenuRow kMenus[] = {
    {"mnuFile", "&File",
     "btnFileSimpleSave btnFileOpen btnFileSave btnFileSaveAs +btnFileBrowse +btnFileExport +mnuFileMRU "
     "+btnFileClose"},
    {"mnuEdit", "&Edit", "btnEditUndo btnEditRedo +btnEditCut btnEditCopy btnEditPaste btnEditPasteSpecial"},
    {"mnuView", "&View", "btnViewMaterialsWindow btnViewZoomWindow +btnViewStatusBar"},
    {"mnuImage", "&Image",
     "btnImageFlip btnImageMirror mnuRotate +btnImageResizeCanvas btnImageResize +btnImageCrop "
     "+btnImageDropShadow btnImageShapedDropShadow +btnImageGrayScale"},
    {"mnuRotate", "&Rotate", "btnRotateFree btnRotateRight btnRotateLeft"},
    {"mnuTools", "&Tools", "mnuDraw mnuZoom +btnToolsFlattenAlpha +btnToolsOptions"},
    {"mnuDraw", "&Drawing Tools",
     "btnDrawZoom btnDrawPan btnDrawSelect +btnDrawLine btnDrawRectangle btnDrawEllipse btnDrawFreehand "
     "+btnDrawPicker"},
    {"mnuSelection", "&Selections", "btnSelectionAll btnSelectionNone"},
    {"mnuZoom", "&Zoom", "btnZoomActualSize btnZoomBestFit +btnZoomIn btnZoomOut"},
    {"mnuHelp", "&Help", "btnHelpContents +btnHelpAbout"},
    {"mnuSelectionContext", "Selection Context", "btnEditCut btnEditCopy"},
    {"mnuImageContext", "Image Content", "btnEditCut btnEditCopy btnEditPaste +mnuDraw"},
};

class DialogMenu : public testing::TestWithParam<MenuRow> {};

TEST_P(DialogMenu, HasItsCaptionAndEntries) {
  const StoredCommand& stored = command(GetParam().key);
  expectMenu(stored, GetParam());
  EXPECT_EQ(stored.description, stored.key == "mnuZoom" ? "Allows access to zoom settings" : "");
}

INSTANTIATE_TEST_SUITE_P(, DialogMenu, testing::ValuesIn(kMenus),
                         [](const auto& row) { return std::string(row.param.key); });

struct BarRow {
  const char* name;
  BarKind kind;
  const char* entries;
};

constexpr BarRow kBars[] = {
    {"Menu Bar", BarKind::MenuBar, "mnuFile mnuEdit mnuView mnuImage mnuTools mnuSelection mnuHelp"},
    {"Standard", BarKind::ToolBar,
     "btnFileSimpleSave btnFileOpen btnFileSave +btnFileExport +btnEditCut btnEditCopy btnEditPaste "
     "+btnEditUndo btnEditRedo +btnToolsOptions +btnHelpContents btnFileClose"},
    {"Tools", BarKind::ToolBar,
     "btnDrawZoom btnDrawPan btnDrawSelect +btnDrawLine btnDrawRectangle btnDrawEllipse btnDrawFreehand "
     "+btnDrawPicker"},
    {"Picture", BarKind::ToolBar,
     "btnImageFlip btnImageMirror +btnRotateFree btnRotateRight btnRotateLeft +btnImageResize +btnImageCrop "
     "+btnImageDropShadow btnImageShapedDropShadow +btnImageGrayScale"},
    {"Zoom", BarKind::ToolBar, "cboZoom +btnZoomActualSize btnZoomBestFit +btnZoomIn btnZoomOut"},
    {"Status Bar", BarKind::StatusBar, "pnlStatus pnlPosition pnlSize pnlZoom"},
};

TEST(DialogLayout, HasSixBarsInOrderAllVisible) {
  ASSERT_EQ(dialog().bars.size(), std::size(kBars));
  for (std::size_t i = 0; i < std::size(kBars); ++i) {
    const StoredBar& bar = dialog().bars[i];
    EXPECT_EQ(bar.name, kBars[i].name);
    EXPECT_EQ(bar.kind, kBars[i].kind) << bar.name;
    EXPECT_EQ(lineOf(bar.entries), kBars[i].entries) << bar.name;
    EXPECT_TRUE(bar.visible) << bar.name;
  }
}

TEST(DialogLayout, HasSixtyThreeCommands) {
  EXPECT_EQ(dialog().commands.size(), 63u);
  std::map<std::int32_t, int> types;
  for (const StoredCommand& one : dialog().commands) ++types[one.type];
  EXPECT_THAT(types, ElementsAre(std::pair(kCommandButton, 45), std::pair(kCommandCombo, 1),
                                 std::pair(kCommandMenu, 12), std::pair(kCommandList, 1),
                                 std::pair(kCommandPanel, 4)));
}

TEST(DialogLayout, ListsTheRecentFiles) {
  const StoredCommand& list = command("mnuFileMRU");
  EXPECT_EQ(list.type, 8);
  EXPECT_EQ(list.caption, "(List of Recently Used Files)");
  EXPECT_EQ(list.category, "File");
}

TEST(DialogLayout, StartsTheZoomComboAtOneToOne) {
  const StoredCommand& combo = command("cboZoom");
  EXPECT_EQ(combo.type, 2);
  EXPECT_EQ(combo.caption, "Zoom");
  EXPECT_EQ(combo.description, "Allows you to set a zoom level");
  EXPECT_EQ(combo.text, "1:1");
  EXPECT_EQ(combo.width, 46);
}

TEST(DialogLayout, HasFourStatusPanels) {
  const StoredCommand& status = command("pnlStatus");
  EXPECT_TRUE(status.spring);
  const StoredCommand& position = command("pnlPosition");
  EXPECT_EQ(position.width, 53);
  EXPECT_EQ(position.caption, " ");
  EXPECT_EQ(position.image, "Object Position");
  const StoredCommand& size = command("pnlSize");
  EXPECT_EQ(size.width, 53);
  EXPECT_EQ(size.image, "Object Size");
  const StoredCommand& zoom = command("pnlZoom");
  EXPECT_EQ(zoom.width, 40);
  EXPECT_EQ(zoom.caption, "1:1 (100%)");
  EXPECT_EQ(zoom.shortCaption, "Current Zoom Level");
  EXPECT_EQ(zoom.image, "Zoom2");
  for (const StoredCommand* panel : {&status, &position, &size, &zoom}) {
    EXPECT_EQ(panel->type, 9);
    EXPECT_FALSE(panel->progress);
    EXPECT_EQ(panel->spring, panel == &status);
  }
}

TEST(DialogLayout, HasNineCategoriesInOrder) {
  EXPECT_THAT(dialog().categories, ElementsAre("File", "Edit", "View", "Image", "Selection", "Zoom", "Tools",
                                               "Help", "Built-in Menus"));
}

TEST(DialogLayout, HasTwoDockWindows) {
  ASSERT_EQ(dialog().dockWindows.size(), 2u);
  EXPECT_EQ(dialog().dockWindows[0].key, "dkwMaterials");
  EXPECT_EQ(dialog().dockWindows[0].caption, "Materials");
  EXPECT_EQ(dialog().dockWindows[1].key, "dkwZoom");
  EXPECT_EQ(dialog().dockWindows[1].caption, "Zoom");
}

TEST(DialogLayout, GivesNoHotKeyToTwoCommands) {
  std::set<std::pair<std::int32_t, std::int32_t>> seen;
  for (const StoredCommand& one : dialog().commands) {
    for (const StoredHotKey& key : one.hotKeys) {
      EXPECT_TRUE(seen.emplace(key.shift, key.keyCode).second) << one.key;
    }
  }
}

TEST(DialogLayout, HasFortyImagesOf16By16AndAllThatCommandsName) {
  std::set<std::string> names;
  for (const StoredImage& image : dialog().images) {
    names.insert(image.name);
    EXPECT_EQ(image.transparent, 16711935) << image.name;
    for (const StoredPicture* picture : {&image.normal, &image.disabled}) {
      EXPECT_EQ(picture->width, 16) << image.name;
      EXPECT_EQ(picture->height, 16) << image.name;
    }
  }
  EXPECT_EQ(names.size(), 40u);
  for (const StoredCommand& one : dialog().commands) {
    EXPECT_TRUE(one.image.empty() || names.contains(one.image)) << one.image;
  }
}

TEST(DialogLayout, DrawsImagesOnMagentaAndDisabledOnesInGray) {
  for (const StoredImage& image : dialog().images) {
    EXPECT_NE(image.normal, image.disabled) << image.name;
    int magenta = 0;
    for (std::size_t i = 0; i < image.normal.rgb.size(); i += 3) {
      const auto pixel = [i](const StoredPicture& picture) {
        return std::array{picture.rgb[i], picture.rgb[i + 1], picture.rgb[i + 2]};
      };
      const bool ground = pixel(image.normal) == std::array<std::uint8_t, 3>{255, 0, 255};
      magenta += ground;
      EXPECT_EQ(pixel(image.disabled) == pixel(image.normal), ground) << image.name;
      if (!ground) {
        EXPECT_EQ(pixel(image.disabled)[0], pixel(image.disabled)[1]) << image.name;
        EXPECT_EQ(pixel(image.disabled)[1], pixel(image.disabled)[2]) << image.name;
      }
    }
    EXPECT_GT(magenta, 40) << image.name;
    EXPECT_LT(magenta, 240) << image.name;
  }
}

}  // namespace
}  // namespace kestrel::docking
