#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel::engine {

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
};

}  // namespace kestrel::engine
