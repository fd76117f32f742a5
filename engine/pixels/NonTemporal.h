#pragma once

#include <cstddef>
#include <cstdint>

/// Non-temporal stores, which bypass the caches. A result larger than the caches would only evict their
/// contents, and each of its cache lines would be read before it is written: non-temporal stores of whole
/// cache lines save a third of the memory traffic.
namespace kestrel::engine {

/// Whether a result of this size is better written with non-temporal stores.
constexpr bool exceedsCaches(std::size_t bytes) { return bytes >= std::size_t{16} << 20; }

/// As memcpy, with non-temporal stores; `out` must be aligned to 64 bytes. Needs a `storeFence` afterwards.
void copyNonTemporal(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out);

/// Store fence. Call after the last non-temporal store, before reporting a band as finished.
void storeFence();

}  // namespace kestrel::engine
