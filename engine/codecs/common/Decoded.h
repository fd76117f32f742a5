#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Metadata.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

using Bytes = std::span<const std::uint8_t>;

/// The codes that name file formats everywhere. Some formats may be missing from this build's table:
/// asking for them is a clear error.
namespace format {
inline constexpr std::int32_t kNone = 0;
inline constexpr std::int32_t kJpg = 1;
inline constexpr std::int32_t kPng = 2;
inline constexpr std::int32_t kTif = 3;
inline constexpr std::int32_t kPcx = 4;
inline constexpr std::int32_t kTga = 5;
inline constexpr std::int32_t kBmp = 6;
inline constexpr std::int32_t kWmf = 7;
inline constexpr std::int32_t kEmf = 8;
inline constexpr std::int32_t kPsd = 9;
inline constexpr std::int32_t kWbmp = 10;
inline constexpr std::int32_t kGif = 11;
inline constexpr std::int32_t kTla = 12;
inline constexpr std::int32_t kPcd = 13;
}  // namespace format

/// How the picture stood in the file, before it became an 8-bit RGBA bitmap.
struct StoredAs {
  std::int32_t bitsPerSample = 8;
  bool hasAlpha = false;
  std::int32_t orientation = 1;  ///< 1 to 8 as EXIF counts; applied by the load
  std::string profile;           ///< the colour profile's own description, empty without one
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
