#pragma once

#include <cstddef>
#include <cstdint>

/// Scalar reference of the vector kernels in GaussianRows.cpp.
namespace kestrel::engine::reference {

inline void halveRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  const std::ptrdiff_t next = channels;
  for (std::int32_t i = 0; i < count; ++i, in += 2 * next) {
    for (std::ptrdiff_t c = 0; c < next; ++c) {
      const float* const p = in + c;
      *out++ = (p[0] + p[4 * next]) / 16 + (p[next] + p[3 * next]) / 4 + p[2 * next] * 0.375F;
    }
  }
}

inline void doubleRow(const float* in, std::int32_t count, std::int32_t channels, float* out) {
  const std::ptrdiff_t next = channels;
  for (std::int32_t i = 0; i < count; i += 2, in += next, out += 2 * next) {
    for (std::ptrdiff_t c = 0; c < next; ++c) {
      const float* const p = in + c;
      out[c] = (p[0] + p[2 * next]) / 8 + p[next] * 0.75F;
      out[c + next] = (p[next] + p[2 * next]) / 2;
    }
  }
}

inline void smoothRow(const float* in, const float* weights, std::int32_t taps, std::int32_t count,
                      std::int32_t channels, float* out) {
  for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{count} * channels; ++i) {
    float sum = 0;
    for (std::int32_t k = 0; k < taps; ++k) sum += weights[k] * in[i + std::ptrdiff_t{k} * channels];
    out[i] = sum;
  }
}

inline void sumRowsTwice(const float* const* in, const float* firstWeights, const float* secondWeights,
                         std::int32_t rows, std::size_t values, float* first, float* second) {
  for (std::size_t i = 0; i < values; ++i) {
    first[i] = second[i] = 0;
    for (std::int32_t row = 0; row < rows; ++row) {
      first[i] += firstWeights[row] * in[row][i];
      second[i] += secondWeights[row] * in[row][i];
    }
  }
}

}  // namespace kestrel::engine::reference
