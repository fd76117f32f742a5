#include "ThumbnailUri.h"

#include <cctype>
#include <string_view>

#include "engine/codecs/metadata/Md5.h"

namespace kestrel::thumbnails {
namespace {

/// The characters of a path that stay as they are; all other bytes are escaped.
bool isKept(char c) {
  constexpr std::string_view kMarks = "!$&'()*+,-./:=@_~";
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         kMarks.find(c) != std::string_view::npos;
}

std::string escaped(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (isKept(c)) {
      text += c;
    } else {
      text += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return text;
}

}  // namespace

std::string uriOf(const std::filesystem::path& path) {
  return "file://" + escaped(path.lexically_normal().native());
}

std::string uriOfName(const std::filesystem::path& path) { return escaped(path.filename().native()); }

std::filesystem::path entryName(const std::string& uri) {
  std::string digest = engine::md5Of({reinterpret_cast<const std::uint8_t*>(uri.data()), uri.size()});
  for (char& c : digest) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return digest + ".png";
}

}  // namespace kestrel::thumbnails
