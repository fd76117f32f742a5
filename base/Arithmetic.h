#pragma once

#include <cstdint>
#include <limits>

#include "RuntimeError.h"

namespace kestrel {

/// The sum as a 32-bit integer; raises RuntimeError 6 beyond its range.
inline std::int32_t CheckedAdd(std::int32_t left, std::int32_t right) {
  const std::int64_t sum = std::int64_t{left} + right;
  if (sum < std::numeric_limits<std::int32_t>::min() || sum > std::numeric_limits<std::int32_t>::max()) {
    throw RuntimeError(err::kOverflow, "Overflow");
  }
  return static_cast<std::int32_t>(sum);
}

/// The negated value; raises RuntimeError 6 for the smallest integer, whose negative does not exist.
inline std::int32_t CheckedNegate(std::int32_t value) {
  if (value == std::numeric_limits<std::int32_t>::min()) throw RuntimeError(err::kOverflow, "Overflow");
  return -value;
}

}  // namespace kestrel
