#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::bench {

/// Takes `count` RGBA pixels apart into four rows, as bytes, or as words that hold the bytes times 256.
void unpack(const std::uint8_t* in, std::size_t count, std::uint8_t* const planes[4]);
void unpack(const std::uint8_t* in, std::size_t count, std::uint16_t* const planes[4]);

/// Puts `count` RGBA pixels together again; words are divided by 256 and rounded.
void pack(const std::uint8_t* const planes[4], std::size_t count, std::uint8_t* out);
void pack(const std::uint16_t* const planes[4], std::size_t count, std::uint8_t* out);

}  // namespace kestrel::bench
