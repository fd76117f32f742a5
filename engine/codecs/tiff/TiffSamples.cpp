#include "TiffSamples.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>

namespace kestrel::engine::tiff {
namespace {

using Kind = SampleFormat::Kind;

template <typename T>
T load(const std::uint8_t* packed, std::size_t index) {
  T value;
  std::memcpy(&value, packed + index * sizeof(T), sizeof(T));
  return value;
}

std::uint8_t fromReal(double value) {
  if (!(value > 0)) return 0;
  return static_cast<std::uint8_t>(std::lround(std::min(value, 1.0) * 255));
}

/// IEEE 754 half precision: sign, 5 bits of exponent, 10 of mantissa.
double fromHalf(std::uint16_t half) {
  const int exponent = half >> 10 & 31;
  const int mantissa = half & 1023;
  const double size = exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(mantissa + 1024, exponent - 25);
  return (half & 0x8000) != 0 ? -size : size;
}

std::uint8_t scale(std::uint32_t value, std::uint32_t bits) {
  const std::uint32_t largest = (std::uint32_t{1} << bits) - 1;
  return static_cast<std::uint8_t>((value * 255 + largest / 2) / largest);
}

/// Integers of any width up to 16 bits, packed without gaps.
void unpackBits(const std::uint8_t* packed, std::size_t count, const SampleFormat& format,
                std::uint8_t* samples) {
  const std::uint32_t bits = format.bits;
  assert(bits >= 1 && bits <= 16);  // as canUnpack demands
  const std::uint32_t mask = (std::uint32_t{1} << bits) - 1;
  const std::uint32_t flip = format.kind == Kind::signedNumber ? std::uint32_t{1} << (bits - 1) : 0;
  std::uint32_t window = 0, held = 0;
  for (std::size_t i = 0; i < count; ++i) {
    while (held < bits) {
      window = window << 8 | *packed++;
      held += 8;
    }
    held -= bits;
    const std::uint32_t value = (window >> held & mask) ^ flip;
    samples[i] = format.raw ? static_cast<std::uint8_t>(value) : scale(value, bits);
  }
}

}  // namespace

bool canUnpack(const SampleFormat& format) {
  if (format.kind == Kind::real) return format.bits == 16 || format.bits == 32 || format.bits == 64;
  return (format.bits >= 1 && format.bits <= 16) || format.bits == 32;
}

void unpackSamples(const std::uint8_t* packed, std::size_t count, const SampleFormat& format,
                   std::uint8_t* samples) {
  if (format.kind == Kind::real) {
    for (std::size_t i = 0; i < count; ++i) {
      samples[i] = fromReal(format.bits == 16   ? fromHalf(load<std::uint16_t>(packed, i))
                            : format.bits == 32 ? static_cast<double>(load<float>(packed, i))
                                                : load<double>(packed, i));
    }
  } else if (format.bits == 8 && format.kind == Kind::unsignedNumber) {
    std::memcpy(samples, packed, count);
  } else if (format.bits == 16) {
    const std::uint32_t flip = format.kind == Kind::signedNumber ? 0x8000 : 0;
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint32_t value = load<std::uint16_t>(packed, i) ^ flip;
      samples[i] = format.raw ? static_cast<std::uint8_t>(value) : scale(value, 16);
    }
  } else if (format.bits == 32) {
    const std::uint32_t flip = format.kind == Kind::signedNumber ? 0x80000000 : 0;
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint32_t value = load<std::uint32_t>(packed, i) ^ flip;
      samples[i] = static_cast<std::uint8_t>(format.raw ? value : value >> 24);
    }
  } else {
    unpackBits(packed, count, format, samples);
  }
}

}  // namespace kestrel::engine::tiff
