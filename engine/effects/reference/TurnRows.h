#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Scalar reference of the vector kernels in QuarterTurn.cpp and RotateRows.cpp.
namespace kestrel::engine::reference {

/// Transposition: row j of the output is column j of the input. The steps are strides in bytes, of either
/// sign.
inline void transpose(const std::uint8_t* in, std::ptrdiff_t inStep, std::int32_t columns, std::int32_t rows,
                      std::uint8_t* out, std::ptrdiff_t outStep) {
  for (std::int32_t j = 0; j < columns; ++j) {
    for (std::int32_t i = 0; i < rows; ++i) {
      std::memcpy(out + j * outStep + std::ptrdiff_t{4} * i, in + i * inStep + std::ptrdiff_t{4} * j, 4);
    }
  }
}

/// Sampling positions are 32.32 fixed-point numbers; the upper bits of the fraction select one of 2^10
/// phases.
inline constexpr int kPhaseBits = 10;

/// The four Catmull-Rom weights of each phase, for the pixels -1, 0, 1 and 2 relative to the position's
/// integer part.
inline const std::array<std::array<float, 4>, std::size_t{1} << kPhaseBits>& cubicWeights() {
  static const auto table = [] {
    std::array<std::array<float, 4>, std::size_t{1} << kPhaseBits> result{};
    for (std::size_t i = 0; i < result.size(); ++i) {
      const double t = (static_cast<double>(i) + 0.5) / static_cast<double>(result.size());
      result[i] = {
          static_cast<float>(((-0.5 * t + 1) * t - 0.5) * t), static_cast<float>((1.5 * t - 2.5) * t * t + 1),
          static_cast<float>(((-1.5 * t + 2) * t + 0.5) * t), static_cast<float>((0.5 * t - 0.5) * t * t)};
    }
    return result;
  }();
  return table;
}

inline std::size_t phaseOf(std::int64_t position) {
  return static_cast<std::size_t>(position >> (32 - kPhaseBits)) & ((1U << kPhaseBits) - 1);
}

inline const float* cubicWeights(std::int64_t position) { return cubicWeights()[phaseOf(position)].data(); }

/// See `engine::sampleLine`.
inline void sampleLine(const float* in, std::size_t stride, std::int64_t u, std::int64_t v, std::int64_t du,
                       std::int64_t dv, std::int32_t count, float* out) {
  for (std::int32_t i = 0; i < count; ++i, u += du, v += dv, out += 4) {
    const float* const across = cubicWeights(u);
    const float* const down = cubicWeights(v);
    const auto step = static_cast<std::ptrdiff_t>(stride);
    const float* const corner = in + ((v >> 32) - 1) * step + 4 * ((u >> 32) - 1);
    std::fill_n(out, 4, 0.0F);
    for (std::ptrdiff_t y = 0; y < 4; ++y) {
      for (std::ptrdiff_t x = 0; x < 4; ++x) {
        for (std::ptrdiff_t c = 0; c < 4; ++c) out[c] += across[x] * down[y] * corner[y * step + 4 * x + c];
      }
    }
  }
}

}  // namespace kestrel::engine::reference
