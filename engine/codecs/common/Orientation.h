#pragma once

#include <cstdint>

#include "Decoded.h"

namespace kestrel::engine {

/// Turns the picture upright that a camera stored in `orientation`: 1 upright, 2 mirrored, 3 upside down,
/// 4 upside down and mirrored, 5 to 8 with rows and columns exchanged, as EXIF 2.3 counts them. Other values
/// are 1. Also exchanges the resolutions with the sides, and tells the orientation in `decoded.stored`.
void applyOrientation(Decoded& decoded, std::int32_t orientation);

}  // namespace kestrel::engine
