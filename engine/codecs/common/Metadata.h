#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel::engine {

/// A text with a keyword, as in PNG files: "Title", "Author" and any other.
struct KeyedText {
  std::string key;
  std::string text;  ///< UTF-8 if international, else Latin-1
  bool international = false;
  std::string language;       ///< RFC 3066 tag of an international text; may be empty
  std::string translatedKey;  ///< the key in that language; may be empty
};

/// Metadata of a picture file, kept from load to save. Empty or 0 means absent.
struct Metadata {
  /// Pixels per inch.
  double resolutionX = 0;
  double resolutionY = 0;

  /// ICC profile of the bitmap's pixels. Decoding converts to sRGB, so after a load this is an sRGB profile:
  /// the file's own if it was equivalent to sRGB, else a generated one.
  std::vector<std::uint8_t> iccProfile;

  /// EXIF block: a TIFF header and its directories, without a leading "Exif". After a load its orientation is
  /// 1 and it has no thumbnail; a save updates the picture's size and resolution in it.
  std::vector<std::uint8_t> exif;

  /// An XMP packet, UTF-8.
  std::vector<std::uint8_t> xmp;

  /// IPTC-IIM records.
  std::vector<std::uint8_t> iptc;

  /// Plain comment in an unknown character encoding.
  std::string comment;

  /// PNG text chunks, in the file's order.
  std::vector<KeyedText> texts;
};

}  // namespace kestrel::engine
