#include "PhotoshopResources.h"

#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"

// A block is: "8BIM", number (2), name (1 + n, padded to even), size (4), content (padded to even);
// big-endian.

namespace kestrel::engine {
namespace {

constexpr std::uint16_t kIptc = 0x0404;

}  // namespace

Bytes findResource(Bytes resources, std::uint16_t number) {
  constexpr std::size_t kSmallestBlock = 12;
  ByteReader reader(resources, ByteOrder::big);
  while (reader.remaining() >= kSmallestBlock) {
    if (reader.u32() != 0x3842494D) break;
    const std::uint16_t found = reader.u16();
    const std::size_t name = reader.u8();
    if (reader.remaining() < name + (name % 2 == 0 ? 1 : 0) + 4) break;
    reader.skip(name + (name % 2 == 0 ? 1 : 0));
    const std::size_t size = reader.u32();
    if (size > reader.remaining()) break;
    const Bytes content = reader.take(size);
    if (found == number) return content;
    // Some programs omit the padding.
    if (size % 2 == 1 && reader.remaining() > 0 && resources[reader.position()] != '8') reader.skip(1);
  }
  return {};
}

std::vector<std::uint8_t> iptcOfResources(Bytes resources) {
  const Bytes iptc = findResource(resources, kIptc);
  return {iptc.begin(), iptc.end()};
}

std::vector<std::uint8_t> resourcesOfIptc(Bytes iptc) {
  ByteWriter writer(ByteOrder::big);
  writer.text("8BIM");
  writer.u16(kIptc);
  writer.u16(0);
  writer.u32(iptc.size());
  writer.bytes(iptc);
  if (iptc.size() % 2 == 1) writer.u8(0);
  return writer.finish();
}

}  // namespace kestrel::engine
