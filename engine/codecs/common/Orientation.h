#pragma once

#include <cstdint>

#include "Decoded.h"

namespace kestrel::engine {

/// Rotates and mirrors the picture upright from its EXIF 2.3 orientation: 1 upright, 2 mirrored, 3 rotated by
/// 180 degrees, 4 rotated and mirrored, 5 to 8 with rows and columns exchanged. Other values count as 1.
/// Swaps the resolutions if the sides are exchanged, and records the orientation in `decoded.stored`.
void applyOrientation(Decoded& decoded, std::int32_t orientation);

}  // namespace kestrel::engine
