#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "Resources/EmbeddedFiles.h"
#include "Resources/Icons.h"
#include "Resources/Layouts.h"
#include "Resources/StockPicture.h"
#include "platform/docking/LayoutReader.h"

namespace kestrel::resources {
namespace {

TEST(Icons, ExistForEveryImageOfTheEditorAndTheBrowser) {
  for (const auto& image : docking::readLayout(dialogLayout()).images) {
    EXPECT_FALSE(iconSvg(image.name).empty()) << image.name;
  }
  for (const auto& image : docking::readLayout(browserLayout()).images) {
    EXPECT_FALSE(iconSvg(image.name).empty()) << image.name;
  }
  EXPECT_TRUE(iconSvg("No such icon").empty());
}

TEST(Icons, HaveLowerCaseNamesWithHyphens) {
  EXPECT_EQ(iconFileName("Image-Save 2"), "image-save-2.svg");
  EXPECT_EQ(iconFileName("Zoom2"), "zoom2.svg");
}

/// Every color named in an SVG, as "#rrggbb".
std::vector<std::string> colorsIn(std::string_view svg) {
  std::vector<std::string> colors;
  for (std::size_t at = svg.find('#'); at != svg.npos; at = svg.find('#', at + 1)) {
    colors.emplace_back(svg.substr(at, 7));
  }
  return colors;
}

TEST(Icons, UseTheNeutralAndTheAccentColorAlone) {
  for (const EmbeddedFile& file : embeddedFiles()) {
    if (!file.name.ends_with(".svg") || file.name == "application.svg") continue;
    const std::string_view svg(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
    EXPECT_TRUE(svg.find("viewBox=\"0 0 24 24\"") != svg.npos) << file.name;
    EXPECT_FALSE(colorsIn(svg).empty()) << file.name;
    for (const std::string& color : colorsIn(svg)) {
      EXPECT_TRUE(color == kIconNeutral || color == kIconAccent) << file.name << ' ' << color;
    }
  }
}

TEST(StockPicture, IsAPngOf360By270) {
  const auto bytes = stockPicture();
  ASSERT_GT(bytes.size(), 24u);
  const unsigned char start[] = {0x89, 'P', 'N', 'G'};
  EXPECT_EQ(std::memcmp(bytes.data(), start, sizeof start), 0);
  const auto big = [&](std::size_t at) {
    return std::to_integer<int>(bytes[at + 2]) * 256 + std::to_integer<int>(bytes[at + 3]);
  };
  EXPECT_EQ(big(16), 360);
  EXPECT_EQ(big(20), 270);
}

}  // namespace
}  // namespace kestrel::resources
