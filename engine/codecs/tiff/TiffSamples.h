#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::engine::tiff {

/// How one sample is stored.
struct SampleFormat {
  enum class Kind { unsignedNumber, signedNumber, real } kind = Kind::unsignedNumber;
  std::uint32_t bits = 8;  ///< 1 to 16 or 32 for numbers, 16, 32 or 64 for reals
  bool raw = false;        ///< true keeps the low 8 bits of the number, for palette indices
};

/// True if `unpackSamples` can read this.
bool canUnpack(const SampleFormat& format);

/// Turns `count` packed samples that begin at a byte into 8-bit ones: the whole range of numbers, and 0 to 1
/// of reals, become 0 to 255. Wide samples are in the machine's byte order, others run from the high bit
/// down.
void unpackSamples(const std::uint8_t* packed, std::size_t count, const SampleFormat& format,
                   std::uint8_t* samples);

}  // namespace kestrel::engine::tiff
