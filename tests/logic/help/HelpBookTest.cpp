// The help book that is installed with the program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "Resources/Icons.h"
#include "Resources/Layouts.h"
#include "imaging/contract/Moorage.h"
#include "platform/docking/HotKeyText.h"
#include "platform/docking/LayoutReader.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;

const fs::path kBook = KESTREL_HELP_BOOK;
const fs::path kBrowserBook = KESTREL_BROWSER_HELP_BOOK;

std::string textOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::set<std::string> pages(const fs::path& book = kBook) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(book)) {
    if (entry.path().extension() == ".html") names.insert(entry.path().filename().string());
  }
  return names;
}

/// The values of all attributes of this name on the page.
std::vector<std::string> references(const std::string& page, const std::string& attribute,
                                    const fs::path& book = kBook) {
  const std::string text = textOf(book / page);
  const std::regex pattern(attribute + "\\s*=\\s*\"([^\"]*)\"");
  std::vector<std::string> found;
  for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) {
    found.push_back((*at)[1]);
  }
  return found;
}

/// Every command of the menus and bars with the page that describes it.
const std::map<std::string, std::string> kPageOfCommand = {
    {"btnFileOpen", "open"},
    {"btnFileSave", "save"},
    {"btnFileSaveAs", "save-as"},
    {"btnFileClose", "close"},
    {"btnFileExport", "export"},
    {"btnToolsOptions", "options"},
    {"mnuFileMRU", "recent-files"},
    {"btnEditUndo", "undo"},
    {"btnEditRedo", "redo"},
    {"btnEditCut", "cut"},
    {"btnEditCopy", "copy"},
    {"btnEditPaste", "paste"},
    {"btnEditPasteSpecial", "paste-special"},
    {"btnViewMaterialsWindow", "materials"},
    {"btnViewZoomWindow", "zoom-window"},
    {"btnViewStatusBar", "status-bar"},
    {"pnlStatus", "status-bar"},
    {"pnlPosition", "status-bar"},
    {"pnlSize", "status-bar"},
    {"pnlZoom", "status-bar"},
    {"btnImageFlip", "flip"},
    {"btnImageMirror", "mirror"},
    {"btnImageCrop", "crop"},
    {"btnImageDropShadow", "drop-shadow"},
    {"btnImageShapedDropShadow", "contoured-drop-shadow"},
    {"btnImageGrayScale", "greyscale"},
    {"btnRotateFree", "rotate-free"},
    {"btnRotateRight", "rotate-right"},
    {"btnRotateLeft", "rotate-left"},
    {"btnToolsFlattenAlpha", "flatten-transparency"},
    {"btnSelectionAll", "select"},
    {"btnSelectionNone", "select"},
    {"btnZoomActualSize", "zooming"},
    {"btnZoomIn", "zooming"},
    {"btnZoomOut", "zooming"},
    {"cboZoom", "zooming"},
    {"btnDrawZoom", "zoom"},
    {"btnDrawPan", "pan"},
    {"btnDrawSelect", "select"},
    {"btnDrawLine", "line"},
    {"btnDrawRectangle", "rectangle"},
    {"btnDrawEllipse", "ellipse"},
    {"btnDrawFreehand", "freehand"},
    {"btnDrawPicker", "dropper"},
    {"btnHelpContents", "keys"},
    {"btnImageResize", "resize"},
    {"btnImageResizeCanvas", "canvas-size"},
};

/// Commands without a page: for hosts only, or hidden.
const std::set<std::string> kWithoutPage = {
    "btnFileSimpleSave",
    "btnFileBrowse",
    "btnZoomBestFit",
    "btnHelpAbout",
};

/// The same of the browser.
const std::map<std::string, std::string> kPageOfBrowserCommand = {
    {"btnFileClose", "browse-files"},        {"btnViewThumbnail", "browse-views"},
    {"btnViewFilmstrip", "browse-views"},    {"btnViewSingle", "browse-views"},
    {"btnImageCopy", "browse-files"},        {"btnImageMove", "browse-files"},
    {"btnImageDelete", "browse-files"},      {"btnImageRename", "browse-files"},
    {"btnImageInformation", "browse-files"},
};

const docking::StoredLayout& layout() {
  static const docking::StoredLayout kLayout = docking::readLayout(resources::dialogLayout());
  return kLayout;
}

TEST(HelpBook, IsInstalledWithTheProgram) { EXPECT_THAT(pages(), Contains("default.html")); }

TEST(HelpBook, LinksOnlyToExistingPages) {
  for (const fs::path& book : {kBook, kBrowserBook}) {
    for (const std::string& page : pages(book)) {
      for (const std::string& target : references(page, "href", book)) {
        const std::string file = target.substr(0, target.find('#'));
        EXPECT_TRUE(file.empty() || fs::is_regular_file(book / file)) << page << " leads to " << target;
      }
    }
  }
}

TEST(HelpBook, ShowsOnlyExistingPictures) {
  for (const fs::path& book : {kBook, kBrowserBook}) {
    std::size_t pictures = 0;
    for (const std::string& page : pages(book)) {
      for (const std::string& picture : references(page, "src", book)) {
        EXPECT_TRUE(fs::is_regular_file(book / picture)) << page << " shows " << picture;
        ++pictures;
      }
    }
    EXPECT_GT(pictures, 0u);
  }
}

