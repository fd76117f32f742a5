#include <gtest/gtest.h>

#include "Resources/EmbeddedFiles.h"
#include "Resources/Icons.h"
#include "Resources/Layouts.h"
#include "platform/docking/LayoutReader.h"

namespace kestrel::resources {
namespace {

TEST(Icons, AreThereForEveryImageOfTheEditorAndTheBrowser) {
  for (const auto& image : docking::readLayout(dialogLayout()).images) {
    EXPECT_FALSE(iconSvg(image.name).empty()) << image.name;
  }
  for (const char* name : {"Thumbnail", "Filmstrip", "Single", "Delete-2", "Rename", "Info-2"}) {
    EXPECT_FALSE(iconSvg(name).empty()) << name;
  }
  EXPECT_TRUE(iconSvg("No such icon").empty());
}

TEST(Icons, AreFiledInSmallLettersWithHyphens) {
  EXPECT_EQ(iconFileName("Image-Save 2"), "image-save-2.svg");
  EXPECT_EQ(iconFileName("Zoom2"), "zoom2.svg");
}

/// Every colour named in an SVG, as "#rrggbb".
std::vector<std::string> coloursIn(std::string_view svg) {
  std::vector<std::string> colours;
  for (std::size_t at = svg.find('#'); at != svg.npos; at = svg.find('#', at + 1)) {
    colours.emplace_back(svg.substr(at, 7));
  }
  return colours;
}

TEST(Icons, UseTheNeutralAndTheAccentColourAlone) {
  for (const EmbeddedFile& file : embeddedFiles()) {
    if (!file.name.ends_with(".svg")) continue;
    const std::string_view svg(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
    EXPECT_TRUE(svg.find("viewBox=\"0 0 24 24\"") != svg.npos) << file.name;
    EXPECT_FALSE(coloursIn(svg).empty()) << file.name;
    for (const std::string& colour : coloursIn(svg)) {
      EXPECT_TRUE(colour == kIconNeutral || colour == kIconAccent) << file.name << ' ' << colour;
    }
  }
}

}  // namespace
}  // namespace kestrel::resources
