#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/ByteReader.h"

namespace kestrel::engine::gif {

/// Unpacks a picture's data (the code size, then blocks of up to 255 bytes) to at most `count` palette
/// indices. Fewer come if the data ends or makes no sense before that; never more. Code sizes of 9 to 11,
/// which the format does not know and some programs write all the same, are understood; indices keep their
/// low 8 bits.
std::vector<std::uint8_t> unpackLzw(ByteReader& reader, std::size_t count);

}  // namespace kestrel::engine::gif
