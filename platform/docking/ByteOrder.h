#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

namespace kestrel::docking {

/// The little-endian number at the start of `bytes`, which must hold at least its size.
template <std::unsigned_integral T>
T loadLittle(std::span<const std::byte> bytes) {
  T value = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i)
    value = static_cast<T>(value | static_cast<T>(bytes[i]) << (8 * i));
  return value;
}

/// Appends the number to `bytes`, little-endian.
template <std::unsigned_integral T>
void appendLittle(std::vector<std::byte>& bytes, T value) {
  for (std::size_t i = 0; i < sizeof(T); ++i)
    bytes.push_back(static_cast<std::byte>(value >> (8 * i) & 0xFF));
}

inline void append16(std::vector<std::byte>& bytes, std::int32_t value) {
  appendLittle(bytes, static_cast<std::uint16_t>(value));
}

inline void append32(std::vector<std::byte>& bytes, std::int32_t value) {
  appendLittle(bytes, static_cast<std::uint32_t>(value));
}

}  // namespace kestrel::docking
