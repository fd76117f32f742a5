#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

/// A text with placeholders: %1 to %9 for parts that are kept as they are, such as names and numbers, {1} to
/// {9} for parts that are texts of the catalog themselves, such as the reason of an error, and %n for a
/// count, which is a number. Two placeholders have text between them. Other per cent signs and braces are
/// text.
class TextPattern {
 public:
  /// The parts of a text at the placeholders: index 0 is the count, n the part of %n or {n}.
  struct Parts {
    std::array<std::string_view, 10> text;
    std::array<bool, 10> translated{};  ///< whether the placeholder is one in braces
  };

  /// `text` must outlive the pattern.
  explicit TextPattern(std::string_view text);

  bool HasPlaceholders() const { return pieces_.size() > 1 || (pieces_.size() == 1 && pieces_[0].kind != 0); }
  bool HasCount() const;
  /// Whether a part is translated.
  bool HasTexts() const;
  /// The number of letters outside of the placeholders.
  std::size_t Letters() const;

  /// The parts of a text that has the fixed parts of this pattern, none of them empty; nothing for another
  /// text.
  std::optional<Parts> Match(std::string_view text) const;
  /// The pattern with `part(placeholder's number)` at each placeholder.
  template <typename PartOf>
  std::string Fill(const PartOf& part) const {
    std::string result;
    for (const Piece& piece : pieces_) {
      if (piece.kind == 0) {
        result += piece.text;
      } else {
        result += part(piece.number);
      }
    }
    return result;
  }

 private:
  struct Piece {
    char kind;  ///< 0 for text, '%' or '{'
    std::size_t number;
    std::string_view text;
  };

  std::vector<Piece> pieces_;
};

}  // namespace kestrel
