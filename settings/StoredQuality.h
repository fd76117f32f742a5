#pragma once

#include <cstdint>

namespace kestrel {

/// The value of `Options::JPEGQuality`, for callers that keep the quality they have where it is damaged.
/// Raises RuntimeError where the key store can't be read (57) and where the value is not a number (13);
/// reports nothing itself.
std::int32_t StoredJPEGQuality();

}  // namespace kestrel
