#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/pixels/Memory.h"

namespace kestrel::engine {

/// Intermediate image of floats, with the row slack that FloatRows.h requires; initialized to 0. Rows are
/// aligned to 64 bytes. Threads may write different rows at the same time.
class FloatImage {
 public:
  /// Raises RuntimeError 7 when out of memory.
  FloatImage(std::size_t valuesPerRow, std::int32_t rows);

  float* row(std::int32_t y) { return values() + static_cast<std::size_t>(y) * stride_; }
  const float* row(std::int32_t y) const { return values() + static_cast<std::size_t>(y) * stride_; }

 private:
  float* values() const { return reinterpret_cast<float*>(memory_.data()); }

  std::size_t stride_;
  Memory memory_;
};

}  // namespace kestrel::engine
