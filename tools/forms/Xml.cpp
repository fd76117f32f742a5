#include "Xml.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace kestrel::tools {

std::string XmlElement::attribute(const std::string& key) const {
  const auto found = attributes.find(key);
  return found == attributes.end() ? std::string() : found->second;
}

const XmlElement* XmlElement::child(std::string_view wanted) const {
  const auto found =
      std::find_if(children.begin(), children.end(), [&](const XmlElement& c) { return c.name == wanted; });
  return found == children.end() ? nullptr : &*found;
}

namespace {

class Reader {
 public:
  explicit Reader(std::string_view document) : text_(document) {}

  XmlElement document() {
    skipToElement();
    XmlElement root = element();
    skipToElement();
    if (position_ != text_.size()) fail("something follows the root element");
    return root;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    const auto line =
        1 + std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(position_), '\n');
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
  }

  bool startsWith(std::string_view what) const { return text_.substr(position_).starts_with(what); }

  void expect(std::string_view what) {
    if (!startsWith(what)) fail("expected \"" + std::string(what) + "\"");
    position_ += what.size();
  }

  std::string_view until(std::string_view end) {
    const std::size_t found = text_.find(end, position_);
    if (found == std::string_view::npos) fail("\"" + std::string(end) + "\" is missing");
    const std::string_view passed = text_.substr(position_, found - position_);
    position_ = found + end.size();
    return passed;
  }

  void skipBlanks() {
    while (position_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[position_])))
      ++position_;
  }

  void skipToElement() {
    for (;;) {
      skipBlanks();
      if (startsWith("<!--")) {
        until("-->");
      } else if (startsWith("<?")) {
        until("?>");
      } else if (startsWith("<!")) {
        until(">");
      } else {
        return;
      }
    }
  }

  std::string identifier() {
    const std::size_t start = position_;
    while (position_ < text_.size() &&
           (std::isalnum(static_cast<unsigned char>(text_[position_])) ||
            std::string_view("_-:.").find(text_[position_]) != std::string_view::npos)) {
      ++position_;
    }
    if (position_ == start) fail("a name is missing");
    return std::string(text_.substr(start, position_ - start));
  }

  std::string decoded(std::string_view raw) const {
    std::string result;
    while (!raw.empty()) {
      const std::size_t ampersand = raw.find('&');
      result += raw.substr(0, ampersand);
      if (ampersand == std::string_view::npos) break;
      const std::size_t end = raw.find(';', ampersand);
      if (end == std::string_view::npos) fail("an entity has no end");
      result += entity(std::string(raw.substr(ampersand + 1, end - ampersand - 1)));
      raw.remove_prefix(end + 1);
    }
    return result;
  }

  std::string entity(const std::string& name) const {
    static const std::map<std::string, std::string> named = {
        {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
    if (const auto found = named.find(name); found != named.end()) return found->second;
    if (name.size() < 2 || name[0] != '#') fail("unknown entity \"" + name + "\"");
    const bool hexadecimal = name[1] == 'x';
    return utf8(std::stoul(name.substr(hexadecimal ? 2 : 1), nullptr, hexadecimal ? 16 : 10));
  }

  static std::string utf8(unsigned long code) {
    const auto byte = [](unsigned long value) {
      return static_cast<char>(static_cast<unsigned char>(value));
    };
    if (code < 0x80) return {byte(code)};
    if (code < 0x800) return {byte(0xC0 | (code >> 6)), byte(0x80 | (code & 0x3F))};
    return {byte(0xE0 | (code >> 12)), byte(0x80 | ((code >> 6) & 0x3F)), byte(0x80 | (code & 0x3F))};
  }

  XmlElement element() {
    XmlElement result;
    expect("<");
    result.name = identifier();
    for (skipBlanks(); !startsWith("/>") && !startsWith(">"); skipBlanks()) {
      const std::string key = identifier();
      expect("=\"");
      result.attributes[key] = decoded(until("\""));
    }
    if (startsWith("/>")) {
      position_ += 2;
      return result;
    }
    expect(">");
    content(result);
    return result;
  }

  void content(XmlElement& parent) {
    for (;;) {
      const std::size_t start = position_;
      position_ = std::min(text_.find('<', position_), text_.size());
      parent.text += decoded(text_.substr(start, position_ - start));
      if (startsWith("<!--")) {
        until("-->");
      } else if (startsWith("</")) {
        expect("</" + parent.name);
        skipBlanks();
        expect(">");
        return;
      } else {
        parent.children.push_back(element());
      }
    }
  }

  std::string_view text_;
  std::size_t position_ = 0;
};

}  // namespace

XmlElement readXml(std::string_view document) { return Reader(document).document(); }

}  // namespace kestrel::tools
