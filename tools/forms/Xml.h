#pragma once

#include <QByteArray>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel::tools {

/// One element of an XML document, UTF-8. Its text is all text before, between and after its children, with
/// entities replaced.
struct XmlElement {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::vector<XmlElement> children;
  std::string text;

  /// The value of an attribute, empty if it has none of that name.
  std::string attribute(const std::string& key) const;
  /// The first child of that name, null if there is none.
  const XmlElement* child(std::string_view wanted) const;
};

/// The root element of a document. Throws std::runtime_error, with the line, for one that is not well-formed.
XmlElement readXml(const QByteArray& document);

}  // namespace kestrel::tools
