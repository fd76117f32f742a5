#include "Words.h"

#include <charconv>

#include "base/RuntimeError.h"

namespace kestrel::app {
namespace {

constexpr int kDecimal = 10, kHex = 16;
constexpr std::size_t kColorDigits = 6;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::int32_t numberOf(const std::string& word, int base) {
  std::int32_t value = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value, base);
  if (error != std::errc() || stop != end) refuse("\"" + word + "\" is not a number.");
  return value;
}

}  // namespace

void refuse(const std::string& sentence) { throw RuntimeError(err::kInvalidCall, sentence); }

Words wordsOf(std::string_view line) {
  Words words;
  bool inWord = false, inQuotes = false;
  for (const char c : line) {
    if (isBlank(c) && !inQuotes) {
      inWord = false;
      continue;
    }
    if (!inWord) words.emplace_back();
    inWord = true;
    if (c == '"') {
      inQuotes = !inQuotes;
    } else {
      words.back() += c;
    }
  }
  if (inQuotes) refuse("A double quote has no counterpart.");
  return words;
}

std::int32_t numberOf(const std::string& word) { return numberOf(word, kDecimal); }

OLE_COLOR colorOf(const std::string& word) {
  if (word == "none") return -1;
  if (word.size() != kColorDigits) refuse("\"" + word + "\" is not a color, such as 3388E0.");
  const std::int32_t rgb = numberOf(word, kHex);
  if (rgb < 0) refuse("\"" + word + "\" is not a color, such as 3388E0.");
  return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | (rgb >> 16 & 0xFF);
}

}  // namespace kestrel::app
