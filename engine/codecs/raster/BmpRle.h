#pragma once

#include <array>
#include <cstdint>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::bmp {

/// Result of RLE decoding.
struct RunLengths {
  std::int32_t rows = 0;  ///< rows with decoded pixels or skipped by the file
  bool complete = false;  ///< the end code or the last pixel was reached, without pixels outside the picture
};

/// Decodes RLE pixels of 4, 8 or 24 bits into a transparent bitmap. Pixels that the file skips stay
/// transparent.
RunLengths unpackRunLengths(Bytes data, std::uint32_t bits, const std::array<Pixel, 256>& palette,
                            const Pixels& pixels, bool topDown);

}  // namespace kestrel::engine::bmp
