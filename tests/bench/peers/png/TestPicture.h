#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// Like a photograph: soft shapes and textures of all sizes in related colors, some hard edges, a little
/// noise. With `alpha` it fades out towards the borders; otherwise it is opaque.
engine::Bitmap photograph(std::int32_t width, std::int32_t height, bool alpha);

/// Like a screenshot: panels in few colors, lines, text, some gradients. With `alpha` the gaps between the
/// panels are transparent and their corners soft; otherwise it is opaque.
engine::Bitmap graphics(std::int32_t width, std::int32_t height, bool alpha);

}  // namespace kestrel::bench
