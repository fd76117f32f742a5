#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tla {

/// Packs the rows first to last - 1; see docs/tla.md. What it gives depends on these rows alone.
std::vector<std::uint8_t> packRows(const ConstPixels& pixels, std::int32_t first, std::int32_t last);

/// Unpacks into the same rows; false if the data is not exactly that many pixels.
bool unpackRows(Bytes data, const Pixels& pixels, std::int32_t first, std::int32_t last);

}  // namespace kestrel::engine::tla
