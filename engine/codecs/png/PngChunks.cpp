#include "PngChunks.h"

#include <isa-l/crc.h>

#include <algorithm>
#include <array>

#include "engine/codecs/common/ByteReader.h"

namespace kestrel::engine::png {
namespace {

constexpr std::size_t kSignatureSize = 8;
constexpr std::size_t kNameSize = 4;
constexpr std::array<std::string_view, 4> kTexts{"tEXt", "zTXt", "iTXt", "eXIf"};

/// CRC of a chunk's type and content.
std::uint32_t checksum(Bytes data) { return crc32_gzip_refl(0, data.data(), data.size()); }

}  // namespace

std::optional<Chunks> findChunks(Bytes file) {
  Chunks chunks;
  ByteReader reader(file, ByteOrder::big);
  reader.skip(std::min(kSignatureSize, reader.remaining()));
  std::size_t packedEnd = 0;
  while (reader.remaining() >= kChunkOverhead) {
    const std::size_t begin = reader.position();
    const std::size_t size = reader.u32();
    if (size > reader.remaining() - 2 * kNameSize) return std::nullopt;
    const Bytes named = reader.take(kNameSize + size);
    if (reader.u32() != checksum(named)) return std::nullopt;
    const std::string_view name(reinterpret_cast<const char*>(named.data()), kNameSize);
    if (name == "IDAT") {
      if (chunks.packed.empty()) chunks.before = file.first(begin);
      if (begin != packedEnd && !chunks.packed.empty()) return std::nullopt;
      chunks.packed.push_back(named.subspan(kNameSize));
      packedEnd = reader.position();
    } else if (name == "IEND") {
      if (chunks.packed.empty()) return std::nullopt;
      return chunks;
    } else if (!chunks.packed.empty() && std::ranges::find(kTexts, name) != kTexts.end()) {
      chunks.textsAfter.push_back(file.subspan(begin, reader.position() - begin));
    }
  }
  return std::nullopt;
}

void addChunk(std::vector<std::uint8_t>& file, std::string_view name, Bytes content) {
  const auto addNumber = [&](std::size_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) file.push_back(static_cast<std::uint8_t>(value >> shift));
  };
  addNumber(content.size());
  const std::size_t begin = file.size();
  file.insert(file.end(), name.begin(), name.end());
  file.insert(file.end(), content.begin(), content.end());
  addNumber(checksum(Bytes(file).subspan(begin)));
}

}  // namespace kestrel::engine::png
