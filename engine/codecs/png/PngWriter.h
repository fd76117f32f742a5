#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// Adds the pixels to a file, filtered and packed, as chunks of packed pixels: 3 bytes a pixel without alpha,
/// else 4. Bands of rows are packed on several cores at a time; the file does not depend on how many there
/// are.
void addPixels(std::vector<std::uint8_t>& file, const ConstPixels& pixels, bool withAlpha);

}  // namespace kestrel::engine::png
