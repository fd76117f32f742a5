#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::bench {

/// Reads `bytes` of one buffer, or of two, and writes as many to another, past the caches: what no operation
/// that changes pixels one by one can do without. `bytes` is a multiple of 64; so is where the writing, and
/// of two the reading, begins.
void streamingPass(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out);
void streamingPass(const std::uint8_t* first, const std::uint8_t* second, std::size_t bytes,
                   std::uint8_t* out);

/// Waits until all that was written has left; ends a pass, of however many parts.
void finishPass();

}  // namespace kestrel::bench
