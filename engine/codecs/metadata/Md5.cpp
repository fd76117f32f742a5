#include "Md5.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kestrel::engine {
namespace {

constexpr std::size_t kBlock = 64;

/// The data, a bit of 1, zeros, and the number of bits as 64 bits, little-endian, up to a whole block
/// (3.1, 3.2).
std::vector<std::uint8_t> padded(Bytes data) {
  constexpr std::size_t kLength = 8;
  const std::uint64_t bits = std::uint64_t{data.size()} * 8;
  std::vector<std::uint8_t> bytes(data.begin(), data.end());
  bytes.push_back(0x80);
  bytes.resize((bytes.size() + kLength + kBlock - 1) / kBlock * kBlock);
  for (std::size_t i = 0; i < kLength; ++i) {
    bytes[bytes.size() - kLength + i] = static_cast<std::uint8_t>(bits >> (8 * i));
  }
  return bytes;
}

/// T of 3.4: 2^32 * |sin(i)|, i from 1 to 64.
std::array<std::uint32_t, 64> makeSines() {
  std::array<std::uint32_t, 64> sines{};
  for (std::size_t i = 0; i < sines.size(); ++i) {
    sines[i] = static_cast<std::uint32_t>(std::abs(std::sin(static_cast<double>(i + 1))) * 4294967296.0);
  }
  return sines;
}

using State = std::array<std::uint32_t, 4>;

/// Mixes a block into the state (3.4).
void addBlock(const std::uint8_t* block, State& state) {
  static const std::array<std::uint32_t, 64> sines = makeSines();
  constexpr int kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
  std::array<std::uint32_t, 16> words{};
  for (std::size_t i = 0; i < kBlock; ++i) words[i / 4] |= std::uint32_t{block[i]} << (8 * (i % 4));
  auto [a, b, c, d] = state;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const std::size_t round = i / 16;
    const std::uint32_t mixed = round == 0   ? (b & c) | (~b & d)
                                : round == 1 ? (b & d) | (c & ~d)
                                : round == 2 ? b ^ c ^ d
                                             : c ^ (b | ~d);
    constexpr std::size_t kFactor[4] = {1, 5, 3, 7}, kOffset[4] = {0, 1, 5, 0};
    const std::uint32_t word = words[(kFactor[round] * i + kOffset[round]) % words.size()];
    const std::uint32_t sum = b + std::rotl(a + mixed + word + sines[i], kShifts[round][i % 4]);
    a = d;
    d = c;
    c = b;
    b = sum;
  }
  state[0] += a;
  state[1] += b;
  state[2] += c;
  state[3] += d;
}

}  // namespace

std::string md5Of(Bytes data) {
  State state{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
  const std::vector<std::uint8_t> bytes = padded(data);
  for (std::size_t at = 0; at < bytes.size(); at += kBlock) addBlock(&bytes[at], state);
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digest;
  for (const std::uint32_t word : state) {
    for (int shift = 0; shift < 32; shift += 8) {
      digest += kDigits[word >> (shift + 4) & 15];
      digest += kDigits[word >> shift & 15];
    }
  }
  return digest;
}

}  // namespace kestrel::engine
