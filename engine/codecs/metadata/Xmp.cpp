#include "Xmp.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Md5.h"
#include "XmlTags.h"

namespace kestrel::engine::xmp {
namespace {

using xml::Attribute;
using xml::Tag;
using xml::TagKind;

constexpr std::string_view kExtendedReference = "xmpNote:HasExtendedXMP";
constexpr std::size_t kNameDigits = 32;

/// A range of a text.
struct Range {
  std::size_t begin = 0, end = 0;

  std::size_t size() const { return end - begin; }
  std::string_view of(std::string_view text) const { return text.substr(begin, size()); }
};

/// A top-level property: an attribute of an rdf:Description or a child element of it.
struct Property {
  std::string_view name;
  Range whole;
  Range value;
  std::size_t description = 0;
  bool isElement = false;
};

/// Attributes that are not properties: namespaces, rdf and xml attributes.
bool isNotProperty(const Attribute& attribute) {
  return attribute.name.starts_with("xmlns") || attribute.name.starts_with("rdf:") ||
         attribute.name.starts_with("xml:") || attribute.name == "about";
}

/// Positions of the elements of a packet.
struct Layout {
  Tag root;
  Tag rdf, rdfClose;
  Tag rootClose;
  std::vector<Tag> descriptions;
  std::vector<Property> properties;
};

/// Adds the properties of a description; returns false if it is not well-formed.
bool addProperties(std::string_view text, const Tag& description, const Tag& close, Layout& layout) {
  const std::size_t index = layout.descriptions.size() - 1;
  for (const Attribute& attribute : xml::attributesOf(text, description)) {
    if (isNotProperty(attribute)) continue;
    layout.properties.push_back({attribute.name,
                                 {attribute.begin, attribute.end},
                                 {attribute.valueBegin, attribute.valueEnd},
                                 index,
                                 false});
  }
  if (description.kind == TagKind::empty) return true;
  for (std::size_t at = description.end;;) {
    const auto open = xml::nextTag(text, at);
    if (!open) return false;
    if (open->begin >= close.begin) return true;
    const auto end = xml::closingTag(text, *open);
    if (!end) return false;
    layout.properties.push_back(
        {open->name, {open->begin, end->end}, {open->end, std::max(open->end, end->begin)}, index, true});
    at = end->end;
  }
}

std::optional<Layout> layoutOf(std::string_view text) {
  Layout layout;
  auto tag = xml::nextTag(text, 0);
  if (!tag) return std::nullopt;
  layout.root = *tag;
  while (tag && tag->name != "rdf:RDF") tag = xml::nextTag(text, tag->end);
  if (!tag || tag->kind != TagKind::open) return std::nullopt;
  layout.rdf = *tag;
  const auto rdfClose = xml::closingTag(text, layout.rdf);
  const auto rootClose = xml::closingTag(text, layout.root);
  if (!rdfClose || !rootClose || rootClose->end < rdfClose->end) return std::nullopt;
  layout.rdfClose = *rdfClose;
  layout.rootClose = *rootClose;

  for (std::size_t at = layout.rdf.end;;) {
    tag = xml::nextTag(text, at);
    if (!tag) return std::nullopt;
    if (tag->begin >= layout.rdfClose.begin) return layout;
    const auto close = xml::closingTag(text, *tag);
    if (!close || tag->name != "rdf:Description") return std::nullopt;
    layout.descriptions.push_back(*tag);
    if (!addProperties(text, *tag, *close, layout)) return std::nullopt;
    at = close->end;
  }
}

std::string_view textOf(Bytes bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

Packet bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

/// The text without these ranges, which must be in ascending order.
std::string without(std::string_view text, const std::vector<Range>& ranges) {
  std::string rest;
  std::size_t at = 0;
  for (const Range& range : ranges) {
    rest += text.substr(at, range.begin - at);
    at = range.end;
  }
  return rest += text.substr(at);
}

/// Replaces all integer values of the property.
void setNumber(Packet& packet, std::string_view name, std::int32_t number) {
  const std::string_view text = textOf(packet);
  const auto layout = layoutOf(text);
  if (!layout) return;
  std::string changed;
  std::size_t at = 0;
  for (const Property& property : layout->properties) {
    const std::string_view value = property.value.of(text);
    const bool isNumber = !value.empty() && value.find_first_not_of("0123456789") == std::string_view::npos;
    if (property.name != name || !isNumber) continue;
    changed += text.substr(at, property.value.begin - at);
    changed += std::to_string(number);
    at = property.value.end;
  }
  if (at == 0) return;
  changed += text.substr(at);
  packet = bytesOf(changed);
}

/// Attributes of a description that are not properties, each preceded by a space.
std::string otherAttributesOf(std::string_view text, const Tag& description) {
  std::string attributes;
  for (const Attribute& attribute : xml::attributesOf(text, description)) {
    if (isNotProperty(attribute))
      attributes += " " + std::string(text.substr(attribute.begin, attribute.end - attribute.begin));
  }
  return attributes;
}

/// A packet with only these properties.
std::string packetOf(std::string_view text, const Layout& layout, const std::vector<Property>& properties) {
  std::string packet(text.substr(layout.root.begin, layout.rdf.end - layout.root.begin));
  for (std::size_t i = 0; i < layout.descriptions.size(); ++i) {
    std::string attributes, elements;
    for (const Property& property : properties) {
      if (property.description != i) continue;
      (property.isElement ? elements : attributes += " ") += property.whole.of(text);
    }
    if (attributes.empty() && elements.empty()) continue;
    packet += "<rdf:Description" + otherAttributesOf(text, layout.descriptions[i]) + attributes + ">" +
              elements + "</rdf:Description>";
  }
  return packet += text.substr(layout.rdfClose.begin, layout.rootClose.end - layout.rdfClose.begin);
}

/// A description with the reference to the extended part, with the same subject as the first description.
std::string referenceOf(std::string_view text, const Layout& layout, std::string_view name) {
  std::string about = "rdf:about=\"\"";
  if (!layout.descriptions.empty()) {
    for (const Attribute& attribute : xml::attributesOf(text, layout.descriptions[0])) {
      if (attribute.name == "rdf:about")
        about = text.substr(attribute.begin, attribute.end - attribute.begin);
    }
  }
  return "<rdf:Description " + about + " xmlns:xmpNote=\"http://ns.adobe.com/xmp/note/\" " +
         std::string(kExtendedReference) + "=\"" + std::string(name) + "\"/>";
}

/// The padding before the end of a packet, meant for editing in place.
Range paddingOf(std::string_view text) {
  const std::size_t end = text.rfind("<?xpacket");
  if (end == std::string_view::npos || end == 0) return {};
  const std::size_t last = text.find_last_not_of(" \t\r\n", end - 1);
  return last == std::string_view::npos ? Range{} : Range{last + 1, end};
}

void sortByPosition(std::vector<Property>& properties) {
  std::ranges::sort(properties, {}, [](const Property& property) { return property.whole.begin; });
}

/// Namespace declarations from the tags around the descriptions of `text` that are not in `target`. Each is a
/// prefix and the declaration, preceded by a space.
std::vector<std::pair<std::string, std::string>> outerNamespaces(std::string_view text, const Layout& layout,
                                                                 std::string_view target) {
  std::vector<std::pair<std::string, std::string>> names;
  std::vector<Tag> around{layout.rdf};
  if (layout.root.begin != layout.rdf.begin) around.push_back(layout.root);
  for (const Tag& tag : around) {
    for (const Attribute& attribute : xml::attributesOf(text, tag)) {
      const std::string whole(text.substr(attribute.begin, attribute.end - attribute.begin));
      if (attribute.name.starts_with("xmlns") && target.find(whole) == std::string_view::npos) {
        names.emplace_back(attribute.name, " " + whole);
      }
    }
  }
  return names;
}

/// The descriptions of a packet with the namespace declarations they need inside the outer tags `target` of
/// another.
std::string descriptionsFor(std::string_view text, const Layout& layout, std::string_view target) {
  const auto names = outerNamespaces(text, layout, target);
  std::string result;
  for (const Tag& description : layout.descriptions) {
    const auto close = xml::closingTag(text, description);
    const std::size_t nameEnd = description.begin + 1 + description.name.size();
    const std::vector<Attribute> own = xml::attributesOf(text, description);
    result += text.substr(description.begin, nameEnd - description.begin);
    for (const auto& [name, declaration] : names) {
      const bool declared =
          std::ranges::any_of(own, [&name = name](const Attribute& a) { return a.name == name; });
      if (!declared) result += declaration;
    }
    result += text.substr(nameEnd, close->end - nameEnd);
  }
  return result;
}

template <typename Wanted>
std::vector<Property> propertiesOf(const Layout& layout, const Wanted& wanted) {
  std::vector<Property> found;
  for (const Property& property : layout.properties) {
    if (wanted(property.name)) found.push_back(property);
  }
  return found;
}

/// Ranges to remove for the properties `gone`, which must be in ascending order. A description that loses all
/// properties is removed as a whole.
std::vector<Range> rangesOf(std::string_view text, const Layout& layout, const std::vector<Property>& gone) {
  std::vector<std::ptrdiff_t> left(layout.descriptions.size());
  for (const Property& property : layout.properties) ++left[property.description];
  for (const Property& property : gone) --left[property.description];
  std::vector<Range> ranges;
  for (const Property& property : gone) {
    const Tag& description = layout.descriptions[property.description];
    const auto close = xml::closingTag(text, description);
    if (left[property.description] > 0 || !close) {
      ranges.push_back(property.whole);
    } else if (ranges.empty() || ranges.back().begin != description.begin) {
      ranges.push_back({description.begin, close->end});
    }
  }
  return ranges;
}

}  // namespace

void dropThumbnails(Packet& packet) {
  const std::string_view text = textOf(packet);
  if (text.find("Thumbnails") == std::string_view::npos) return;
  const auto layout = layoutOf(text);
  if (!layout) return;
  const auto previews = propertiesOf(
      *layout, [](std::string_view name) { return name == "xmp:Thumbnails" || name == "xap:Thumbnails"; });
  packet = bytesOf(without(text, rangesOf(text, *layout, previews)));
}

void setSize(Packet& packet, std::int32_t width, std::int32_t height) {
  for (const std::string_view name : {"tiff:ImageWidth", "exif:PixelXDimension"})
    setNumber(packet, name, width);
  for (const std::string_view name : {"tiff:ImageLength", "exif:PixelYDimension"})
    setNumber(packet, name, height);
}

std::optional<Parts> split(const Packet& packet, std::size_t limit) {
  if (packet.size() <= limit) return Parts{packet, {}, {}};
  const std::string text = without(textOf(packet), {paddingOf(textOf(packet))});
  if (text.size() <= limit) return Parts{bytesOf(text), {}, {}};
  const auto layout = layoutOf(text);
  if (!layout) return std::nullopt;

  std::vector<Property> properties = layout->properties;
  std::ranges::stable_sort(properties, std::ranges::greater{},
                           [](const Property& property) { return property.whole.size(); });
  std::size_t size = text.size() + referenceOf(text, *layout, std::string(kNameDigits, '0')).size();
  std::vector<Property> moved;
  for (const Property& property : properties) {
    if (size <= limit) break;
    moved.push_back(property);
    size -= property.whole.size();
  }
  if (size > limit) return std::nullopt;
  sortByPosition(moved);

  Parts parts;
  parts.extended = bytesOf(packetOf(text, *layout, moved));
  parts.name = md5Of(parts.extended);
  // Edit from the end: the properties precede the note.
  std::string standard = text;
  standard.insert(layout->rdfClose.begin, referenceOf(text, *layout, parts.name));
  parts.standard = bytesOf(without(standard, rangesOf(text, *layout, moved)));
  return parts;
}

std::string extendedName(Bytes standard) {
  const std::string_view text = textOf(standard);
  if (text.find(kExtendedReference) == std::string_view::npos) return {};
  const auto layout = layoutOf(text);
  if (!layout) return {};
  for (const Property& property : layout->properties) {
    if (property.name == kExtendedReference) return std::string(property.value.of(text));
  }
  return {};
}

Packet join(Bytes standard, Bytes extended) {
  const std::string_view first = textOf(standard), second = textOf(extended);
  const auto layout = layoutOf(first);
  if (!layout) return {standard.begin(), standard.end()};
  std::string text(first);
  if (const auto more = layoutOf(second)) {
    const std::string_view target = first.substr(layout->root.begin, layout->rdf.end - layout->root.begin);
    text.insert(layout->rdfClose.begin, descriptionsFor(second, *more, target));
  }
  const auto notes = propertiesOf(*layout, [](std::string_view name) { return name == kExtendedReference; });
  return bytesOf(without(text, rangesOf(first, *layout, notes)));
}

}  // namespace kestrel::engine::xmp
