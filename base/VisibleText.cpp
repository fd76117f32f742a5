#include "VisibleText.h"

#include <cstddef>

namespace kestrel {
namespace {

/// A character of UTF-8 text, or a byte that is none.
struct Character {
  char32_t code = 0;
  std::size_t length = 1;
  bool valid = false;
};

std::size_t lengthOf(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

Character characterAt(std::string_view text, std::size_t at) {
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = lengthOf(lead);
  if (length == 0 || length > text.size() - at) return {};
  char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[at + i]);
    if ((next & 0xC0U) != 0x80U) return {};
    code = (code << 6U) | (next & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kLeast[length] || code > 0x10FFFF || surrogate) return {};
  return {code, length, true};
}

bool isControl(char32_t code) {
  constexpr char32_t kLineSeparator = 0x2028, kParagraphSeparator = 0x2029;
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == kLineSeparator ||
         code == kParagraphSeparator;
}

}  // namespace

std::string VisibleText(std::string_view text) {
  // Not one of the control pictures, which common fonts lack.
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  std::string visible;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    const bool shown = character.valid && !isControl(character.code);
    visible += shown ? text.substr(at, character.length) : kReplacement;
    at += character.length;
  }
  return visible;
}

}  // namespace kestrel
