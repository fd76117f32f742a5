#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace kestrel::engine::xml {

enum class TagKind { open, close, empty };

/// A tag of an XML text; well-formedness is not checked.
struct Tag {
  std::size_t begin = 0, end = 0;  ///< from `<` to after `>`
  TagKind kind = TagKind::open;
  std::string_view name;
};

/// The first tag at or after a position. Skips comments, processing instructions and CDATA sections.
std::optional<Tag> nextTag(std::string_view text, std::size_t position);

/// The closing tag of the element that `open` begins, or `open` itself if it is an empty element.
std::optional<Tag> closingTag(std::string_view text, const Tag& open);

struct Attribute {
  std::size_t begin = 0, end = 0;            ///< from the name to after the closing quote
  std::size_t valueBegin = 0, valueEnd = 0;  ///< between the quotes
  std::string_view name;
};

std::vector<Attribute> attributesOf(std::string_view text, const Tag& tag);

}  // namespace kestrel::engine::xml
