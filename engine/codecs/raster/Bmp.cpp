#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include <string>
#include <vector>

#include "BmpRle.h"
#include "Raster.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Flatten.h"
#include "engine/codecs/common/Resolution.h"
#include "engine/parallel/Cancellation.h"
#include "engine/pixels/Opaque.h"

// A file header of 14 bytes, an information header whose length determines its version (12 and 16 to 64:
// OS/2; 40 to 124: Windows), color masks or a palette, and rows from the bottom up, each padded to 4 bytes.

namespace kestrel::engine::bmp {
namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kCoreHeader = 12;
constexpr std::size_t kInfoHeader = 40;
constexpr std::size_t kV2Header = 52;
constexpr std::size_t kV3Header = 56;
constexpr std::size_t kV5Header = 124;

enum Compression : std::uint32_t {
  kNone = 0,
  kRle8 = 1,
  kRle4 = 2,
  kBitfields = 3,
  kRle24 = 4,
  kAlphaBitfields = 6
};

/// Extracts a channel by its bit mask and scales it to 0 to 255.
class Channel {
 public:
  Channel() = default;
  explicit Channel(std::uint32_t mask) {
    if (mask == 0) return;
    shift_ = std::countr_zero(mask);
    largest_ = mask >> shift_;
  }

  bool exists() const { return largest_ != 0; }
  std::uint8_t of(std::uint32_t pixel) const {
    if (largest_ == 0) return 0;
    const std::uint64_t value = pixel >> shift_ & largest_;
    return static_cast<std::uint8_t>((value * 255 + largest_ / 2) / largest_);
  }

 private:
  int shift_ = 0;
  std::uint32_t largest_ = 0;
};

struct Header {
  std::size_t pixelOffset = 0;
  std::size_t headerSize = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  bool topDown = false;
  std::uint32_t bits = 0;
  std::uint32_t compression = kNone;
  std::uint32_t paletteCount = 0;
  std::array<std::uint32_t, 4> masks{};  ///< red, green, blue, alpha
  bool os2 = false;
};

void readSize(ByteReader& reader, Header& header, std::size_t fileSize) {
  const bool core = header.headerSize == kCoreHeader;
  const std::int64_t width = core ? reader.u16() : reader.i32();
  const std::int64_t height = core ? reader.u16() : reader.i32();
  header.topDown = height < 0;
  // Highest compression ratio: a run of 255 pixels takes 2 bytes.
  constexpr std::int64_t kPixelsPerByte = 128;
  checkClaimedSize(width, header.topDown ? -height : height, fileSize, kPixelsPerByte);
  header.width = static_cast<std::int32_t>(width);
  header.height = static_cast<std::int32_t>(header.topDown ? -height : height);
}

void readMasks(ByteReader& reader, Header& header) {
  const bool inHeader = header.headerSize >= kV2Header && !header.os2;
  if (header.compression == kBitfields || header.compression == kAlphaBitfields) {
    const std::size_t count =
        (inHeader ? header.headerSize >= kV3Header : header.compression == kAlphaBitfields) ? 4 : 3;
    reader.seek(kFileHeader + kInfoHeader);
    for (std::size_t i = 0; i < count; ++i) header.masks[i] = reader.u32();
  } else if (header.bits == 16) {
    header.masks = {0x7C00, 0x03E0, 0x001F, 0};
  } else {
    header.masks = {0xFF0000, 0x00FF00, 0x0000FF, 0};
    if (header.bits == 32 && inHeader && header.headerSize >= kV3Header) {
      reader.seek(kFileHeader + kV2Header);
      header.masks[3] = reader.u32();
    }
  }
}

Header readHeader(Bytes data, Metadata& metadata) {
  ByteReader reader(data);
  Header header;
  reader.skip(10);
  header.pixelOffset = reader.u32();
  header.headerSize = reader.u32();
  if (header.headerSize < kCoreHeader) {
    refusePicture("The BMP file is damaged: its header claims " + std::to_string(header.headerSize) +
                  " bytes.");
  }
  readSize(reader, header, data.size());
  reader.skip(2);
  header.bits = reader.u16();
  if (header.headerSize >= 20) header.compression = reader.u32();
  header.os2 = header.headerSize == kCoreHeader || header.headerSize == 16 || header.headerSize == 64;
  if (header.headerSize >= kInfoHeader) {
    reader.skip(4);
    const std::int32_t x = reader.i32(), y = reader.i32();
    if (x > 0 && y > 0) {
      metadata.resolutionX = x / kInchesPerMeter;
      metadata.resolutionY = y / kInchesPerMeter;
    }
    header.paletteCount = reader.u32();
  }
  // OS/2 defines two compression codes differently: 3 is a fax coding, 4 is RLE of 24-bit pixels.
  if (header.headerSize == 64 && header.compression == kBitfields) {
    refusePicture("The BMP file cannot be read: it uses the fax compression of OS/2.");
  }
  constexpr std::array<std::uint32_t, 7> kBits{1, 2, 4, 8, 16, 24, 32};
  if (std::ranges::find(kBits, header.bits) == kBits.end()) {
    refusePicture("The BMP file cannot be read: it claims " + std::to_string(header.bits) +
                  " bits per pixel.");
  }
  readMasks(reader, header);
  return header;
}

using Palette = std::array<Pixel, 256>;

/// Missing entries are black.
Palette readPalette(Bytes data, const Header& header) {
  Palette palette;
  palette.fill({0, 0, 0, 255});
  const std::size_t entrySize = header.headerSize == kCoreHeader ? 3 : 4;
  std::size_t start = kFileHeader + header.headerSize;
  if (header.headerSize == kInfoHeader && header.compression == kBitfields) start += 12;
  if (header.headerSize == kInfoHeader && header.compression == kAlphaBitfields) start += 16;
  std::size_t count = std::size_t{1} << header.bits;
  if (header.paletteCount > 0) count = std::min<std::size_t>(count, header.paletteCount);
  if (header.pixelOffset > start) count = std::min(count, (header.pixelOffset - start) / entrySize);
  for (std::size_t i = 0; i < count && start + (i + 1) * entrySize <= data.size(); ++i) {
    const std::uint8_t* const entry = data.data() + start + i * entrySize;
    palette[i] = {entry[2], entry[1], entry[0], 255};
  }
  return palette;
}

/// Converts a row of palette indices or of 16 to 32-bit pixels to RGBA.
class RowReader {
 public:
  RowReader(Bytes data, const Header& header)
      : header_(header),
        red_(header.masks[0]),
        green_(header.masks[1]),
        blue_(header.masks[2]),
        alpha_(header.masks[3]) {
    if (header.bits <= 8) palette_ = readPalette(data, header);
  }

