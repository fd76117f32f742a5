#pragma once

#include <cstdint>
#include <string>

#include "base/RuntimeError.h"

/// The errors of trees, the same on all platforms.
namespace kestrel::tree_errors {

inline constexpr std::int32_t kNoSuchIndex = 35600;
inline constexpr std::int32_t kNoSuchKey = 35601;
inline constexpr std::int32_t kKeyInUse = 35602;

/// Raises RuntimeError 35600 unless the index is from 1 to the count. `what` is a "node" or a "picture".
inline void requireIndex(std::int32_t index, std::int32_t count, const char* what) {
  if (index >= 1 && index <= count) return;
  throw RuntimeError(kNoSuchIndex, std::string("There is no ") + what + " " + std::to_string(index) + ".");
}

[[noreturn]] inline void refuseMissingKey(const std::string& key) {
  throw RuntimeError(kNoSuchKey, "There is no node \"" + key + "\".");
}

[[noreturn]] inline void refuseKeyInUse(const std::string& key) {
  throw RuntimeError(kKeyInUse, "There is a node \"" + key + "\" already.");
}

/// Raises RuntimeError 380 unless the value of a property is from 0 to the largest one.
inline void requireUpTo(std::int32_t largest, std::int32_t value) {
  if (value < 0 || value > largest) throw RuntimeError(err::kInvalidPropertyValue, "Invalid property value");
}

}  // namespace kestrel::tree_errors
