#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// Appends the pixels as IDAT chunks, filtered and compressed: RGB, or RGBA with `withAlpha`. Bands of rows
/// are compressed on several cores; the result does not depend on their number.
void addPixels(std::vector<std::uint8_t>& file, const ConstPixels& pixels, bool withAlpha);

}  // namespace kestrel::engine::png
