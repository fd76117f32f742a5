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

/// How the picture stood in the file, before it became an 8-bit RGBA bitmap.
struct StoredAs {
  std::int32_t bitsPerSample = 8;
  bool hasAlpha = false;
  std::int32_t orientation = 1;  ///< 1 to 8 as EXIF counts; applied by the load
  std::string profile;           ///< the color profile's own description, empty without one
  std::int32_t pages = 1;        ///< pictures in the file; the first was loaded
};

/// A picture that was read.
struct Decoded {
  Bitmap bitmap;
  std::int32_t format = format::kNone;
  Metadata metadata;
  StoredAs stored;
  /// A sentence for the user if the file is damaged and the bitmap is only what could be read, else empty.
  std::string notice;
};

struct EncodeOptions {
  std::int32_t jpegQuality = 75;  ///< 1 to 100
};

}  // namespace kestrel::engine
