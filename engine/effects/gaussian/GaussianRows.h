#pragma once

#include <cstddef>
#include <cstdint>

/// The inner loops of a Gaussian pyramid. Rows are floats, `channels` (1 or 4) to a pixel, with
/// the slack that FloatRows.h wants behind both what is read and what is written.
namespace kestrel::engine {

/// Every other pixel, smoothed: pixel i of `count` is made of 2i to 2i + 4 of `in` by (1, 4, 6, 4, 1) / 16,
/// whose variance is 1.
void halveRow(const float* in, std::int32_t count, std::int32_t channels, float* out);

/// The same kernel, times 2, between the pixels of a row: pixel 2i is made of i to i + 2 of `in` by
/// (1, 6, 1) / 8, pixel 2i + 1 of i + 1 and i + 2 by (1, 1) / 2. `count`, of what is made, is even.
void doubleRow(const float* in, std::int32_t count, std::int32_t channels, float* out);

/// Pixel i of `count` is made of i to i + taps - 1 of `in`.
void smoothRow(const float* in, const float* weights, std::int32_t taps, std::int32_t count,
               std::int32_t channels, float* out);

/// Two weighted sums of the same `rows` rows, so that each is read once for both.
void sumRowsTwice(const float* const* in, const float* firstWeights, const float* secondWeights,
                  std::int32_t rows, std::size_t values, float* first, float* second);

}  // namespace kestrel::engine
