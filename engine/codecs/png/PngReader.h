#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// Pixel layout of a non-interlaced file with 8 or 16 bits per sample.
struct PixelLayout {
  enum class Kind { gray, grayAlpha, rgb, rgba, palette };

  Kind kind = Kind::rgba;
  std::size_t sampleBytes = 1;  ///< 1 or 2; always 1 for palette indices
  std::array<Pixel, 256> palette{};

  std::size_t bytesPerPixel() const;
};

/// Decompresses and unfilters the rows of a picture to RGBA; 16-bit samples are rounded to 8 bits. `packed`
/// is the zlib stream (RFC 1950), split anywhere. Returns true if the stream decodes to exactly these rows,
/// with valid filter types and checksum; data after it is ignored. Otherwise returns false, and the pixels
/// are undefined. Raises RuntimeError 7 when out of memory.
bool readPixels(std::span<const Bytes> packed, const PixelLayout& layout, const Pixels& pixels);

}  // namespace kestrel::engine::png
