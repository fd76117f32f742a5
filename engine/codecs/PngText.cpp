#include "PngText.h"

#include <cctype>
#include <charconv>
#include <optional>

#include "JpegMarkers.h"
#include "PhotoshopResources.h"

// IPTC has no place of its own in PNG. The custom is a compressed text under the key "Raw profile type iptc":
// a line with the kind, a line with the length, and the bytes in hexadecimal. The bytes are image resource
// blocks or bare IPTC records.

namespace kestrel::engine::png {
namespace {

constexpr std::string_view kXmpKey = "XML:com.adobe.xmp";
constexpr std::string_view kIptcKey = "Raw profile type iptc";
constexpr std::string_view kExifKey = "Raw profile type exif";
constexpr std::string_view kApp1Key = "Raw profile type APP1";

std::optional<int> hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

bool isSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

/// The bytes of a raw profile text; empty if it is none.
std::vector<std::uint8_t> parseRawProfile(std::string_view text) {
  const auto skipSpace = [&] {
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  };
  skipSpace();
  // The kind may be several words: "IPTC profile".
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

}  // namespace

void readText(std::string_view key, std::string_view text, Metadata& metadata) {
  if (key == kXmpKey) {
    metadata.xmp.assign(text.begin(), text.end());
  } else if (key == kIptcKey && metadata.iptc.empty()) {
    const std::vector<std::uint8_t> bytes = parseRawProfile(text);
    constexpr std::uint8_t kRecordMark = 0x1C;
    metadata.iptc = !bytes.empty() && bytes[0] == kRecordMark ? bytes : iptcOfResources(bytes);
  } else if ((key == kExifKey || key == kApp1Key) && metadata.exif.empty()) {
    const std::vector<std::uint8_t> bytes = parseRawProfile(text);
    const jpeg::MarkerView marker{1, bytes};
    metadata.exif = jpeg::readMarkers({&marker, 1}).exif;
  }
}

std::vector<Text> writeTexts(const Metadata& metadata) {
  std::vector<Text> texts;
  if (!metadata.xmp.empty()) {
    texts.push_back({std::string(kXmpKey), {metadata.xmp.begin(), metadata.xmp.end()}, true});
  }
  if (!metadata.iptc.empty()) {
    texts.push_back({std::string(kIptcKey), writeRawProfile("iptc", resourcesOfIptc(metadata.iptc)), false});
  }
  return texts;
}

}  // namespace kestrel::engine::png