  void read(const std::uint8_t* row, std::uint8_t* target) const {
    switch (header_.bits) {
      case 16:
        return readMasked<2>(row, target);
      case 24:
        return read24(row, target);
      case 32:
        return readMasked<4>(row, target);
      default:
        return readIndices(row, target);
    }
  }

  const Palette& palette() const { return palette_; }

 private:
  void readIndices(const std::uint8_t* row, std::uint8_t* target) const {
    const std::uint32_t bits = header_.bits;
    const std::uint32_t mask = (1U << bits) - 1;
    const std::uint32_t perByte = 8 / bits;
    for (std::uint32_t x = 0; x < static_cast<std::uint32_t>(header_.width); ++x, target += 4) {
      const std::uint32_t shift = 8 - bits * (x % perByte + 1);
      std::memcpy(target, &palette_[row[x / perByte] >> shift & mask], 4);
    }
  }

  void read24(const std::uint8_t* row, std::uint8_t* target) const {
    for (std::int32_t x = 0; x < header_.width; ++x, row += 3, target += 4) {
      target[0] = row[2];
      target[1] = row[1];
      target[2] = row[0];
      target[3] = 255;
    }
  }

  template <int kBytes>
  void readMasked(const std::uint8_t* row, std::uint8_t* target) const {
    for (std::int32_t x = 0; x < header_.width; ++x, row += kBytes, target += 4) {
      std::uint32_t pixel = 0;
      for (int i = kBytes; i-- > 0;) pixel = pixel << 8 | row[i];
      target[0] = red_.of(pixel);
      target[1] = green_.of(pixel);
      target[2] = blue_.of(pixel);
      target[3] = alpha_.exists() ? alpha_.of(pixel) : 255;
    }
  }

