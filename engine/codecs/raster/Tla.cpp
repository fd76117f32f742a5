#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <string>

#include "Raster.h"
#include "TlaPixels.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/metadata/Exif.h"
#include "engine/parallel/Cancellation.h"
#include "engine/parallel/Parallel.h"

// The lossless format of docs/tla.md: sections with a checksum each, and pixels in bands of rows that are
// coded independently.

namespace kestrel::engine::tla {
namespace {

constexpr std::array<std::uint8_t, 8> kMark{0x93, 'T', 'L', 'A', 0x0D, 0x0A, 0x1A, 0x0A};
constexpr std::size_t kHeaderSize = 20;

/// A section's name as the little-endian number of its four letters.
constexpr std::uint32_t nameOf(const char (&letters)[5]) {
  std::uint32_t name = 0;
  for (int i = 3; i >= 0; --i) name = name << 8 | static_cast<std::uint8_t>(letters[i]);
  return name;
}

constexpr std::uint32_t kHeader = nameOf("HEAD"), kBand = nameOf("BAND"), kProfile = nameOf("ICCP"),
                        kExif = nameOf("EXIF"), kXmp = nameOf("XMP "), kIptc = nameOf("IPTC"),
                        kEnd = nameOf("DONE");

/// CRC-32 (ISO 3309).
std::uint32_t checksum(Bytes data) {
  static const auto table = [] {
    std::array<std::uint32_t, 256> values{};
    for (std::uint32_t i = 0; i < values.size(); ++i) {
      std::uint32_t value = i;
      for (int bit = 0; bit < 8; ++bit) value = (value & 1) != 0 ? value >> 1 ^ 0xEDB88320U : value >> 1;
      values[i] = value;
    }
    return values;
  }();
  std::uint32_t sum = 0xFFFFFFFF;
  for (const std::uint8_t byte : data) sum = sum >> 8 ^ table[(sum ^ byte) & 0xFF];
  return ~sum;
}

struct Section {
  std::uint32_t name = kEnd;
  Bytes content;
  bool whole = false;  ///< complete, with correct checksum
};

/// Reads the next section; `whole` is false if it is truncated or invalid.
Section readSection(ByteReader& reader) {
  Section section;
  if (reader.remaining() < 12) return section;
  section.name = reader.u32();
  const std::size_t size = reader.u32();
  const std::uint32_t sum = reader.u32();
  if (size > reader.remaining()) {
    reader.skip(reader.remaining());
    return section;
  }
  section.content = reader.take(size);
  section.whole = checksum(section.content) == sum;
  return section;
}

void writeSection(ByteWriter& writer, std::uint32_t name, Bytes content) {
  writer.u32(name);
  writer.u32(content.size());
  writer.u32(checksum(content));
  writer.bytes(content);
}

/// Rows per band: some 256 KB of pixels, enough work for a thread, and a small loss if a band is damaged.
std::int32_t bandRowsFor(std::int32_t width) { return std::max(1, (1 << 16) / width); }

struct Header {
  std::int32_t width = 0, height = 0, bandRows = 0;
};

Header readHeader(ByteReader& reader, std::size_t fileSize, Metadata& metadata) {
  const Section section = readSection(reader);
  if (section.name != kHeader || !section.whole || section.content.size() < kHeaderSize) {
    refusePicture("The TLA file is damaged: its header cannot be read.");
  }
  ByteReader content(section.content);
  const std::uint32_t width = content.u32(), height = content.u32(), bandRows = content.u32();
  constexpr std::int64_t kPixelsPerByte = 64;
  checkClaimedSize(width, height, fileSize, kPixelsPerByte);
  if (bandRows < 1 || bandRows > height)
    refusePicture("The TLA file is damaged: its band height is invalid.");
  constexpr double kThousandths = 1000;
  metadata.resolutionX = content.u32() / kThousandths;
  metadata.resolutionY = content.u32() / kThousandths;
  return {static_cast<std::int32_t>(width), static_cast<std::int32_t>(height),
          static_cast<std::int32_t>(bandRows)};
}

void keepMetadata(const Section& section, Metadata& metadata) {
  const auto keep = [&](std::vector<std::uint8_t>& target) {
    target.assign(section.content.begin(), section.content.end());
  };
  switch (section.name) {
    case kProfile:
      return keep(metadata.iccProfile);
    case kExif:
      return keep(metadata.exif);
    case kXmp:
      return keep(metadata.xmp);
    case kIptc:
      return keep(metadata.iptc);
    default:
      return;  // section of a later version: not needed to show the picture
  }
}

}  // namespace

bool probe(Bytes data) {
  return data.size() >= kMark.size() && std::equal(kMark.begin(), kMark.end(), data.begin());
}

Decoded decode(Bytes data) {
  ByteReader reader(data);
  reader.skip(kMark.size());
  Decoded decoded;
  const Header header = readHeader(reader, data.size(), decoded.metadata);
  std::vector<Section> bands;
  while (reader.remaining() > 0) {
    const Section section = readSection(reader);
    if (section.name == kBand) {
      bands.push_back(section);
    } else if (section.name == kEnd) {
      break;
    } else if (section.whole) {
      keepMetadata(section, decoded.metadata);
    }
  }

  const std::int32_t bandCount = (header.height - 1) / header.bandRows + 1;
  decoded.stored.hasAlpha = true;
  decoded.bitmap = Bitmap::uninitialized(header.width, header.height);
  const Pixels pixels = decoded.bitmap.writable();
  std::atomic<std::int32_t> lost = 0;
  forRows(bandCount, 1, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t band = first; band < last; ++band) {
      checkCanceled();
      const std::int32_t top = band * header.bandRows,
                         bottom = std::min(header.height, top + header.bandRows);
      const auto index = static_cast<std::size_t>(band);
      if (index < bands.size() && bands[index].whole &&
          unpackRows(bands[index].content, pixels, top, bottom)) {
        continue;
      }
      for (std::int32_t y = top; y < bottom; ++y)
        std::memset(pixels.row(y), 0, static_cast<std::size_t>(header.width) * 4);
      lost += bottom - top;
    }
  });
  if (lost == header.height)
    refusePicture("The TLA file is damaged: not one row of the picture can be read.");
  if (lost > 0) {
    decoded.notice = damageNotice(std::to_string(lost) + " of " + std::to_string(header.height) +
                                  " rows could not be read");
  }
  convertToSrgb(decoded, PixelKind::rgb);
  normalizeCameraData(decoded.metadata);
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  const ConstPixels pixels = bitmap.pixels();
  const std::int32_t bandRows = std::min(pixels.height, bandRowsFor(pixels.width));
  const std::int32_t bandCount = (pixels.height - 1) / bandRows + 1;
  std::vector<std::vector<std::uint8_t>> bands(static_cast<std::size_t>(bandCount));
  forRows(bandCount, 1, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t band = first; band < last; ++band) {
      const std::int32_t top = band * bandRows;
      bands[static_cast<std::size_t>(band)] = packRows(pixels, top, std::min(pixels.height, top + bandRows));
    }
  });

  const auto thousandths = [](double value) {
    return value > 0 && value < 1e6 ? static_cast<std::size_t>(std::lround(value * 1000)) : std::size_t{0};
  };
  ByteWriter header;
  header.u32(static_cast<std::size_t>(pixels.width));
  header.u32(static_cast<std::size_t>(pixels.height));
  header.u32(static_cast<std::size_t>(bandRows));
  header.u32(thousandths(metadata.resolutionX));
  header.u32(thousandths(metadata.resolutionY));

  ByteWriter writer;
  writer.bytes(kMark);
  writeSection(writer, kHeader, header.finish());
  const auto writeIfAny = [&](std::uint32_t name, const std::vector<std::uint8_t>& content) {
    if (!content.empty()) writeSection(writer, name, content);
  };
  writeIfAny(kProfile, metadata.iccProfile);
  writeIfAny(kExif, metadata.exif);
  writeIfAny(kXmp, metadata.xmp);
  writeIfAny(kIptc, metadata.iptc);
  for (const auto& band : bands) writeSection(writer, kBand, band);
  writeSection(writer, kEnd, {});
  return writer.finish();
}

}  // namespace kestrel::engine::tla
