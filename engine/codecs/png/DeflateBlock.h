#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// So many bytes as they are, then `length` bytes as they stand `distance` before.
struct DeflateMatch {
  std::uint32_t literals = 0;
  std::uint16_t length = 0;  ///< kShortestMatch to kLongestMatch, or 0 where the block ends
  std::uint16_t distance = 0;
};

/// Puts the blocks of a deflate stream (RFC 1951) one after the other.
class DeflateBlocks {
 public:
  static constexpr std::size_t kShortestMatch = 3;
  static constexpr std::size_t kLongestMatch = 258;
  static constexpr std::size_t kFarthestMatch = 32768;

  /// Adds a block that makes `data`: coded by how often its symbols occur, by the code that needs no table,
  /// or stored, whichever is the shortest. The matches end with one of length 0.
  void add(Bytes data, std::span<const DeflateMatch> matches, bool last);

  /// Fills up to a whole byte, by an empty block unless the last one has been written.
  std::vector<std::uint8_t> finish(bool last);

 private:
  struct Codes;

  void addCoded(const Codes& codes, Bytes data, std::span<const DeflateMatch> matches);
  void addStored(Bytes data, bool last);
  void putStored(Bytes data, bool last);
  void put(std::uint32_t value, unsigned bits);
  void makeRoom(std::size_t bits);

  std::vector<std::uint8_t> bytes_;
  std::size_t used_ = 0;
  std::uint64_t pending_ = 0;  ///< bits that do not fill a byte yet, the first lowest
  unsigned pendingBits_ = 0;
};

}  // namespace kestrel::engine
