#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "engine/effects/rows/FilterTable.h"

/// Scalar reference of the vector kernels in FloatRows.cpp; FloatRows.h describes the values.
namespace kestrel::engine::reference {

inline void premultiplyRow(const std::uint8_t* in, std::int32_t count, float* out) {
  for (std::int32_t x = 0; x < count; ++x, in += 4, out += 4) {
    const float alpha = in[3];
    for (int c = 0; c < 3; ++c) out[c] = static_cast<float>(in[c]) * alpha;
    out[3] = alpha;
  }
}

inline void sumPictureRows(const std::uint8_t* in, std::size_t stride, const float* weights,
                           std::int32_t rows, std::int32_t count, float* out) {
  std::fill_n(out, std::size_t{4} * static_cast<std::size_t>(count), 0.0F);
  for (std::int32_t row = 0; row < rows; ++row, in += stride) {
    for (std::int32_t x = 0; x < count; ++x) {
      const std::uint8_t* const p = in + std::size_t{4} * static_cast<std::size_t>(x);
      float* const o = out + std::size_t{4} * static_cast<std::size_t>(x);
      const float alpha = p[3];
      for (int c = 0; c < 3; ++c) o[c] += weights[row] * (static_cast<float>(p[c]) * alpha);
      o[3] += weights[row] * alpha;
    }
  }
}

inline void sumAlphaRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                         std::int32_t count, float* out) {
  std::fill_n(out, count, 0.0F);
  for (std::int32_t row = 0; row < rows; ++row, in += stride) {
    for (std::int32_t x = 0; x < count; ++x) {
      out[x] += weights[row] * static_cast<float>(in[std::size_t{4} * static_cast<std::size_t>(x) + 3]);
    }
  }
}

inline void sumFloatRows(const float* const* in, const float* weights, std::int32_t rows, std::size_t values,
                         float* out) {
  std::fill_n(out, values, 0.0F);
  for (std::int32_t row = 0; row < rows; ++row) {
    for (std::size_t i = 0; i < values; ++i) out[i] += weights[row] * in[row][i];
  }
}

inline void filterColumns(const float* in, const FilterTable& table, float* out) {
  for (std::int32_t x = 0; x < table.outputs(); ++x) {
    const FilterTable::Run& run = table.run(x);
    const float* const weights = table.weights(run);
    for (int c = 0; c < 4; ++c) {
      float sum = 0;
      for (std::int32_t i = 0; i < run.count; ++i) sum += weights[i] * in[(run.first + i) * 4 + c];
      *out++ = sum;
    }
  }
}

inline void storeStraightRow(const float* in, std::int32_t count, std::uint8_t* out) {
  for (std::int32_t x = 0; x < count; ++x, in += 4, out += 4) {
    if (in[3] < 0.5F) {
      std::memset(out, 0, 4);
      continue;
    }
    const float factor = 1 / in[3];
    for (int c = 0; c < 3; ++c) {
      out[c] = static_cast<std::uint8_t>(std::lrint(std::clamp(in[c] * factor, 0.0F, 255.0F)));
    }
    out[3] = static_cast<std::uint8_t>(std::lrint(std::min(in[3], 255.0F)));
  }
}

inline void tintRow(const float* in, std::int32_t count, std::uint32_t color, float opacity,
                    std::uint8_t* out) {
  for (std::int32_t x = 0; x < count; ++x) {
    const long alpha = std::lrint(std::clamp(in[x] * opacity, 0.0F, 255.0F));
    const std::uint32_t value = (color & 0x00FFFFFF) | static_cast<std::uint32_t>(alpha) << 24;
    std::memcpy(out + std::size_t{4} * static_cast<std::size_t>(x), &value, sizeof value);
  }
}

}  // namespace kestrel::engine::reference
