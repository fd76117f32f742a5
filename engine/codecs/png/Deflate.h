#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "DeflateBlock.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// Fast Deflate compressor for filtered picture rows. It checks a single match candidate per position, skips
/// positions where matches are rare, and ignores short matches, which in photographs cost more bits than
/// literals.
///
/// Parts of a stream may be compressed independently, each with an object of its own, and concatenated.
class Deflate {
 public:
  Deflate();

  /// Compresses `data` to Deflate blocks (RFC 1951), except its first `history` bytes: these precede it in
  /// the stream and may be referenced by matches. The last part ends the stream; the others end at a byte
  /// boundary. `data` must be smaller than 2^31 bytes.
  std::vector<std::uint8_t> pack(Bytes data, std::size_t history, bool last);

 private:
  std::size_t findMatches(std::size_t from);
  std::size_t addMatches(std::size_t literals, std::size_t length, std::size_t distance);
  void insertHash(std::size_t position);

  Bytes data_;
  std::vector<std::uint32_t> lastPosition_;  ///< last position of each hash
  std::vector<DeflateMatch> matches_;        ///< matches of the current block
};

}  // namespace kestrel::engine
