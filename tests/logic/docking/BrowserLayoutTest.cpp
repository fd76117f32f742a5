// The browser's stored layout, read from the block that is compiled into the program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "LayoutRows.h"
#include "Resources/Icons.h"
#include "Resources/Layouts.h"

namespace kestrel::docking {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const StoredLayout& browser() {
  static const StoredLayout kLayout = readLayout(resources::browserLayout());
  return kLayout;
}

const StoredCommand& command(const std::string& key) { return commandOf(browser(), key); }

constexpr ButtonTexts kButtons[] = {
    {"btnFileClose", "&Close", "Close", "Closes the image browse", "File", "Window-Close"},
    {"btnViewThumbnail", "&Thumbnail", "View: Thumbnail", "Displays a thumbnail grid of images", "View",
     "Thumbnail"},
    {"btnViewFilmstrip", "&Film strip", "View: Filmstrip",
     "Displays a single thumbnail of the selected image, with a small row of other thumbnails", "View",
     "Filmstrip"},
    {"btnViewSingle", "&Single", "View: Single", "Displays a single thumbnail of the selected image", "View",
     "Single"},
    {"btnImageCopy", "&Copy To...", "Copy To", "Copies the selected image file(s) to another location",
     "Image", ""},
    {"btnImageMove", "&Move To...", "Move To", "Moves the selected image file(s) to another location",
     "Image", ""},
    {"btnImageDelete", "&Delete...", "Delete", "Deletes the selected image file(s)", "Image", "Delete-2"},
    {"btnImageRename", "&Rename...", "Rename", "Renames the selected image file", "Image", "Rename"},
    {"btnImageInformation", "&Information...", "Information", "Displays information on the selected image",
     "Image", "Info-2"},
    {"btnHelpContents", "&Contents", "Help", "Displays help on using this application", "Help", "Help-2"},
    {"btnHelpAbout", "&About...", "About", "Displays version, contact and copyright information", "Help", ""},
};

class BrowserButton : public testing::TestWithParam<ButtonTexts> {};

TEST_P(BrowserButton, HasItsTextsCategoryAndImage) {
  const StoredCommand& stored = command(GetParam().key);
  expectButton(stored, GetParam());
  EXPECT_THAT(stored.hotKeys, IsEmpty());
  EXPECT_TRUE(stored.visible);
  EXPECT_FALSE(stored.pressed);
}

INSTANTIATE_TEST_SUITE_P(, BrowserButton, testing::ValuesIn(kButtons),
                         [](const auto& row) { return std::string(row.param.key); });

constexpr MenuRow kMenus[] = {
    {"mnuFile", "&File", "btnFileClose"},
    {"mnuView", "&View", "btnViewThumbnail btnViewFilmstrip btnViewSingle"},
    {"mnuImage", "&Image", "btnImageCopy btnImageMove btnImageDelete btnImageRename btnImageInformation"},
    {"mnuHelp", "&Help", "btnHelpContents btnHelpAbout"},
};

class BrowserMenu : public testing::TestWithParam<MenuRow> {};

TEST_P(BrowserMenu, HasItsCaptionAndEntries) { expectMenu(command(GetParam().key), GetParam()); }

INSTANTIATE_TEST_SUITE_P(, BrowserMenu, testing::ValuesIn(kMenus),
                         [](const auto& row) { return std::string(row.param.key); });

TEST(BrowserLayout, HasElevenButtonsFourMenusAndTwoPanels) {
  std::map<std::int32_t, int> types;
  for (const StoredCommand& one : browser().commands) ++types[one.type];
  EXPECT_THAT(types, ElementsAre(std::pair(kCommandButton, 11), std::pair(kCommandMenu, 4),
                                 std::pair(kCommandPanel, 2)));
}

TEST(BrowserLayout, HasThreeVisibleBarsInOrder) {
  const auto& bars = browser().bars;
  ASSERT_EQ(bars.size(), 3u);
  EXPECT_EQ(bars[0].name, "Menu Bar");
  EXPECT_EQ(bars[0].kind, BarKind::MenuBar);
  EXPECT_EQ(lineOf(bars[0].entries), "mnuFile mnuView mnuImage mnuHelp");
  EXPECT_EQ(bars[1].name, "Standard");
  EXPECT_EQ(bars[1].kind, BarKind::ToolBar);
  EXPECT_EQ(bars[2].name, "Status");
  EXPECT_EQ(bars[2].kind, BarKind::StatusBar);
  EXPECT_EQ(lineOf(bars[2].entries), "pnlStatus Progress");
  for (const StoredBar& bar : bars) EXPECT_TRUE(bar.visible) << bar.name;
}

TEST(BrowserLayout, ShowsOnlyCommandsWithAPictureOnTheToolBar) {
  ASSERT_FALSE(browser().bars[1].entries.empty());
  for (const StoredEntry& entry : browser().bars[1].entries) {
    EXPECT_NE(command(entry.command).image, "") << entry.command;
  }
}

TEST(BrowserLayout, HasAStatusPanelThatSpringsAndAHiddenProgressPanel) {
  const StoredCommand& status = command("pnlStatus");
  EXPECT_TRUE(status.spring);
  EXPECT_FALSE(status.progress);
  EXPECT_TRUE(status.visible);
  const StoredCommand& progress = command("Progress");
  EXPECT_FALSE(progress.spring);
  EXPECT_TRUE(progress.progress);
  EXPECT_FALSE(progress.visible);
}

TEST(BrowserLayout, HasFiveCategoriesInOrderAndNoDockWindow) {
  EXPECT_THAT(browser().categories, ElementsAre("File", "View", "Image", "Help", "Built-in Menus"));
  EXPECT_THAT(browser().dockWindows, IsEmpty());
}

TEST(BrowserLayout, HasEveryImageThatACommandNamesAndNoOther) {
  std::set<std::string> named, stored;
  for (const StoredCommand& one : browser().commands) {
    if (!one.image.empty()) named.insert(one.image);
  }
  for (const StoredImage& image : browser().images) {
    stored.insert(image.name);
    EXPECT_EQ(image.transparent, 16711935) << image.name;
    EXPECT_FALSE(resources::iconSvg(image.name).empty()) << image.name;
  }
  EXPECT_EQ(stored, named);
}

}  // namespace
}  // namespace kestrel::docking
