#pragma once

#include <cstdint>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// Divides the colors of partly transparent pixels by their alpha.
void unpremultiply(Bitmap& bitmap);

/// Sets the notice of a damaged file; raises RuntimeError 481 if `goodRows` is 0.
void reportMissingRows(Decoded& decoded, std::int64_t goodRows);

}  // namespace kestrel::engine::tiff
