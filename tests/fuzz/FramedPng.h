#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::fuzz {

/// Builds a PNG file from any bytes. The first ones choose color type, bit depth, interlacing, size, palette,
/// transparency, compression, how the pixels are cut into chunks and which other chunks there are; the rest
/// are the filtered rows, repeated until they fill the picture. Lengths, checksums and zlib streams are
/// right, unless the input asks for a zlib stream of its own bytes.
std::vector<std::uint8_t> framedPng(engine::Bytes input);

}  // namespace kestrel::fuzz
