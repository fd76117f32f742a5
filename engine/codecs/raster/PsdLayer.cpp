#include "PsdLayer.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kestrel::engine::psd {
namespace {

/// Channel numbers of a layer in the order of a pixel's bytes.
constexpr std::array<std::int16_t, 4> kChannels{0, 1, 2, -1};
constexpr std::string_view kNormal = "8BIMnorm";
constexpr std::size_t kOpaque = 255;

/// Channel entry of a layer record.
struct Entry {
  std::int16_t channel = 0;
  std::size_t size = 0;
};
using Entries = std::array<Entry, kChannels.size()>;

/// A length of 4 bytes, in large files of 8. Lengths beyond 32 bits are clamped.
std::size_t readSize(ByteReader& reader, bool isLong) {
  const std::uint32_t high = isLong ? reader.u32() : 0, low = reader.u32();
  return high != 0 ? UINT32_MAX : low;
}

/// Reads a layer record; nothing unless it is a plain layer of the picture's size.
std::optional<Entries> readRecord(ByteReader& reader, const ChannelForm& form) {
  const std::int32_t top = reader.i32(), left = reader.i32(), bottom = reader.i32(), right = reader.i32();
  if (top != 0 || left != 0 || bottom != form.height || right != form.width) return std::nullopt;
  if (reader.u16() != kChannels.size()) return std::nullopt;
  Entries entries;
  for (Entry& entry : entries) {
    entry.channel = reader.i16();
    entry.size = reader.u32();
  }
  if (!std::ranges::is_permutation(entries, kChannels, {}, &Entry::channel)) return std::nullopt;
  const Bytes mode = reader.take(kNormal.size());
  const bool opaque = reader.u8() == kOpaque, clipped = reader.u8() != 0;
  constexpr std::uint8_t kHidden = 2;
  const bool hidden = (reader.u8() & kHidden) != 0;
  reader.skip(1);
  if (!std::ranges::equal(mode, kNormal) || !opaque || clipped || hidden) return std::nullopt;

  // Mask, blending ranges, name, then additional data that could change the appearance.
  ByteReader more(reader.take(reader.u32()), ByteOrder::big);
  if (more.u32() != 0 || more.u32() != 0) return std::nullopt;
  const std::size_t name = more.u8();
  more.skip(name);
  return more.remaining() < 4 ? std::optional(entries) : std::nullopt;
}

/// Encodes one channel: the compression, the size of each row, the rows.
std::vector<std::uint8_t> packChannel(const ConstPixels& pixels, std::size_t byte) {
  ByteWriter sizes(ByteOrder::big), rows;
  sizes.u16(1);
  std::vector<std::uint8_t> plane(static_cast<std::size_t>(pixels.width));
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    const std::uint8_t* const row = pixels.row(y);
    for (std::size_t x = 0; x < plane.size(); ++x) plane[x] = row[4 * x + byte];
    const std::vector<std::uint8_t> packed = packBits(plane);
    sizes.u16(packed.size());
    rows.bytes(packed);
  }
  sizes.bytes(rows.finish());
  return sizes.finish();
}

}  // namespace

Bytes layerInfoOf(Bytes section, const ChannelForm& form) {
  try {
    ByteReader reader(section, ByteOrder::big);
    const std::size_t size = readSize(reader, form.large);
    if (size >= 2) return reader.take(std::min(size, reader.remaining()));
    // 16-bit and 32-bit layers: a tagged block after the global layer mask.
    reader.skip(reader.u32());
    constexpr std::size_t kBlockHeader = 12;
    while (reader.remaining() >= kBlockHeader) {
      reader.skip(4);
      const Bytes key = reader.take(4);
      const auto isKey = [&](std::string_view name) { return std::ranges::equal(key, name); };
      const bool isInfo = isKey("Lr16") || isKey("Lr32");
      const bool isLong = isInfo || isKey("LMsk") || isKey("Mt16") || isKey("Mt32") || isKey("Mtrn") ||
                          isKey("Alph") || isKey("FMsk") || isKey("lnk2") || isKey("FEid") || isKey("FXid") ||
                          isKey("PxSD") || isKey("Layr");
      const std::size_t length = readSize(reader, form.large && isLong);
      if (isInfo) return reader.take(std::min(length, reader.remaining()));
      constexpr std::size_t kPadding = 4;
      reader.skip((length + kPadding - 1) / kPadding * kPadding);
    }
  } catch (const RuntimeError& error) {
    // Ends too early. The merged picture is still there.
    if (error.Number() != err::kInvalidPicture) throw;
  }
  return {};
}

std::optional<Channels> readOnlyLayer(Bytes info, const ChannelForm& form) {
  if (form.large || form.depth == 1 || info.size() < 2) return std::nullopt;
  try {
    ByteReader reader(info, ByteOrder::big);
    // Negative layer count: the merged picture has alpha as well.
    if (reader.i16() != -1) return std::nullopt;
    const std::optional<Entries> entries = readRecord(reader, form);
    if (!entries) return std::nullopt;
    ChannelForm one = form;
    one.channels = 1;
    Channels result{std::vector<std::vector<std::uint8_t>>(kChannels.size()), form.height};
    for (const Entry& entry : *entries) {
      ByteReader content(reader.take(entry.size), ByteOrder::big);
      Channels channel = readChannels(content, one, 1);
      if (channel.rows < form.height) return std::nullopt;
      const auto place = std::ranges::find(kChannels, entry.channel) - kChannels.begin();
      result.planes[static_cast<std::size_t>(place)] = std::move(channel.planes.front());
    }
    return result;
  } catch (const RuntimeError& error) {
    // Truncated or with an unknown compression: fall back to the merged picture.
    if (error.Number() != err::kInvalidPicture) throw;
    return std::nullopt;
  }
}

void writeOnlyLayer(ByteWriter& writer, const ConstPixels& pixels) {
  ByteWriter info(ByteOrder::big), channels;
  info.u16(0xFFFF);
  info.u32(0);
  info.u32(0);
  info.u32(static_cast<std::size_t>(pixels.height));
  info.u32(static_cast<std::size_t>(pixels.width));
  info.u16(kChannels.size());
  for (std::size_t byte = 0; byte < kChannels.size(); ++byte) {
    const std::vector<std::uint8_t> packed = packChannel(pixels, byte);
    info.u16(static_cast<std::uint16_t>(kChannels[byte]));
    info.u32(packed.size());
    channels.bytes(packed);
  }
  info.text(kNormal);
  info.u8(kOpaque);
  info.zeros(3);
  constexpr std::string_view kName = "Picture";
  info.u32(4 + 4 + 1 + kName.size());
  info.zeros(8);
  info.u8(kName.size());
  info.text(kName);
  info.bytes(channels.finish());
  if (info.size() % 2 == 1) info.u8(0);

  writer.u32(4 + info.size() + 4);
  writer.u32(info.size());
  writer.bytes(info.finish());
  writer.u32(0);
}

}  // namespace kestrel::engine::psd
