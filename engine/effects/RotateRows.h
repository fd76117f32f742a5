#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::engine {

/// Takes `count` Catmull-Rom samples along a line through premultiplied pixels (four floats each, see
/// FloatRows.h) with a stride of `stride` floats. Sample i is at column u + i * du and row v + i * dv, 32.32
/// fixed-point numbers relative to the first pixel of `in`. All sixteen taps, from one pixel before to two
/// after the integer part on both axes, must be readable. Writes four floats per sample.
void sampleLine(const float* in, std::size_t stride, std::int64_t u, std::int64_t v, std::int64_t du,
                std::int64_t dv, std::int32_t count, float* out);

}  // namespace kestrel::engine
