#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// `count` Catmull-Rom samples of a picture along a line, from column u and row v in steps of (du, dv), all
/// 32.32 fixed-point numbers where pixel (0, 0) stands at (0, 0). The sixteen pixels of each sample, from one
/// left of and above the whole part to two right of and below it, must be inside. Makes four floats a sample,
/// weighed by alpha as in FilterRows.h; faster where the picture is known to be `opaque`.
void sampleLine(const ConstPixels& in, bool opaque, std::int64_t u, std::int64_t v, std::int64_t du,
                std::int64_t dv, std::int32_t count, float* out);

}  // namespace kestrel::engine
