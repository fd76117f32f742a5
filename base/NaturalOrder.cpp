#include "NaturalOrder.h"

#include <cstddef>
#include <cstdint>

#include "CaseFolding.h"

namespace kestrel {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// A count as bytes in the order of its values: each full byte of 255 is followed by the rest.
void appendCount(std::string& key, std::size_t count) {
  constexpr std::size_t kMost = 255;
  for (; count >= kMost; count -= kMost) key += static_cast<char>(static_cast<unsigned char>(kMost));
  key += static_cast<char>(static_cast<unsigned char>(count));
}

/// Appends the text; a number as '0', the count of its digits and the digits, without leading zeros.
void appendText(std::string& key, std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    if (!isDigit(text[i])) {
      key += text[i++];
      continue;
    }
    while (i < text.size() && text[i] == '0') ++i;
    const std::size_t begin = i;
    while (i < text.size() && isDigit(text[i])) ++i;
    key += '0';
    appendCount(key, i - begin);
    key += text.substr(begin, i - begin);
  }
}

}  // namespace

std::string NaturalKey(std::string_view name) {
  const std::string folded = FoldCase(name);
  const std::size_t point = folded.rfind('.');
  const std::string_view text = folded;
  std::string key;
  key.reserve(folded.size() + 8);
  appendText(key, text.substr(0, point));
  // Below all characters of a name, so that a name comes before its extensions.
  key += '\0';
  if (point != std::string::npos) appendText(key, text.substr(point));
  return key;
}

bool NaturalLess(std::string_view left, std::string_view right) {
  const int order = NaturalKey(left).compare(NaturalKey(right));
  return order != 0 ? order < 0 : left < right;
}

}  // namespace kestrel