  Header header_;
  Channel red_, green_, blue_, alpha_;
  Palette palette_{};
};

/// Offset of the rows. A few programs write 0 or an offset inside the headers.
std::size_t pixelStart(const Header& header, std::size_t fileSize) {
  if (header.pixelOffset >= kFileHeader + kCoreHeader) return header.pixelOffset;
  std::size_t start = kFileHeader + header.headerSize;
  if (header.bits <= 8) start += (std::size_t{1} << header.bits) * (header.headerSize == kCoreHeader ? 3 : 4);
  return std::min(start, fileSize);
}

void readPlainRows(Bytes data, const Header& header, Decoded& decoded) {
  const RowReader rowReader(data, header);
  const std::size_t rowBytes = (static_cast<std::size_t>(header.width) * header.bits + 31) / 32 * 4;
  // The last row in a file need not be padded.
  const std::size_t leastBytes = (static_cast<std::size_t>(header.width) * header.bits + 7) / 8;
  const std::size_t start = pixelStart(header, data.size());
  const Pixels pixels = decoded.bitmap.writable();
  std::int32_t rows = 0;
  for (; rows < header.height; ++rows) {
    checkCanceled();
    const std::size_t at = start + static_cast<std::size_t>(rows) * rowBytes;
    if (at > data.size() || leastBytes > data.size() - at) break;
    rowReader.read(data.data() + at, pixels.row(header.topDown ? rows : header.height - 1 - rows));
  }
  if (rows == header.height) return;
  if (header.topDown) return keepRows(decoded, rows);
  if (rows == 0) refusePicture("The BMP file is damaged: it ends before the first row of the picture.");
  for (std::int32_t y = 0; y < header.height - rows; ++y) {
    std::memset(pixels.row(y), 0, static_cast<std::size_t>(header.width) * 4);
  }
  decoded.notice = damageNotice("only the lower " + std::to_string(rows) + " of " +
                                std::to_string(header.height) + " rows could be read");
}

void readRunLengths(Bytes data, const Header& header, Decoded& decoded) {
  const std::size_t start = pixelStart(header, data.size());
  const Palette palette = header.bits <= 8 ? readPalette(data, header) : Palette{};
  const RunLengths result = unpackRunLengths(data.subspan(std::min(start, data.size())), header.bits, palette,
                                             decoded.bitmap.writable(), header.topDown);
  if (result.rows == 0)
    refusePicture("The BMP file is damaged: it ends before the first row of the picture.");
  if (!result.complete) {
    decoded.notice = partsMissingNotice();
  }
}

/// A version 5 header may embed a color profile.
void readProfile(Bytes data, const Header& header, Metadata& metadata) {
  if (header.headerSize < kV5Header) return;
  ByteReader reader(data);
  reader.seek(kFileHeader + 56);
  constexpr std::uint32_t kEmbedded = 0x4D424544;  // "MBED"
  if (reader.u32() != kEmbedded) return;
  reader.seek(kFileHeader + 112);
  const std::size_t offset = kFileHeader + std::size_t{reader.u32()};
  const std::size_t size = reader.u32();
  if (offset > data.size() || size > data.size() - offset) return;
  const Bytes profile = data.subspan(offset, size);
  metadata.iccProfile.assign(profile.begin(), profile.end());
}

bool hasFileHeader(Bytes data) { return data.size() >= 2 && data[0] == 'B' && data[1] == 'M'; }

/// A device-independent bitmap without a file header, as on clipboards: it begins with the information
/// header.
bool isBareBitmap(Bytes data) {
  if (data.size() < kInfoHeader) return false;
  ByteReader reader(data);
  constexpr std::array<std::uint32_t, 5> kSizes{kInfoHeader, kV2Header, kV3Header, 108, kV5Header};
  if (std::ranges::find(kSizes, reader.u32()) == kSizes.end()) return false;
  const std::int32_t width = reader.i32(), height = reader.i32();
  const std::uint16_t planes = reader.u16(), bits = reader.u16();
  constexpr std::array<std::uint16_t, 6> kBits{1, 4, 8, 16, 24, 32};
  return width > 0 && height != 0 && planes == 1 && std::ranges::find(kBits, bits) != kBits.end() &&
         reader.u32() <= kAlphaBitfields;
}

/// Prepends a file header to a bare bitmap.
std::vector<std::uint8_t> asFile(Bytes bitmap) {
  ByteReader reader(bitmap);
  const std::size_t headerSize = reader.u32();
  reader.skip(10);
  const std::uint16_t bits = reader.u16();
  const std::uint32_t compression = reader.u32();
  reader.skip(12);
  const std::size_t used = reader.u32();
  constexpr std::size_t kMostColors = 256;
  const std::size_t colors = std::min(kMostColors, bits > 8 || used > 0 ? used : std::size_t{1} << bits);
  const std::size_t masks = headerSize != kInfoHeader        ? 0
                            : compression == kBitfields      ? 12
                            : compression == kAlphaBitfields ? 16
                                                             : 0;
  ByteWriter writer;
  writer.text("BM");
  writer.u32(kFileHeader + bitmap.size());
  writer.u32(0);
  writer.u32(kFileHeader + headerSize + masks + 4 * colors);
  writer.bytes(bitmap);
  return writer.finish();
}

}  // namespace

