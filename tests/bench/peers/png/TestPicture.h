#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// What a camera gives: soft shapes and textures of all sizes in related colors, with hard edges between
/// some of them and a little noise over all. With `alpha` it fades out towards the borders; else it is
/// opaque.
engine::Bitmap photograph(std::int32_t width, std::int32_t height, bool alpha);

/// What a screen shows: panels in few colors, lines, text, a shaded bar here and there. With `alpha` there
/// is nothing between the panels, and their corners are soft; else it is opaque.
engine::Bitmap graphics(std::int32_t width, std::int32_t height, bool alpha);

}  // namespace kestrel::bench
