#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/ByteReader.h"

namespace kestrel::engine::psd {

/// How the merged picture of a PSD file is stored.
struct ChannelForm {
  std::int32_t width = 0, height = 0;
  std::int32_t channels = 0;
  std::int32_t depth = 8;  ///< bits: 1, 8, 16 or 32 (real numbers)
  bool large = false;      ///< the large document form, whose counts are wider
};

/// Channels of a picture as planes of 8-bit samples, one row after the other.
struct Channels {
  std::vector<std::vector<std::uint8_t>> planes;
  std::int32_t rows = 0;  ///< rows that every plane has
};

/// Reads the first `wanted` channels of the picture data at the reader's place (the compression and what
/// follows). Raises RuntimeError 481 for a compression that is not known.
Channels readChannels(ByteReader& reader, const ChannelForm& form, std::int32_t wanted);

/// A row packed by the PackBits rule.
std::vector<std::uint8_t> packBits(Bytes row);

}  // namespace kestrel::engine::psd
