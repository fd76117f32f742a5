#include "XmlTags.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kestrel::engine::xml {
namespace {

constexpr std::string_view kSpace = " \t\r\n";

/// Delimiters of sections without tags.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kTaglessSections{
    {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}}};

/// The end of a tag: a `>` outside quotes.
std::size_t endOfTag(std::string_view text, std::size_t position) {
  char quote = 0;
  for (; position < text.size(); ++position) {
    const char c = text[position];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return position + 1;
    }
  }
  return std::string_view::npos;
}

std::string_view nameAt(std::string_view text, std::size_t position) {
  const std::size_t end = text.find_first_of(" \t\r\n/>=", position);
  return text.substr(position, end == std::string_view::npos ? end : end - position);
}

}  // namespace

std::optional<Tag> nextTag(std::string_view text, std::size_t position) {
  while ((position = text.find('<', position)) != std::string_view::npos) {
    const auto passed = std::ranges::find_if(
        kTaglessSections, [&](const auto& marks) { return text.substr(position).starts_with(marks.first); });
    if (passed != kTaglessSections.end()) {
      const std::size_t end = text.find(passed->second, position + passed->first.size());
      if (end == std::string_view::npos) return std::nullopt;
      position = end + passed->second.size();
      continue;
    }
    Tag tag;
    tag.begin = position;
    tag.end = endOfTag(text, position);
    if (tag.end == std::string_view::npos) return std::nullopt;
    const bool closes = text[position + 1] == '/';
    if (closes) tag.kind = TagKind::close;
    if (!closes && text[tag.end - 2] == '/') tag.kind = TagKind::empty;
    tag.name = nameAt(text, position + (closes ? 2 : 1));
    return tag;
  }
  return std::nullopt;
}

std::optional<Tag> closingTag(std::string_view text, const Tag& open) {
  if (open.kind == TagKind::empty) return open;
  int depth = 1;
  std::optional<Tag> tag;
  for (std::size_t at = open.end; (tag = nextTag(text, at)); at = tag->end) {
    if (tag->kind == TagKind::open) ++depth;
    if (tag->kind == TagKind::close && --depth == 0) break;
  }
  return tag && tag->name == open.name ? tag : std::nullopt;
}

std::vector<Attribute> attributesOf(std::string_view text, const Tag& tag) {
  std::vector<Attribute> attributes;
  std::size_t at = tag.begin + 1 + tag.name.size();
  while (true) {
    Attribute attribute;
    attribute.begin = text.find_first_not_of(kSpace, at);
    if (attribute.begin >= tag.end) break;
    attribute.name = nameAt(text, attribute.begin);
    const std::size_t quote = text.find_first_of("\"'", attribute.begin + attribute.name.size());
    if (attribute.name.empty() || quote >= tag.end) break;
    attribute.valueBegin = quote + 1;
    attribute.valueEnd = text.find(text[quote], quote + 1);
    if (attribute.valueEnd >= tag.end) break;
    attribute.end = at = attribute.valueEnd + 1;
    attributes.push_back(attribute);
  }
  return attributes;
}

}  // namespace kestrel::engine::xml
