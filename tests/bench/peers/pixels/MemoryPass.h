#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::bench {

/// Reads `bytes` of one or two buffers and writes as many to another with non-temporal stores: the lower
/// bound of a pixel-wise operation. `bytes` is a multiple of 64; `out`, and two inputs, are aligned to 64
/// bytes.
void nonTemporalPass(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out);
void nonTemporalPass(const std::uint8_t* first, const std::uint8_t* second, std::size_t bytes,
                     std::uint8_t* out);

/// Store fence. Call after the last part of a pass.
void storeFence();

}  // namespace kestrel::bench
