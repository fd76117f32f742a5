#pragma once

#include <cstdint>

namespace kestrel {

/// The largest picture that an engine makes, on a machine whose memory it does not exceed. Members that make
/// a larger one raise RuntimeError 7.
inline constexpr std::int32_t kLongestSide = 1'000'000;
inline constexpr std::int64_t kMostPixels = 2'000'000'000;

}  // namespace kestrel
