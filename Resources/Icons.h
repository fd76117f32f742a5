#pragma once

#include <string>
#include <string_view>

namespace kestrel::resources {

/// The two colours of every drawn icon. Neutral strokes are meant to be replaced by the text colour of the
/// theme in use (a plain text replacement in the SVG will do); the accent reads on light and dark alike.
inline constexpr std::string_view kIconNeutral = "#59616b";
inline constexpr std::string_view kIconAccent = "#3388e0";

/// The file of the icon of that name, without its folder: "Image-Save 2" is drawn in "image-save-2.svg".
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
