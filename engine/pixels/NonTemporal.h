#pragma once

#include <cstddef>
#include <cstdint>

/// Writing past the caches. A result that is too large for them would only push out what they hold, and each
/// of its lines would be read before it is written: whoever writes whole lines saves a third of the way to
/// memory.
namespace kestrel::engine {

/// Whether so many bytes, written at once, are better written past the caches.
constexpr bool exceedsCaches(std::size_t bytes) { return bytes >= std::size_t{16} << 20; }

/// Copies like memcpy, but past the caches; `out` is a multiple of 64.
void copyNonTemporal(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out);

/// Lets other threads see what this one has written past the caches; due before it says that it is done.
void storeFence();

}  // namespace kestrel::engine
