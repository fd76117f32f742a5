#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "Raster.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Flatten.h"
#include "engine/parallel/Cancellation.h"

// A header of 128 bytes, then RLE rows, plane after plane within a row: a byte with both high bits set is a
// repeat count for the next byte. A palette of 256 colors is at the end, preceded by the byte 12. DCX files
// contain several such pictures; the first is read.

namespace kestrel::engine::pcx {
namespace {

constexpr std::size_t kHeaderSize = 128;
constexpr std::size_t kPaletteSize = 769;

struct Header {
  std::int32_t width = 0, height = 0;
  std::uint32_t bits = 0;  ///< bits per sample
  std::uint32_t planes = 0;
  std::size_t lineBytes = 0;  ///< bytes of one plane in a row
  bool packed = false;
  std::uint8_t version = 0;
  std::array<Pixel, 16> colors{};
};

using Palette = std::array<Pixel, 256>;

Header readHeader(Bytes data, Metadata& metadata) {
  ByteReader reader(data);
  Header header;
  reader.skip(1);
  header.version = reader.u8();
  header.packed = reader.u8() != 0;
  header.bits = reader.u8();
  const std::int32_t left = reader.u16(), top = reader.u16(), right = reader.u16(), bottom = reader.u16();
  metadata.resolutionX = reader.u16();
  metadata.resolutionY = reader.u16();
  for (Pixel& color : header.colors) {
    const Bytes entry = reader.take(3);
    color = {entry[0], entry[1], entry[2], 255};
  }
  reader.skip(1);
  header.planes = reader.u8();
  header.lineBytes = reader.u16();
  reader.seek(kHeaderSize);

  header.width = right - left + 1;
  header.height = bottom - top + 1;
  constexpr std::int64_t kPixelsPerByte = 63 * 8;
  checkClaimedSize(header.width, header.height, data.size(), kPixelsPerByte);
  const std::uint32_t depth = header.bits * header.planes;
  const bool indexed = (header.bits == 1 && header.planes <= 4) ||
                       (header.planes == 1 && (header.bits == 2 || header.bits == 4 || header.bits == 8));
  const bool direct = header.bits == 8 && (header.planes == 3 || header.planes == 4);
  if (depth == 0 || (!indexed && !direct)) {
    refusePicture("The PCX file cannot be read: " + std::to_string(header.planes) + " planes of " +
                  std::to_string(header.bits) + " bits are not known.");
  }
  if (header.lineBytes * 8 < static_cast<std::size_t>(header.width) * header.bits) {
    refusePicture("The PCX file is damaged: its rows are shorter than the picture is wide.");
  }
  return header;
}

/// Default palette of contemporary graphics cards, for files without a palette.
constexpr std::array<Pixel, 16> kDefaultColors{{{0, 0, 0, 255},
                                                {0, 0, 170, 255},
                                                {0, 170, 0, 255},
                                                {0, 170, 170, 255},
                                                {170, 0, 0, 255},
                                                {170, 0, 170, 255},
                                                {170, 85, 0, 255},
                                                {170, 170, 170, 255},
                                                {85, 85, 85, 255},
                                                {85, 85, 255, 255},
                                                {85, 255, 85, 255},
                                                {85, 255, 255, 255},
                                                {255, 85, 85, 255},
                                                {255, 85, 255, 255},
                                                {255, 255, 85, 255},
                                                {255, 255, 255, 255}}};

Palette readPalette(Bytes data, const Header& header) {
  Palette palette;
  palette.fill({0, 0, 0, 255});
  if (header.bits == 8) {
    const bool stored = data.size() >= kHeaderSize + kPaletteSize && data[data.size() - kPaletteSize] == 12;
    for (std::size_t i = 0; i < palette.size(); ++i) {
      const std::uint8_t* const entry =
          stored ? data.data() + data.size() - kPaletteSize + 1 + 3 * i : nullptr;
      const auto gray = static_cast<std::uint8_t>(i);
      palette[i] = stored ? Pixel{entry[0], entry[1], entry[2], 255} : Pixel{gray, gray, gray, 255};
    }
    return palette;
  }
  const std::size_t count = std::size_t{1} << (header.bits * header.planes);
  const bool none =
      std::all_of(header.colors.begin(), header.colors.begin() + static_cast<std::ptrdiff_t>(count),
                  [&](const Pixel& color) { return color == header.colors[0]; });
  constexpr std::uint8_t kWithoutPalette = 3;
  if (count == 2 && (none || header.version == kWithoutPalette)) {
    palette[1] = {255, 255, 255, 255};
  } else {
    const auto& colors = none || header.version == kWithoutPalette ? kDefaultColors : header.colors;
    std::copy_n(colors.begin(), count, palette.begin());
  }
  return palette;
}

/// RLE decoder for the rows. A run may continue in the next row: some programs write such files.
class LineReader {
 public:
  LineReader(Bytes data, bool packed) : data_(data), packed_(packed) {}

