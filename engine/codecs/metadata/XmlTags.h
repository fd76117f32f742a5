#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace kestrel::engine::xml {

enum class TagKind { open, close, empty };

/// A tag of an XML text, without a look at whether the text is well-formed.
struct Tag {
  std::size_t begin = 0, end = 0;  ///< from its < to after its >
  TagKind kind = TagKind::open;
  std::string_view name;
};

/// The first tag at or after a position; comments, instructions and unparsed text are passed over.
std::optional<Tag> nextTag(std::string_view text, std::size_t position);

/// The tag that closes the element that `open` begins, or `open` itself if it is empty.
std::optional<Tag> closingTag(std::string_view text, const Tag& open);

struct Attribute {
  std::size_t begin = 0, end = 0;            ///< from its name to after its closing quote
  std::size_t valueBegin = 0, valueEnd = 0;  ///< between the quotes
  std::string_view name;
};

std::vector<Attribute> attributesOf(std::string_view text, const Tag& tag);

}  // namespace kestrel::engine::xml