bool probe(Bytes data) {
  return (hasFileHeader(data) && data.size() >= kFileHeader + 4) || isBareBitmap(data);
}

Decoded decode(Bytes data) {
  if (!hasFileHeader(data) && isBareBitmap(data)) return decode(asFile(data));
  Decoded decoded;
  const Header header = readHeader(data, decoded.metadata);
  readProfile(data, header, decoded.metadata);
  decoded.stored.bitsPerSample = header.bits < 8 ? static_cast<std::int32_t>(header.bits) : 8;
  decoded.stored.hasAlpha = header.masks[3] != 0;

  const bool runLengths = (header.compression == kRle8 && header.bits == 8) ||
                          (header.compression == kRle4 && header.bits == 4) ||
                          (header.compression == kRle24 && header.bits == 24);
  const bool plain = header.compression == kNone ||
                     ((header.compression == kBitfields || header.compression == kAlphaBitfields) &&
                      (header.bits == 16 || header.bits == 32));
  if (runLengths) {
    decoded.bitmap = Bitmap::filled(header.width, header.height);
    readRunLengths(data, header, decoded);
  } else if (plain) {
    decoded.bitmap = Bitmap::uninitialized(header.width, header.height);
    readPlainRows(data, header, decoded);
  } else {
    refusePicture("The BMP file cannot be read: compression " + std::to_string(header.compression) +
                  " with " + std::to_string(header.bits) + " bits per pixel is not known.");
  }
  const bool alphaIsMeant = header.headerSize >= kV5Header && header.compression == kBitfields;
  if (header.masks[3] != 0 && !alphaIsMeant) dropEmptyAlpha(decoded.bitmap);
  convertToSrgb(decoded, PixelKind::rgb);
  return decoded;
}

/// Writes 24 bits per pixel for an opaque picture, the most widely supported form; else 32 with a version 5
/// header, which has alpha.
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  const ConstPixels pixels = bitmap.pixels();
  const bool opaque = isOpaque(bitmap.pixels());
  const std::size_t headerSize = opaque ? kInfoHeader : kV5Header;
  const std::size_t bytesPerPixel = opaque ? 3 : 4;
  const std::size_t rowBytes = (static_cast<std::size_t>(pixels.width) * bytesPerPixel + 3) / 4 * 4;
  const std::size_t imageSize = rowBytes * static_cast<std::size_t>(pixels.height);
  const std::size_t offset = kFileHeader + headerSize;
  if (offset + imageSize > UINT32_MAX) {
    throw RuntimeError(err::kInvalidCall,
                       "The picture is too large for a BMP file, which holds 4 GB at most.");
  }
  const auto perMeter = [](double perInch) {
    return perInch > 0 && perInch < 1e6 ? static_cast<std::size_t>(std::lround(perInch * kInchesPerMeter))
                                        : 0;
  };

  ByteWriter writer;
  writer.text("BM");
  writer.u32(offset + imageSize);
  writer.u32(0);
  writer.u32(offset);
  writer.u32(headerSize);
  writer.u32(static_cast<std::size_t>(pixels.width));
  writer.u32(static_cast<std::size_t>(pixels.height));
  writer.u16(1);
  writer.u16(8 * bytesPerPixel);
  writer.u32(opaque ? kNone : kBitfields);
  writer.u32(imageSize);
  writer.u32(perMeter(metadata.resolutionX));
  writer.u32(perMeter(metadata.resolutionY));
  writer.zeros(8);
  if (!opaque) {
    for (const std::uint32_t mask : {0x00FF0000U, 0x0000FF00U, 0x000000FFU, 0xFF000000U}) writer.u32(mask);
    writer.u32(0x73524742);  // the color space "sRGB"
    writer.zeros(48);
    writer.u32(4);  // rendering intent: perceptual
    writer.zeros(12);
  }
  std::vector<std::uint8_t> row(rowBytes);
  for (std::int32_t y = pixels.height; y-- > 0;) {
    const std::uint8_t* source = pixels.row(y);
    std::uint8_t* target = row.data();
    for (std::int32_t x = 0; x < pixels.width; ++x, source += 4, target += bytesPerPixel) {
      target[0] = source[2];
      target[1] = source[1];
      target[2] = source[0];
      if (!opaque) target[3] = source[3];
    }
    writer.bytes(row);
  }
  return writer.finish();
}

}  // namespace kestrel::engine::bmp
