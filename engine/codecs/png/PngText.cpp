#include "PngText.h"

#include <cctype>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "engine/codecs/metadata/JpegMarkers.h"
#include "engine/codecs/metadata/PhotoshopResources.h"

// PNG has no chunk for IPTC. By convention it is a compressed text with the keyword "Raw profile type iptc":
// a line with the type, a line with the length, and the bytes in hexadecimal. The bytes are image resource
// blocks or plain IPTC records.

namespace kestrel::engine::png {
namespace {

constexpr std::string_view kXmpKey = "XML:com.adobe.xmp";
constexpr std::string_view kIptcKey = "Raw profile type iptc";
constexpr std::string_view kExifKey = "Raw profile type exif";
constexpr std::string_view kApp1Key = "Raw profile type APP1";
constexpr std::string_view kCommentKey = "Comment";

std::optional<int> hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

bool isSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

/// Decodes a raw profile text; empty if invalid.
std::vector<std::uint8_t> parseRawProfile(std::string_view text) {
  const auto skipSpace = [&] {
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  };
  skipSpace();
  // The type may be several words: "IPTC profile".
  while (!text.empty() && text.front() != '\n') text.remove_prefix(1);
  skipSpace();
  std::size_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (error != std::errc{} || length > text.size()) return {};
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));

  std::vector<std::uint8_t> bytes;
  bytes.reserve(length);
  std::optional<int> high;
  for (const char c : text) {
    const auto digit = hexDigit(c);
    if (!digit) continue;
    if (high) bytes.push_back(static_cast<std::uint8_t>(*high << 4 | *digit));
    high = high ? std::nullopt : digit;
  }
  if (bytes.size() != length) bytes.clear();
  return bytes;
}

std::string writeRawProfile(std::string_view kind, Bytes bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr std::size_t kBytesPerLine = 36;
  std::string text = "\n" + std::string(kind) + "\n" + std::to_string(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i % kBytesPerLine == 0) text += '\n';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  return text + "\n";
}

/// The encoding of a comment is unknown; valid UTF-8 is taken as such.
bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || length > text.size()) return false;
    for (std::size_t i = 1; i < length; ++i)
      if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

void readText(KeyedText text, Metadata& metadata) {
  const std::string_view content = text.text;
  if (text.key == kXmpKey) {
    metadata.xmp.assign(content.begin(), content.end());
  } else if (text.key == kIptcKey) {
    const std::vector<std::uint8_t> bytes = parseRawProfile(content);
    constexpr std::uint8_t kRecordMark = 0x1C;
    if (metadata.iptc.empty()) {
      metadata.iptc = !bytes.empty() && bytes[0] == kRecordMark ? bytes : iptcOfResources(bytes);
    }
  } else if (text.key == kExifKey || text.key == kApp1Key) {
    const std::vector<std::uint8_t> bytes = parseRawProfile(content);
    const jpeg::MarkerView marker{1, bytes};
    if (metadata.exif.empty()) metadata.exif = jpeg::readMarkers({&marker, 1}).exif;
  } else if (text.key == kCommentKey && metadata.comment.empty()) {
    metadata.comment = std::move(text.text);
  } else {
    metadata.texts.push_back(std::move(text));
  }
}

std::vector<KeyedText> writeTexts(const Metadata& metadata) {
  std::vector<KeyedText> texts;
  if (!metadata.xmp.empty()) {
    texts.push_back({std::string(kXmpKey), {metadata.xmp.begin(), metadata.xmp.end()}, true, {}, {}});
  }
  if (!metadata.iptc.empty()) {
    texts.push_back(
        {std::string(kIptcKey), writeRawProfile("iptc", resourcesOfIptc(metadata.iptc)), false, {}, {}});
  }
  if (!metadata.comment.empty()) {
    texts.push_back({std::string(kCommentKey), metadata.comment, isUtf8(metadata.comment), {}, {}});
  }
  texts.insert(texts.end(), metadata.texts.begin(), metadata.texts.end());
  return texts;
}

}  // namespace kestrel::engine::png
