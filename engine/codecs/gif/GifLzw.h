#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/ByteReader.h"

namespace kestrel::engine::gif {

/// Decodes LZW image data (the minimum code size, then sub-blocks of up to 255 bytes) to at most `count`
/// palette indices; fewer if the data ends or is invalid before that. Code sizes of 9 to 11, which the format
/// does not allow but some programs write, are accepted; indices are truncated to 8 bits.
std::vector<std::uint8_t> unpackLzw(ByteReader& reader, std::size_t count);

}  // namespace kestrel::engine::gif
