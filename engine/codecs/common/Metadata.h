#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel::engine {

/// A text under a key, as PNG files have them: "Title", "Author" and whatever else a program thought of.
struct KeyedText {
  std::string key;
  std::string text;  ///< UTF-8 if international, else Latin-1
  bool international = false;
  std::string language;       ///< of an international text, as RFC 3066 names it; may be empty
  std::string translatedKey;  ///< the key in that language; may be empty
};

/// What a picture file tells besides its pixels, and what a save hands on. Empty or 0 is "not told".
struct Metadata {
  /// Pixels per inch.
  double resolutionX = 0;
  double resolutionY = 0;

  /// The ICC profile that describes the pixels of the bitmap. Since decoding brings pixels to sRGB, this is
  /// an sRGB profile after a load: the file's own if it was one, else a made one.
  std::vector<std::uint8_t> iccProfile;

  /// Camera data as an EXIF block: a TIFF header and its directories, without any leading "Exif". After a
  /// load its orientation is 1 and it has no thumbnail; a save writes the picture's size and resolution into
  /// it.
  std::vector<std::uint8_t> exif;

  /// An XMP packet, UTF-8.
  std::vector<std::uint8_t> xmp;

  /// IPTC-IIM records.
  std::vector<std::uint8_t> iptc;

  /// A plain comment, in whatever coding the program that wrote it thought right.
  std::string comment;

  /// What only PNG can hold, in the file's order.
  std::vector<KeyedText> texts;
};

}  // namespace kestrel::engine
