#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::bench {

/// Reads `bytes` of one buffer, or of two, and writes as many to another, past the caches: what no operation
/// that changes pixels one by one can do without. The buffers begin at multiples of 64 bytes and hold a
/// multiple of 64.
void streamingPass(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out);
void streamingPass(const std::uint8_t* first, const std::uint8_t* second, std::size_t bytes,
                   std::uint8_t* out);

}  // namespace kestrel::bench
