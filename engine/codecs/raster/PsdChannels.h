#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/ByteReader.h"

namespace kestrel::engine::psd {

/// Storage format of the channels of a PSD file.
struct ChannelForm {
  std::int32_t width = 0, height = 0;
  std::int32_t channels = 0;
  std::int32_t depth = 8;  ///< bits per sample: 1, 8, 16 or 32 (floating point)
  bool large = false;      ///< large document format (PSB), with wider counts
};

/// Channels as planes of 8-bit samples, row by row without padding.
struct Channels {
  std::vector<std::vector<std::uint8_t>> planes;
  std::int32_t rows = 0;  ///< rows decoded in every plane
};

/// Reads the first `wanted` channels of the image data at the reader's position, which begins with the
/// compression. Raises RuntimeError 481 for an unknown compression.
Channels readChannels(ByteReader& reader, const ChannelForm& form, std::int32_t wanted);

/// Encodes a row with PackBits.
std::vector<std::uint8_t> packBits(Bytes row);

}  // namespace kestrel::engine::psd
