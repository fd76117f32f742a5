#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "DeflateBlock.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// Packs the filtered rows of a picture, for speed: it looks for what repeats at one place only, ever less
/// often while nothing does, and takes no short matches, which in a photograph cost more than the bytes
/// alone.
///
/// Parts of a stream may be packed independently, by one of these each, and then stand one after the other.
class Deflate {
 public:
  Deflate();

  /// The deflate blocks (RFC 1951) of `data` without its first `history` bytes, which stand before it in the
  /// stream and may be referred to. The last part ends the stream; the others end at a whole byte. `data` has
  /// less than 2^31 bytes.
  std::vector<std::uint8_t> pack(Bytes data, std::size_t history, bool last);

 private:
  std::size_t findMatches(std::size_t from);
  std::size_t addMatches(std::size_t literals, std::size_t length, std::size_t distance);
  void remember(std::size_t position);

  Bytes data_;
  std::vector<std::uint32_t> seen_;    ///< where bytes of this hash stood last
  std::vector<DeflateMatch> matches_;  ///< of the block at hand
};

}  // namespace kestrel::engine
