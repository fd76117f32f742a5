#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Metadata.h"
#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Formats.h"

namespace kestrel::engine {

namespace format = kestrel::format;
using kestrel::FormatOf;

using Bytes = std::span<const std::uint8_t>;

/// Properties of the picture as stored in the file, before conversion to 8-bit RGBA.
struct StoredAs {
  std::int32_t bitsPerSample = 8;
  bool hasAlpha = false;
  std::int32_t orientation = 1;  ///< EXIF orientation, 1 to 8; already applied to the bitmap
  std::string profile;           ///< description in the color profile; empty without one
  std::int32_t pages = 1;        ///< pictures in the file; the first was loaded
  /// Size of the upright picture in pixels, also where it was decoded at a reduced size.
  std::int32_t width = 0;
  std::int32_t height = 0;
};

/// A decoded picture.
struct Decoded {
  Bitmap bitmap;
  std::int32_t format = format::kNone;
  Metadata metadata;
  StoredAs stored;
  /// Notice for the user if decode errors left the bitmap incomplete, else empty.
  std::string notice;
};

struct EncodeOptions {
  std::int32_t jpegQuality = kDefaultJpegQuality;  ///< 1 to 100
};

}  // namespace kestrel::engine
