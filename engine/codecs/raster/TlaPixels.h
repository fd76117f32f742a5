#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tla {

/// Encodes the rows first to last - 1; see docs/tla.md. The result depends on these rows only.
std::vector<std::uint8_t> packRows(const ConstPixels& pixels, std::int32_t first, std::int32_t last);

/// Decodes into the same rows; returns false unless the data is exactly that many pixels.
bool unpackRows(Bytes data, const Pixels& pixels, std::int32_t first, std::int32_t last);

}  // namespace kestrel::engine::tla
