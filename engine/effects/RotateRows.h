#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::engine {

/// `count` Catmull-Rom samples along a line through pixels of four floats, weighed by alpha as in
/// FloatRows.h, whose rows are `stride` floats apart: from column u and row v in steps of (du, dv),
/// all 32.32 fixed-point numbers where the first pixel of `in` stands at (0, 0). The sixteen pixels of each
/// sample, from one left of and above the whole part to two right of and below it, must be there. Makes four
/// floats a sample.
void sampleLine(const float* in, std::size_t stride, std::int64_t u, std::int64_t v, std::int64_t du,
                std::int64_t dv, std::int32_t count, float* out);

}  // namespace kestrel::engine
