#include "Xml.h"

#include <QXmlStreamReader>
#include <algorithm>
#include <stdexcept>

namespace kestrel::tools {
namespace {

/// The element that the reader has just begun, up to its end.
XmlElement elementOf(QXmlStreamReader& reader) {
  XmlElement element;
  element.name = reader.name().toString().toStdString();
  for (const QXmlStreamAttribute& attribute : reader.attributes()) {
    element.attributes[attribute.name().toString().toStdString()] =
        attribute.value().toString().toStdString();
  }
  while (!reader.atEnd()) {
    switch (reader.readNext()) {
      case QXmlStreamReader::StartElement:
        element.children.push_back(elementOf(reader));
        break;
      case QXmlStreamReader::Characters:
        element.text += reader.text().toString().toStdString();
        break;
      case QXmlStreamReader::EndElement:
        return element;
      default:
        break;
    }
  }
  return element;
}

}  // namespace

std::string XmlElement::attribute(const std::string& key) const {
  const auto found = attributes.find(key);
  return found == attributes.end() ? std::string() : found->second;
}

const XmlElement* XmlElement::child(std::string_view wanted) const {
  const auto found =
      std::find_if(children.begin(), children.end(), [&](const XmlElement& c) { return c.name == wanted; });
  return found == children.end() ? nullptr : &*found;
}

XmlElement readXml(const QByteArray& document) {
  QXmlStreamReader reader(document);
  XmlElement root;
  if (reader.readNextStartElement()) root = elementOf(reader);
  while (!reader.atEnd()) reader.readNext();
  if (reader.hasError()) {
    throw std::runtime_error("line " + std::to_string(reader.lineNumber()) + ": " +
                             reader.errorString().toStdString());
  }
  return root;
}

}  // namespace kestrel::tools
