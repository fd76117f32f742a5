#include "TextPattern.h"

#include <algorithm>

namespace kestrel {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// The length of the placeholder at the beginning of the text, 0 without one.
std::size_t PlaceholderLength(std::string_view text) {
  if (text.size() >= 2 && text[0] == '%' && (text[1] == 'n' || (IsDigit(text[1]) && text[1] != '0')))
    return 2;
  if (text.size() >= 3 && text[0] == '{' && IsDigit(text[1]) && text[1] != '0' && text[2] == '}') return 3;
  return 0;
}

}  // namespace

TextPattern::TextPattern(std::string_view text) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = PlaceholderLength(text.substr(i));
    if (length == 0) {
      ++i;
      continue;
    }
    if (i > begin) pieces_.push_back({0, 0, text.substr(begin, i - begin)});
    const char name = text[i + 1];
    pieces_.push_back({text[i], name == 'n' ? 0 : static_cast<std::size_t>(name - '0'), {}});
    begin = i += length;
  }
  if (begin < text.size()) pieces_.push_back({0, 0, text.substr(begin)});
}

bool TextPattern::HasCount() const {
  return std::any_of(pieces_.begin(), pieces_.end(),
                     [](const Piece& piece) { return piece.kind == '%' && piece.number == 0; });
}

bool TextPattern::HasTexts() const {
  return std::any_of(pieces_.begin(), pieces_.end(), [](const Piece& piece) { return piece.kind == '{'; });
}

std::size_t TextPattern::Letters() const {
  std::size_t count = 0;
  for (const Piece& piece : pieces_) {
    count += static_cast<std::size_t>(std::count_if(piece.text.begin(), piece.text.end(), IsLetter));
  }
  return count;
}

std::optional<TextPattern::Parts> TextPattern::Match(std::string_view text) const {
  Parts parts;
  std::string_view rest = text;
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Piece& piece = pieces_[i];
    if (piece.kind == 0) {
      if (!rest.starts_with(piece.text)) return std::nullopt;
      rest.remove_prefix(piece.text.size());
      continue;
    }
    std::size_t length = rest.size();
    if (i + 1 < pieces_.size()) {
      const std::string_view next = pieces_[i + 1].text;
      if (rest.size() < next.size()) return std::nullopt;
      // The last fixed part ends the text; before it a part ends at the first place where it can.
      length = i + 2 == pieces_.size() ? rest.size() - next.size() : rest.find(next, 1);
    }
    if (length == 0 || length == std::string_view::npos) return std::nullopt;
    const std::string_view part = rest.substr(0, length);
    const bool isCount = piece.kind == '%' && piece.number == 0;
    if (isCount && !std::all_of(part.begin(), part.end(), IsDigit)) return std::nullopt;
    parts.text[piece.number] = part;
    parts.translated[piece.number] = piece.kind == '{';
    rest.remove_prefix(length);
  }
  if (!rest.empty()) return std::nullopt;
  return parts;
}

}  // namespace kestrel
