#pragma once

#include <string>
#include <string_view>

namespace kestrel::resources {

/// The two colors of the SVG icons. Replace the neutral color by the text color of the theme (text
/// replacement in the SVG is enough); the accent works on light and dark.
inline constexpr std::string_view kIconNeutral = "#59616b";
inline constexpr std::string_view kIconAccent = "#3388e0";

/// The file name, without its folder, of the icon: "Image-Save 2" is in "image-save-2.svg".
inline std::string iconFileName(std::string_view name) {
  std::string file;
  for (const char letter : name) {
    const bool capital = letter >= 'A' && letter <= 'Z';
    file += letter == ' ' ? '-' : capital ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return file + ".svg";
}

/// The SVG text of the icon of that name, empty if there is none.
std::string_view iconSvg(std::string_view name);

}  // namespace kestrel::resources
