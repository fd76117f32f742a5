#include "Words.h"

#include <array>
#include <charconv>
#include <sstream>

namespace kestrel::tools {

void append(std::string& text, std::string_view separator, std::string_view part) {
  if (!text.empty()) text += separator;
  text += part;
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + "\"";
}

std::string numberText(double value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return {digits.data(), end};
}

std::string wrapped(std::string_view text, std::string_view prefix, std::size_t width) {
  std::string result;
  std::string line;
  std::istringstream words{std::string(text)};
  for (std::string word; words >> word;) {
    if (!line.empty() && prefix.size() + line.size() + 1 + word.size() > width) {
      result.append(prefix).append(line).append("\n");
      line.clear();
    }
    append(line, " ", word);
  }
  return result.append(prefix).append(line).append("\n");
}

}  // namespace kestrel::tools
