#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PsdChannels.h"
#include "PsdLayer.h"
#include "Raster.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Flatten.h"
#include "engine/codecs/metadata/Exif.h"
#include "engine/codecs/metadata/PhotoshopResources.h"
#include "engine/pixels/Opaque.h"

// A header, a color map, image resources, layers, and the merged picture, which is read and written. The
// merged picture of a transparent picture is composited over white; therefore it is also written as the
// file's only layer.

namespace kestrel::engine::psd {
namespace {

enum Mode : std::uint16_t {
  kBitmap = 0,
  kGray = 1,
  kIndexed = 2,
  kRgb = 3,
  kCmyk = 4,
  kMultichannel = 7,
  kDuotone = 8,
  kLab = 9
};

enum Resource : std::uint16_t {
  kResolution = 1005,
  kAlphaNames = 1006,
  kIptc = 1028,
  kProfile = 1039,
  kExif = 1058,
  kXmp = 1060
};

struct Header {
  ChannelForm form;
  std::uint16_t mode = kRgb;
};

Header readHeader(ByteReader& reader, std::size_t fileSize) {
  Header header;
  reader.skip(4);
  const std::uint16_t version = reader.u16();
  if (version != 1 && version != 2) {
    refusePicture("The PSD file cannot be read: version " + std::to_string(version) + " is not known.");
  }
  header.form.large = version == 2;
  reader.skip(6);
  header.form.channels = reader.u16();
  const std::uint32_t height = reader.u32(), width = reader.u32();
  constexpr std::int64_t kPixelsPerByte = 128 * 8;
  checkClaimedSize(width, height, fileSize, kPixelsPerByte);
  header.form.width = static_cast<std::int32_t>(width);
  header.form.height = static_cast<std::int32_t>(height);
  header.form.depth = reader.u16();
  header.mode = reader.u16();
  constexpr std::array kDepths{1, 8, 16, 32};
  constexpr std::int32_t kMostChannels = 56;
  if (std::ranges::find(kDepths, header.form.depth) == kDepths.end() || header.form.channels < 1 ||
      header.form.channels > kMostChannels) {
    refusePicture("The PSD file is damaged: it claims " + std::to_string(header.form.channels) +
                  " channels of " + std::to_string(header.form.depth) + " bits.");
  }
  return header;
}

std::int32_t colorsOf(std::uint16_t mode) {
  switch (mode) {
    case kBitmap:
    case kGray:
    case kIndexed:
    case kMultichannel:
    case kDuotone:
      return 1;
    case kRgb:
    case kLab:
      return 3;
    case kCmyk:
      return 4;
    default:
      refusePicture("The PSD file cannot be read: color mode " + std::to_string(mode) + " is not known.");
  }
}

Metadata readResources(Bytes resources) {
  Metadata metadata;
  const auto keep = [&](std::uint16_t number, std::vector<std::uint8_t>& target) {
    const Bytes content = findResource(resources, number);
    target.assign(content.begin(), content.end());
  };
  keep(kProfile, metadata.iccProfile);
  keep(kIptc, metadata.iptc);
  keep(kExif, metadata.exif);
  keep(kXmp, metadata.xmp);
  const Bytes resolution = findResource(resources, kResolution);
  if (resolution.size() >= 16) {
    ByteReader reader(resolution, ByteOrder::big);
    constexpr double kFraction = 65536;
    metadata.resolutionX = reader.u32() / kFraction;
    reader.skip(4);
    metadata.resolutionY = reader.u32() / kFraction;
  }
  return metadata;
}

/// Meaning of the channel after the color channels.
enum class ExtraChannel { none, alpha, alphaOverWhite };

/// A negative layer count means that the channel is the merged picture's alpha and the colors are composited
/// over white. In a file without layers the channel is alpha unless it has a name, as a saved selection has.
ExtraChannel extraChannelOf(Bytes layerInfo, Bytes resources) {
  if (layerInfo.size() >= 2) {
    const bool negative = ByteReader(layerInfo, ByteOrder::big).i16() < 0;
    return negative ? ExtraChannel::alphaOverWhite : ExtraChannel::none;
  }
  const Bytes names = findResource(resources, kAlphaNames);
  constexpr std::string_view kTransparency = "Transparency";
  const bool named = names.size() > 1 && names[0] > 0;
  const bool transparency = named && names.size() > kTransparency.size() &&
                            std::equal(kTransparency.begin(), kTransparency.end(), names.begin() + 1);
  return !named || transparency ? ExtraChannel::alpha : ExtraChannel::none;
}

void putColors(const Channels& channels, const Header& header, Bytes map, const Pixels& pixels) {
  const auto width = static_cast<std::size_t>(header.form.width);
  const bool inverted = header.mode == kCmyk;
  for (std::int32_t y = 0; y < channels.rows; ++y) {
    std::uint8_t* p = pixels.row(y);
    const std::size_t row = static_cast<std::size_t>(y) * width;
    for (std::size_t x = 0; x < width; ++x, p += 4) {
      p[3] = 255;
      const std::uint8_t first = channels.planes[0][row + x];
      if (header.mode == kIndexed) {
        // The map holds all red values, then green, then blue.
        for (std::size_t c = 0; c < 3; ++c) p[c] = map[c * 256 + first];
      } else if (channels.planes.size() < 3) {
        p[0] = p[1] = p[2] = first;
      } else {
        const std::size_t colors = inverted ? 4 : 3;
        for (std::size_t c = 0; c < colors; ++c) {
          const std::uint8_t sample = channels.planes[c][row + x];
          p[c] = inverted ? static_cast<std::uint8_t>(255 - sample) : sample;
        }
      }
    }
  }
}

void putAlpha(const std::vector<std::uint8_t>& plane, std::int32_t rows, bool overWhite,
              const Pixels& pixels) {
  const auto width = static_cast<std::size_t>(pixels.width);
  for (std::int32_t y = 0; y < rows; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::size_t x = 0; x < width; ++x, p += 4) {
      const int alpha = plane[static_cast<std::size_t>(y) * width + x];
      p[3] = static_cast<std::uint8_t>(alpha);
      if (!overWhite || alpha == 0 || alpha == 255) continue;
      for (int c = 0; c < 3; ++c) {
        p[c] =
            static_cast<std::uint8_t>(std::clamp(((p[c] - 255 + alpha) * 255 + alpha / 2) / alpha, 0, 255));
      }
    }
  }
}

void writeResource(ByteWriter& writer, std::uint16_t number, Bytes content) {
  if (content.empty()) return;
  writer.text("8BIM");
  writer.u16(number);
  writer.u16(0);
  writer.u32(content.size());
  writer.bytes(content);
  if (content.size() % 2 == 1) writer.u8(0);
}

std::vector<std::uint8_t> writeResources(const Metadata& metadata) {
  ByteWriter writer(ByteOrder::big);
  if (metadata.resolutionX > 0 && metadata.resolutionY > 0 && metadata.resolutionX < 32768 &&
      metadata.resolutionY < 32768) {
    ByteWriter content(ByteOrder::big);
    for (const double value : {metadata.resolutionX, metadata.resolutionY}) {
      content.u32(static_cast<std::size_t>(std::lround(value * 65536)));
      content.u16(1);  // display unit: per inch
      content.u16(1);  // size unit: inches
    }
    writeResource(writer, kResolution, content.finish());
  }
  writeResource(writer, kIptc, metadata.iptc);
  writeResource(writer, kProfile, metadata.iccProfile);
  writeResource(writer, kExif, metadata.exif);
  writeResource(writer, kXmp, metadata.xmp);
  return writer.finish();
}

}  // namespace

