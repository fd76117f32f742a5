#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "engine/effects/resample/FixedPointTable.h"
#include "engine/effects/resample/RowPairs.h"
#include "engine/effects/rows/FilterTable.h"
#include "engine/pixels/Bitmap.h"

/// Scalar reference of the vector kernels in FixedPointKernels.cpp; FixedPointKernels.h describes the
/// layouts.
namespace kestrel::engine::reference {

inline void premultiplyPairs(const ConstPixels& picture, std::int32_t x, std::int32_t lead,
                             const RowPairs& pairs) {
  for (std::int32_t row = 0; row < 2 * pairs.count; ++row) {
    const std::int32_t y = std::clamp(2 * pairs.first - lead + row, 0, picture.height - 1);
    const std::uint8_t* in = picture.row(y) + std::size_t{4} * static_cast<std::size_t>(x);
    std::int16_t* out = pairs.data + static_cast<std::size_t>(row / 2) * pairs.stride + row % 2;
    for (std::int32_t i = 0; i < pairs.pixels; ++i, in += 4, out += 8) {
      for (int c = 0; c < 4; ++c)
        out[2 * c] = static_cast<std::int16_t>((c < 3 ? in[c] : 255) * in[3] - 32768);
    }
  }
}

inline void verticalPass(const RowPairs& pairs, const FixedPointTable& table, std::int32_t y, float* out) {
  for (std::int32_t row = 0; row < kGroupRows; ++row) {
    const FixedPointTable::Run& run = table.run(std::min(y + row, table.outputs() - 1));
    const std::int16_t* const weights = table.weights(run);
    for (std::int32_t value = 0; value < 4 * pairs.pixels; ++value) {
      std::int32_t sum = 32768 * FixedPointTable::kOne;
      for (std::int32_t i = 0; i < run.count; ++i) {
        const std::int16_t* const pair =
            pairs.data + static_cast<std::size_t>(run.first - pairs.first + i) * pairs.stride +
            2 * static_cast<std::size_t>(value);
        sum += weights[2 * i] * pair[0] + weights[2 * i + 1] * pair[1];
      }
      out[(value / 4 * kGroupRows + row) * 4 + value % 4] = static_cast<float>(sum);
    }
  }
}

inline void horizontalPass(const float* in, std::int32_t origin, const FilterTable& table, std::int32_t first,
                           std::int32_t last, std::uint8_t* const* rows) {
  for (std::int32_t x = first; x < last; ++x) {
    const FilterTable::Run& run = table.run(x);
    const float* const weights = table.weights(run);
    for (std::int32_t row = 0; row < kGroupRows; ++row) {
      float sums[4] = {};
      for (std::int32_t i = 0; i < run.count; ++i) {
        const float* const pixel = in + 4 * (std::ptrdiff_t{kGroupRows} * (run.first + i - origin) + row);
        for (int c = 0; c < 4; ++c) sums[c] += weights[i] * pixel[c];
      }
      constexpr float kLevel = 255.0F * FixedPointTable::kOne;
      std::uint8_t* const out = rows[row] + std::ptrdiff_t{4} * x;
      std::memset(out, 0, 4);
      if (sums[3] < 0.5F * kLevel) continue;
      for (int c = 0; c < 3; ++c) {
        out[c] = static_cast<std::uint8_t>(std::lrint(std::clamp(255 / sums[3] * sums[c], 0.0F, 255.0F)));
      }
      out[3] = static_cast<std::uint8_t>(std::lrint(std::min(sums[3] / kLevel, 255.0F)));
    }
  }
}

}  // namespace kestrel::engine::reference
