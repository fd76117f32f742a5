#include "StableGuid.h"

#include <cstdint>

#include "base/Numbers.h"

namespace kestrel::docking {

namespace {

/// FNV-1a, 64 bits.
std::uint64_t hash(std::string_view text, std::uint64_t seed) {
  std::uint64_t value = seed;
  for (const char letter : text) value = (value ^ static_cast<unsigned char>(letter)) * 0x100000001B3u;
  return value;
}

void appendHex(std::string& text, std::uint64_t value, int digits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (int i = digits - 1; i >= 0; --i) text += kDigits[value >> (4 * i) & 0xF];
}

}  // namespace

std::string stableGuid(std::string_view kind, std::string_view name) {
  const std::string text = std::string(kind) + '\n' + LowerCase(name);
  const std::uint64_t high = hash(text, 0xCBF29CE484222325u);
  const std::uint64_t low = hash(text, high);
  std::string guid = "{";
  appendHex(guid, high >> 32, 8);
  guid += '-';
  appendHex(guid, high >> 16 & 0xFFFF, 4);
  guid += "-8";  // version 8: custom identifiers (RFC 9562)
  appendHex(guid, high & 0xFFF, 3);
  guid += '-';
  appendHex(guid, (low >> 48 & 0x3FFF) | 0x8000, 4);
  guid += '-';
  appendHex(guid, low & 0xFFFFFFFFFFFF, 12);
  return guid + '}';
}

}  // namespace kestrel::docking
