#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::engine::tiff {

/// Storage format of a sample.
struct SampleFormat {
  enum class Kind { unsignedNumber, signedNumber, real } kind = Kind::unsignedNumber;
  std::uint32_t bits = 8;  ///< 1 to 16 or 32 for integers; 16, 32 or 64 for floating point
  bool raw = false;        ///< true keeps the low 8 bits, for palette indices
};

/// Whether `unpackSamples` supports this format.
bool canUnpack(const SampleFormat& format);

/// Converts `count` packed samples, beginning at a byte boundary, to 8 bits: the full range of integers, or 0
/// to 1 of floating point, becomes 0 to 255. Samples of 16 bits and more are in native byte order; others are
/// packed from the most significant bit down.
void unpackSamples(const std::uint8_t* packed, std::size_t count, const SampleFormat& format,
                   std::uint8_t* samples);

}  // namespace kestrel::engine::tiff