TEST(HelpBook, OfTheBrowserBeginsWithItsPagesAndLeadsToThoseOfTheEditor) {
  const std::string contents = textOf(kBrowserBook / "default.html");
  EXPECT_THAT(contents, HasSubstr("<h1>Image Browser Help</h1>"));
  EXPECT_THAT(references("default.html", "href", kBrowserBook),
              testing::ElementsAre("style.css", "browse.html", "browse-views.html", "browse-files.html",
                                   "browse-keys.html", "window.html", "editor.html"));
  EXPECT_EQ(textOf(kBrowserBook / "editor.html"), textOf(kBook / "default.html"));
}

TEST(HelpBook, ListsEveryPageInItsContentsWithALinkBack) {
  const std::vector<std::string> contents = references("default.html", "href");
  for (const std::string& page : pages()) {
    if (page == "default.html") continue;
    EXPECT_THAT(contents, Contains(page));
    EXPECT_THAT(references(page, "href"), Contains("default.html")) << page;
  }
}

/// The page that the Next link of a page leads to; empty for the last.
std::string nextOf(const std::string& page) {
  const std::string text = textOf(kBook / page);
  std::smatch found;
  return std::regex_search(text, found, std::regex("Next: <a href=\"([^\"]*)\"")) ? found[1].str() : "";
}

TEST(HelpBook, LinksItsPagesInTheOrderOfItsContents) {
  std::vector<std::string> order = references("default.html", "href");
  std::erase(order, "style.css");
  ASSERT_FALSE(order.empty());
  std::vector<std::string> read;
  for (std::string page = order.front(); !page.empty() && read.size() <= order.size(); page = nextOf(page)) {
    read.push_back(page);
  }
  EXPECT_THAT(read, testing::ElementsAreArray(order));
}

TEST(HelpBook, DescribesEveryCommandOfTheMenusAndBars) {
  std::set<std::string> offered;
  for (const auto& bar : layout().bars) {
    for (const auto& entry : bar.entries) offered.insert(entry.command);
  }
  for (const auto& command : layout().commands) {
    for (const auto& entry : command.menu) offered.insert(entry.command);
  }
  for (const std::string& command : offered) {
    if (command.starts_with("mnu") && command != "mnuFileMRU") continue;
    const auto row = kPageOfCommand.find(command);
    if (row == kPageOfCommand.end()) {
      EXPECT_THAT(kWithoutPage, Contains(command));
    } else {
      EXPECT_THAT(pages(), Contains(row->second + ".html")) << command;
    }
  }
}

TEST(HelpBook, DescribesEveryCommandOfTheBrowserWithItsIcon) {
  for (const auto& command : docking::readLayout(resources::browserLayout()).commands) {
    if (command.type != kCommandButton || command.category == "Help") continue;
    const auto row = kPageOfBrowserCommand.find(command.key);
    ASSERT_NE(row, kPageOfBrowserCommand.end()) << command.key;
    const std::string text = textOf(kBook / (row->second + ".html"));
    std::string name = command.caption;
    std::erase(name, '&');
    if (name.ends_with("...")) name.resize(name.size() - 3);
    EXPECT_THAT(text, HasSubstr(name)) << command.key;
    if (!command.image.empty()) {
      EXPECT_THAT(text, HasSubstr("icons/" + resources::iconFileName(command.image))) << command.key;
    }
  }
}

TEST(HelpBook, ShowsTheCommandsIconAndKeyOnItsPage) {
  for (const auto& command : layout().commands) {
    const auto row = kPageOfCommand.find(command.key);
    if (row == kPageOfCommand.end() || command.key == "btnHelpContents") continue;
    const std::string text = textOf(kBook / (row->second + ".html"));
    if (!command.image.empty()) {
      EXPECT_THAT(text, HasSubstr("icons/" + resources::iconFileName(command.image))) << command.key;
    }
    for (const auto& key : command.hotKeys) {
      const std::string name = docking::hotKeyText(key);
      if (name.starts_with("Num")) continue;  // described as a key of the number pad
      EXPECT_THAT(text, HasSubstr(name)) << command.key;
    }
  }
}

/// The text between two markers.
std::string between(const std::string& text, const std::string& begin, const std::string& end) {
  const auto from = text.find(begin);
  if (from == std::string::npos) return {};
  return text.substr(from + begin.size(), text.find(end, from) - from - begin.size());
}

TEST(HelpBook, ListsEveryKeyOnThePageOfKeys) {
  const std::string text = textOf(kBook / "keys.html");
  for (const auto& command : layout().commands) {
    const auto row = kPageOfCommand.find(command.key);
    if (row == kPageOfCommand.end()) continue;
    for (const auto& key : command.hotKeys) {
      const std::string name = docking::hotKeyText(key);
      if (name.starts_with("Num")) continue;
      const std::string rest = between(text, "<td>" + name + "</td>", "</tr>");
      EXPECT_FALSE(rest.empty()) << command.key << ' ' << name;
      if (command.key != "btnHelpContents") {
        EXPECT_THAT(rest, HasSubstr(row->second + ".html")) << name;
      }
    }
  }
}

TEST(HelpBook, HasADifferentTitleOnEachPage) {
  std::set<std::string> titles;
  for (const std::string& page : pages()) {
    const std::string title = between(textOf(kBook / page), "<title>", "</title>");
    EXPECT_FALSE(title.empty()) << page;
    EXPECT_TRUE(titles.insert(title).second) << page << " has the title of another";
  }
}

}  // namespace
}  // namespace kestrel