  /// Returns false if the file has no further complete line.
  bool read(std::vector<std::uint8_t>& line) {
    for (std::uint8_t& byte : line) {
      const auto next = packed_ ? unpacked() : plain();
      if (!next) return false;
      byte = *next;
    }
    return true;
  }

 private:
  std::optional<std::uint8_t> plain() {
    if (at_ >= data_.size()) return std::nullopt;
    return data_[at_++];
  }

  std::optional<std::uint8_t> unpacked() {
    while (left_ == 0) {
      const auto first = plain();
      if (!first) return std::nullopt;
      constexpr std::uint8_t kRun = 0xC0;
      if ((*first & kRun) != kRun) return first;
      left_ = *first & 0x3F;
      const auto value = plain();
      if (!value) return std::nullopt;
      value_ = *value;
    }
    --left_;
    return value_;
  }

  Bytes data_;
  bool packed_;
  std::size_t at_ = 0;
  int left_ = 0;
  std::uint8_t value_ = 0;
};

void readRow(const std::vector<std::uint8_t>& line, const Header& header, const Palette& palette,
             std::uint8_t* target) {
  const auto width = static_cast<std::size_t>(header.width);
  if (header.bits == 8 && header.planes >= 3) {
    for (std::size_t x = 0; x < width; ++x, target += 4) {
      for (std::size_t c = 0; c < 3; ++c) target[c] = line[c * header.lineBytes + x];
      target[3] = header.planes == 4 ? line[3 * header.lineBytes + x] : 255;
    }
    return;
  }
  const std::uint32_t mask = (1U << header.bits) - 1;
  const std::size_t perByte = 8 / header.bits;
  for (std::size_t x = 0; x < width; ++x, target += 4) {
    std::uint32_t index = 0;
    for (std::uint32_t plane = 0; plane < header.planes; ++plane) {
      const std::uint32_t byte = line[plane * header.lineBytes + x / perByte];
      const auto shift = static_cast<std::uint32_t>(8 - header.bits * (x % perByte + 1));
      index |= (byte >> shift & mask) << (plane * header.bits);
    }
    const Pixel& color = palette[index];
    target[0] = color.r, target[1] = color.g, target[2] = color.b, target[3] = 255;
  }
}

void writeLine(ByteWriter& writer, const std::vector<std::uint8_t>& line) {
  for (std::size_t at = 0; at < line.size();) {
    std::size_t run = 1;
    while (run < 63 && at + run < line.size() && line[at + run] == line[at]) ++run;
    if (run > 1 || line[at] >= 0xC0) writer.u8(0xC0 | run);
    writer.u8(line[at]);
    at += run;
  }
}

}  // namespace

namespace {

bool isPicture(Bytes data) {
  if (data.size() < kHeaderSize || data[0] != 10) return false;
  const bool version = data[1] == 0 || (data[1] >= 2 && data[1] <= 5);
  const bool bits = data[3] == 1 || data[3] == 2 || data[3] == 4 || data[3] == 8;
  return version && data[2] <= 1 && bits && data[65] >= 1 && data[65] <= 4;
}

/// The pages of a DCX file: a signature and up to 1023 offsets of PCX pictures, terminated by 0. Each picture
/// ends at the next higher offset. Empty for other files.
std::vector<Bytes> pagesOf(Bytes data) {
  constexpr std::uint32_t kMark = 0x3ADE68B1;
  constexpr std::size_t kMostPages = 1023;
  if (data.size() < 8) return {};
  ByteReader reader(data);
  if (reader.u32() != kMark) return {};
  std::vector<std::size_t> offsets;
  while (offsets.size() < kMostPages && reader.remaining() >= 4) {
    const std::size_t offset = reader.u32();
    if (offset == 0 || offset >= data.size()) break;
    offsets.push_back(offset);
  }
  std::vector<Bytes> pages;
  for (const std::size_t offset : offsets) {
    std::size_t end = data.size();
    for (const std::size_t other : offsets) {
      if (other > offset) end = std::min(end, other);
    }
    pages.push_back(data.subspan(offset, end - offset));
  }
  return pages;
}

Decoded decodePicture(Bytes data) {
  Decoded decoded;
  const Header header = readHeader(data, decoded.metadata);
  decoded.stored.bitsPerSample = static_cast<std::int32_t>(header.bits);
  decoded.stored.hasAlpha = header.planes == 4 && header.bits == 8;
  const bool indexed = !(header.bits == 8 && header.planes >= 3);
  const Palette palette = indexed ? readPalette(data, header) : Palette{};
  const bool paletteAtEnd = header.bits == 8 && indexed && data.size() >= kHeaderSize + kPaletteSize &&
                            data[data.size() - kPaletteSize] == 12;
  LineReader lines(data.subspan(kHeaderSize, data.size() - kHeaderSize - (paletteAtEnd ? kPaletteSize : 0)),
                   header.packed);

  decoded.bitmap = Bitmap::uninitialized(header.width, header.height);
  const Pixels pixels = decoded.bitmap.writable();
  std::vector<std::uint8_t> line(header.lineBytes * header.planes);
  std::int32_t rows = 0;
  for (; rows < header.height && lines.read(line); ++rows) {
    checkCanceled();
    readRow(line, header, palette, pixels.row(rows));
  }
  if (rows < header.height) keepRows(decoded, rows);
  if (decoded.stored.hasAlpha) dropEmptyAlpha(decoded.bitmap);
  return decoded;
}

}  // namespace

bool probe(Bytes data) {
  const std::vector<Bytes> pages = pagesOf(data);
  return isPicture(pages.empty() ? data : pages.front());
}

Decoded decode(Bytes data) {
  const std::vector<Bytes> pages = pagesOf(data);
  if (pages.empty()) return decodePicture(data);
  Decoded decoded = decodePicture(pages.front());
  decoded.stored.pages = static_cast<std::int32_t>(pages.size());
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  const ConstPixels pixels = bitmap.pixels();
  if (pixels.width > 65535 || pixels.height > 65535) {
    throw RuntimeError(err::kInvalidCall,
                       "The picture is too large for a PCX file, whose sides have at most 65535 pixels.");
  }
  const auto perInch = [](double value) {
    return value >= 1 && value <= 65535 ? static_cast<std::size_t>(std::lround(value)) : std::size_t{0};
  };
  const auto width = static_cast<std::size_t>(pixels.width);
  const std::size_t lineBytes = width + width % 2;
  ByteWriter writer;
  for (const std::size_t value : {10U, 5U, 1U, 8U}) writer.u8(value);
  writer.u32(0);
  writer.u16(width - 1);
  writer.u16(static_cast<std::size_t>(pixels.height) - 1);
  writer.u16(perInch(metadata.resolutionX));
  writer.u16(perInch(metadata.resolutionY));
  writer.zeros(49);
  writer.u8(3);
  writer.u16(std::min<std::size_t>(lineBytes, 65535));
  writer.u16(1);
  writer.zeros(kHeaderSize - writer.size());

  std::vector<std::uint8_t> flat(width * 3), line(std::min<std::size_t>(lineBytes, 65535));
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    flattenRowOnWhite(pixels.row(y), flat.data(), pixels.width);
    for (std::size_t c = 0; c < 3; ++c) {
      for (std::size_t x = 0; x < width; ++x) line[x] = flat[3 * x + c];
      writeLine(writer, line);
    }
  }
  return writer.finish();
}

}  // namespace kestrel::engine::pcx
