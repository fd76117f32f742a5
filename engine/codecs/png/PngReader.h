#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// How the pixels stand in a file whose samples are bytes or pairs of bytes and whose rows come in order.
struct PixelLayout {
  enum class Kind { gray, grayAlpha, rgb, rgba, palette };

  Kind kind = Kind::rgba;
  std::size_t sampleBytes = 1;  ///< 2 with 16 bits a sample, which a palette's indices never have
  std::array<Pixel, 256> palette{};

  std::size_t bytesPerPixel() const;
};

/// Unpacks the rows of a picture into RGBA, where samples of 16 bits become the nearest of 8. `packed` is the
/// zlib stream (RFC 1950) in pieces cut anywhere. True if it is whole: it unpacks to exactly these rows, by
/// filters that exist, and its checksum is right; what follows it does not matter. Else false, and the pixels
/// are worth nothing. Raises RuntimeError 7 when memory runs out.
bool readPixels(std::span<const Bytes> packed, const PixelLayout& layout, const Pixels& pixels);

}  // namespace kestrel::engine::png
