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

std::optional<Channels> readOnlyLayer(Bytes layers, const ChannelForm& form) {
  if (form.large || form.depth != 8 || layers.size() < 6) return std::nullopt;
  try {
    ByteReader reader(layers, ByteOrder::big);
    reader.skip(4);
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
