#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::bench {

/// Splits `count` RGBA pixels into four planes of bytes, or of words that hold the bytes times 256.
void unpack(const std::uint8_t* in, std::size_t count, std::uint8_t* const planes[4]);
void unpack(const std::uint8_t* in, std::size_t count, std::uint16_t* const planes[4]);

/// Interleaves `count` RGBA pixels; words are divided by 256 and rounded.
void pack(const std::uint8_t* const planes[4], std::size_t count, std::uint8_t* out);
void pack(const std::uint16_t* const planes[4], std::size_t count, std::uint8_t* out);

}  // namespace kestrel::bench
