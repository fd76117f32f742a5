#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::fuzz {

/// The RGBA rows that libpng alone decodes, without gaps; nullopt on a decode error in the chunks up to the
/// last row, and for pictures of more than 4 megapixels.
std::optional<std::vector<std::uint8_t>> decodeByLibpng(engine::Bytes file);

}  // namespace kestrel::fuzz
