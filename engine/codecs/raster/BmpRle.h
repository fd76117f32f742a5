#pragma once

#include <array>
#include <cstdint>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::bmp {

/// What came of unpacking.
struct RunLengths {
  std::int32_t rows = 0;  ///< rows of which at least a pixel was told, or that were left out on purpose
  bool complete = false;  ///< the end mark or the last pixel was reached, and nothing pointed outside
};

/// Unpacks the run lengths of pixels with 4, 8 or 24 bits into a transparent bitmap. Pixels that the file
/// leaves out stay transparent.
RunLengths unpackRunLengths(Bytes data, std::uint32_t bits, const std::array<Pixel, 256>& palette,
                            const Pixels& pixels, bool topDown);

}  // namespace kestrel::engine::bmp
