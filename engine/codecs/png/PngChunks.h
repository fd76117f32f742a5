#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// Bytes of a chunk without its content: length, type, CRC.
inline constexpr std::size_t kChunkOverhead = 12;

/// The chunks of a file, divided at the compressed pixels.
struct Chunks {
  /// Everything before the first IDAT chunk, the signature included.
  Bytes before;
  /// The contents of the IDAT chunks.
  std::vector<Bytes> packed;
  /// Text and EXIF chunks after the IDAT chunks, complete with length and CRC.
  std::vector<Bytes> textsAfter;
};

/// Finds the chunks of a valid file: complete, with correct CRCs, consecutive IDAT chunks and IEND. Nothing
/// for other files. The signature is not checked.
std::optional<Chunks> findChunks(Bytes file);

/// Appends a chunk with length and CRC. `name` has four letters; `content` must be smaller than 2^31 bytes.
void addChunk(std::vector<std::uint8_t>& file, std::string_view name, Bytes content);

}  // namespace kestrel::engine::png
