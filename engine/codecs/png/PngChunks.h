#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// What a chunk has besides its content: length, name, checksum.
inline constexpr std::size_t kChunkFrame = 12;

/// The chunks of a file, looked at without any understanding of what is in them but the packed pixels.
struct Chunks {
  /// All up to the first chunk of packed pixels, the file's signature included.
  Bytes before;
  /// The packed pixels, in as many pieces as the file has chunks of them.
  std::vector<Bytes> packed;
  /// The chunks with texts or camera data that come after the packed pixels, as they stand in the file.
  std::vector<Bytes> textsAfter;
};

/// The chunks of a file that is whole: all are there and as their checksums say, those with packed pixels
/// stand together, and the end is marked. Nothing if anything is amiss; the file has its signature.
std::optional<Chunks> findChunks(Bytes file);

/// Adds a chunk with its length and checksum; the name has four letters. `content` has less than 2^31 bytes.
void addChunk(std::vector<std::uint8_t>& file, std::string_view name, Bytes content);

}  // namespace kestrel::engine::png
