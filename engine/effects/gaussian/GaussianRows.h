#pragma once

#include <cstddef>
#include <cstdint>

/// Row kernels of the Gaussian pyramid. Rows hold `channels` (1 or 4) floats per pixel; input and output need
/// the slack of FloatRows.h.
namespace kestrel::engine {

/// Halves a row: output pixel i of `count` has the taps 2i to 2i + 4 of `in` with weights (1, 4, 6, 4, 1) /
/// 16, whose variance is 1.
void halveRow(const float* in, std::int32_t count, std::int32_t channels, float* out);

/// Doubles a row with the same kernel, times 2: output pixel 2i has the taps i to i + 2 with weights (1, 6,
/// 1) / 8, pixel 2i + 1 the taps i + 1 and i + 2 with weights (1, 1) / 2. `count` is the number of output
/// pixels and must be even.
void doubleRow(const float* in, std::int32_t count, std::int32_t channels, float* out);

/// Convolves a row: output pixel i of `count` has the taps i to i + taps - 1 of `in`.
void smoothRow(const float* in, const float* weights, std::int32_t taps, std::int32_t count,
               std::int32_t channels, float* out);

/// Vertical pass for two output rows from the same `rows` input rows, so that each is read once.
void sumRowsTwice(const float* const* in, const float* firstWeights, const float* secondWeights,
                  std::int32_t rows, std::size_t values, float* first, float* second);

}  // namespace kestrel::engine