bool probe(Bytes data) { return data.size() >= 26 && std::memcmp(data.data(), "8BPS", 4) == 0; }

Decoded decode(Bytes data) {
  ByteReader reader(data, ByteOrder::big);
  const Header header = readHeader(reader, data.size());
  const std::int32_t colors = colorsOf(header.mode);
  if (header.form.channels < colors) refusePicture("The PSD file is damaged: it has too few channels.");
  const Bytes map = reader.take(reader.u32());
  if (header.mode == kIndexed && map.size() < 768)
    refusePicture("The PSD file is damaged: its color map is missing.");
  const Bytes resources = reader.take(reader.u32());
  if (header.form.large && reader.u32() != 0)
    refusePicture("The PSD file is damaged: its layers are too large.");
  const Bytes layers = layerInfoOf(reader.take(reader.u32()), header.form);

  Decoded decoded;
  decoded.metadata = readResources(resources);
  decoded.stored.bitsPerSample = header.form.depth;
  ExtraChannel extra =
      header.form.channels > colors && header.mode != kMultichannel && header.mode != kIndexed
          ? extraChannelOf(layers, resources)
          : ExtraChannel::none;
  decoded.stored.hasAlpha = extra != ExtraChannel::none;
  decoded.bitmap = Bitmap::filled(header.form.width, header.form.height);
  std::optional<Channels> layer;
  if (extra == ExtraChannel::alphaOverWhite && header.mode == kRgb)
    layer = readOnlyLayer(layers, header.form);
  if (layer) extra = ExtraChannel::alpha;
  const Channels channels =
      layer ? std::move(*layer)
            : readChannels(reader, header.form, colors + (extra != ExtraChannel::none ? 1 : 0));
  putColors(channels, header, map, decoded.bitmap.writable());

  convertToSrgb(decoded, header.mode == kCmyk                             ? PixelKind::cmyk
                         : header.mode == kLab                            ? PixelKind::lab
                         : header.mode == kRgb || header.mode == kIndexed ? PixelKind::rgb
                                                                          : PixelKind::gray);
  if (extra != ExtraChannel::none) {
    putAlpha(channels.planes.back(), channels.rows, extra == ExtraChannel::alphaOverWhite,
             decoded.bitmap.writable());
  }
  if (channels.rows < header.form.height) keepRows(decoded, channels.rows);
  normalizeCameraData(decoded.metadata);
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  const ConstPixels pixels = bitmap.pixels();
  constexpr std::int32_t kLongestSide = 30000;
  if (pixels.width > kLongestSide || pixels.height > kLongestSide) {
    throw RuntimeError(err::kInvalidCall,
                       "The picture is too large for a PSD file, whose sides have at most 30000 pixels.");
  }
  const bool opaque = isOpaque(bitmap.pixels());
  const std::size_t channels = opaque ? 3 : 4;
  ByteWriter writer(ByteOrder::big);
  writer.text("8BPS");
  writer.u16(1);
  writer.zeros(6);
  writer.u16(channels);
  writer.u32(static_cast<std::size_t>(pixels.height));
  writer.u32(static_cast<std::size_t>(pixels.width));
  writer.u16(8);
  writer.u16(kRgb);
  writer.u32(0);
  const std::vector<std::uint8_t> resources = writeResources(metadata);
  writer.u32(resources.size());
  writer.bytes(resources);
  if (opaque) {
    writer.u32(0);
  } else {
    writeOnlyLayer(writer, pixels);
  }
  writer.u16(1);  // RLE

  ByteWriter rows(ByteOrder::big);
  const auto width = static_cast<std::size_t>(pixels.width);
  std::vector<std::uint8_t> plane(width), flat(3 * width);
  for (std::size_t c = 0; c < channels; ++c) {
    for (std::int32_t y = 0; y < pixels.height; ++y) {
      const std::uint8_t* const row = pixels.row(y);
      flattenRowOnWhite(row, flat.data(), pixels.width);
      for (std::size_t x = 0; x < width; ++x) plane[x] = c < 3 ? flat[3 * x + c] : row[4 * x + 3];
      const std::vector<std::uint8_t> packed = packBits(plane);
      writer.u16(packed.size());
      rows.bytes(packed);
    }
  }
  writer.bytes(rows.finish());
  return writer.finish();
}

}  // namespace kestrel::engine::psd
