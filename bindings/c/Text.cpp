#include "Text.h"

#include <cstddef>
#include <cstdint>

namespace kestrel::c {
namespace {

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// The length of the character that the text begins with; 0 if it is none.
std::size_t CharacterLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                             : first >= 0xE0 && first < 0xF0 ? 3
                             : first >= 0xF0 && first < 0xF5 ? 4
                                                             : 0;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!Continues(text[i])) return 0;
  }
  // Longer than needed, a surrogate, or above the last character.
  const auto second = static_cast<unsigned char>(text[1]);
  const bool wrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
                     (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
  return wrong ? 0 : length;
}

}  // namespace

std::string ValidUtf8(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) {
      valid += "\xEF\xBF\xBD";
      text.remove_prefix(1);
    } else {
      valid += text.substr(0, length);
      text.remove_prefix(length);
    }
  }
  return valid;
}

}  // namespace kestrel::c
