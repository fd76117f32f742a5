#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// A run of literals, then a match: `length` bytes copied from `distance` bytes before.
struct DeflateMatch {
  std::uint32_t literals = 0;
  std::uint16_t length = 0;  ///< kShortestMatch to kLongestMatch, or 0 at the end of the block
  std::uint16_t distance = 0;
};

/// Writer for the blocks of a Deflate stream (RFC 1951).
class DeflateBlocks {
 public:
  static constexpr std::size_t kShortestMatch = 3;
  static constexpr std::size_t kLongestMatch = 258;
  static constexpr std::size_t kFarthestMatch = 32768;

  /// Adds a block that decodes to `data`: with dynamic codes, fixed codes or stored, choosing the shortest.
  /// The last match must have length 0.
  void add(Bytes data, std::span<const DeflateMatch> matches, bool last);

  /// Pads to a byte boundary and returns the stream; unless `last`, it pads with an empty stored block.
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
  std::uint64_t pending_ = 0;  ///< bits of an incomplete byte, the first one lowest
  unsigned pendingBits_ = 0;
};

}  // namespace kestrel::engine
