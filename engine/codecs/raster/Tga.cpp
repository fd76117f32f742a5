#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "Raster.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Flatten.h"
#include "engine/parallel/Cancellation.h"
#include "engine/pixels/Opaque.h"

// Truevision TGA 2.0: a header of 18 bytes, a text, a color map, pixels, and since version 2 a footer with a
// signature. Version 1 has no signature.

namespace kestrel::engine::tga {
namespace {

constexpr std::size_t kHeaderSize = 18;
constexpr std::size_t kFooterSize = 26;
constexpr std::string_view kFooterMark{"TRUEVISION-XFILE.\0", 18};

enum Type : std::uint8_t { kMapped = 1, kColor = 2, kGray = 3, kPacked = 8 };

struct Header {
  std::size_t textSize = 0;
  bool hasMap = false;
  std::uint8_t type = 0;
  bool packed = false;
  std::size_t mapFirst = 0, mapCount = 0;
  std::uint32_t mapBits = 0;
  std::int32_t width = 0, height = 0;
  std::uint32_t bits = 0;
  std::uint32_t alphaBits = 0;
  bool fromRight = false, fromTop = false;
};

Header readHeader(ByteReader& reader) {
  Header header;
  header.textSize = reader.u8();
  header.hasMap = reader.u8() == 1;
  const std::uint8_t type = reader.u8();
  header.type = type & 7;
  header.packed = (type & kPacked) != 0;
  header.mapFirst = reader.u16();
  header.mapCount = reader.u16();
  header.mapBits = reader.u8();
  reader.skip(4);
  header.width = reader.u16();
  header.height = reader.u16();
  header.bits = reader.u8();
  const std::uint8_t flags = reader.u8();
  header.alphaBits = flags & 15;
  header.fromRight = (flags & 0x10) != 0;
  header.fromTop = (flags & 0x20) != 0;
  return header;
}

bool isDirectDepth(std::uint32_t bits) { return bits == 15 || bits == 16 || bits == 24 || bits == 32; }

bool isValid(const Header& header) {
  if (header.width == 0 || header.height == 0) return false;
  switch (header.type) {
    case kMapped:
      return header.hasMap && (header.bits == 8 || header.bits == 16) && isDirectDepth(header.mapBits) &&
             header.mapCount > 0;
    case kColor:
      return isDirectDepth(header.bits);
    case kGray:
      return header.bits == 8 || header.bits == 16;
    default:
      return false;
  }
}

bool hasFooter(Bytes data) {
  return data.size() >= kHeaderSize + kFooterSize &&
         std::memcmp(data.data() + data.size() - kFooterMark.size(), kFooterMark.data(),
                     kFooterMark.size()) == 0;
}

constexpr std::size_t kAreaSize = 495;
constexpr std::size_t kAttributesTypeInArea = 494;

/// Attributes type in the extension area of version 2: meaning of a pixel's fourth byte (0 to 2: not
/// alpha).
enum AttributesType { kUnspecified = -1, kAlpha = 3, kPremultiplied = 4 };

int attributesTypeOf(Bytes data) {
  if (!hasFooter(data)) return kUnspecified;
  ByteReader reader(data);
  reader.seek(data.size() - kFooterSize);
  const std::size_t area = reader.u32();
  if (area < kHeaderSize || area > data.size() || data.size() - area < kAreaSize) return kUnspecified;
  return data[area + kAttributesTypeInArea];
}

/// A pixel of 15 to 32 bits.
Pixel readColor(const std::uint8_t* bytes, std::uint32_t bits, bool alpha) {
  if (bits >= 24) return {bytes[2], bytes[1], bytes[0], alpha && bits == 32 ? bytes[3] : std::uint8_t{255}};
  const int value = bytes[0] | bytes[1] << 8;
  const auto level = [value](int shift) {
    return static_cast<std::uint8_t>(((value >> shift & 31) * 255 + 15) / 31);
  };
  const bool clear = alpha && bits == 16 && (value & 0x8000) == 0;
  return {level(10), level(5), level(0), clear ? std::uint8_t{0} : std::uint8_t{255}};
}

std::size_t bytesOf(std::uint32_t bits) { return (bits + 7) / 8; }

/// Reads pixels one by one, RLE or uncompressed.
class PixelReader {
 public:
  PixelReader(ByteReader& reader, std::size_t pixelBytes, bool packed)
      : reader_(reader), pixelBytes_(pixelBytes), packed_(packed) {}

  /// Null at the end of the file.
  const std::uint8_t* next() {
    if (!packed_) return fetch() ? pixel_.data() : nullptr;
    if (left_ == 0) {
      if (reader_.remaining() == 0) return nullptr;
      const std::uint8_t head = reader_.u8();
      isRun_ = (head & 0x80) != 0;
      left_ = (head & 0x7F) + 1;
      if (isRun_ && !fetch()) return nullptr;
    }
    --left_;
    return isRun_ || fetch() ? pixel_.data() : nullptr;
  }

 private:
  bool fetch() {
    if (reader_.remaining() < pixelBytes_) return false;
    std::ranges::copy(reader_.take(pixelBytes_), pixel_.begin());
    return true;
  }

  ByteReader& reader_;
  std::size_t pixelBytes_;
  bool packed_;
  bool isRun_ = false;
  int left_ = 0;
  std::array<std::uint8_t, 4> pixel_{};
};

std::vector<Pixel> readMap(ByteReader& reader, const Header& header, bool alpha) {
  std::vector<Pixel> map(header.mapFirst, Pixel{0, 0, 0, 255});
  for (std::size_t i = 0; i < header.mapCount; ++i) {
    map.push_back(readColor(reader.take(bytesOf(header.mapBits)).data(), header.mapBits, alpha));
  }
  return map;
}

Pixel pixelOf(const std::uint8_t* bytes, const Header& header, const std::vector<Pixel>& map, bool alpha) {
  if (header.type == kColor) return readColor(bytes, header.bits, alpha);
  if (header.type == kGray) {
    return {bytes[0], bytes[0], bytes[0], alpha && header.bits == 16 ? bytes[1] : std::uint8_t{255}};
  }
  const std::size_t index = header.bits == 8 ? bytes[0] : static_cast<std::size_t>(bytes[0] | bytes[1] << 8);
  return index < map.size() ? map[index] : Pixel{0, 0, 0, 255};
}

void unpremultiply(Pixel& p) {
  if (p.a == 0) return;
  for (std::uint8_t* c : {&p.r, &p.g, &p.b})
    *c = static_cast<std::uint8_t>(std::min(255, (*c * 255 + p.a / 2) / p.a));
}

void writeRow(ByteWriter& writer, const std::uint8_t* row, std::size_t width, std::size_t pixelBytes) {
  const auto same = [&](std::size_t a, std::size_t b) {
    return std::memcmp(row + 4 * a, row + 4 * b, 4) == 0;
  };
  const auto put = [&](std::size_t x) {
    const std::uint8_t* const p = row + 4 * x;
    writer.u8(p[2]);
    writer.u8(p[1]);
    writer.u8(p[0]);
    if (pixelBytes == 4) writer.u8(p[3]);
  };
  for (std::size_t x = 0; x < width;) {
    std::size_t count = 1;
    if (x + 1 < width && same(x, x + 1)) {
      while (count < 128 && x + count < width && same(x, x + count)) ++count;
      writer.u8(0x80 | (count - 1));
      put(x);
    } else {
      while (count < 128 && x + count < width && !(x + count + 1 < width && same(x + count, x + count + 1)))
        ++count;
      writer.u8(count - 1);
      for (std::size_t i = 0; i < count; ++i) put(x + i);
    }
    x += count;
  }
}

}  // namespace

bool probe(Bytes data) {
  if (data.size() <= kHeaderSize || data[1] > 1 || (data[2] & ~(7 | kPacked)) != 0) return false;
  ByteReader reader(data);
  const Header header = readHeader(reader);
  if (!isValid(header)) return false;
  // Bits 6 and 7 of the flags are obsolete; a file without a color map has zeros in its fields.
  const bool plain = header.hasMap || (header.mapCount == 0 && header.mapBits == 0) || header.type != kMapped;
  return hasFooter(data) || (plain && (data[17] & 0xC0) == 0);
}

Decoded decode(Bytes data) {
  ByteReader reader(data);
  const Header header = readHeader(reader);
  if (!isValid(header)) refusePicture("The TGA file is damaged: its header is invalid.");
  constexpr std::int64_t kPixelsPerByte = 128;
  checkClaimedSize(header.width, header.height, data.size(), kPixelsPerByte);

  const int attributesType = attributesTypeOf(data);
  const bool deep = (header.type == kMapped ? header.mapBits : header.bits) == 32;
  const bool alpha =
      (attributesType == kUnspecified || attributesType >= kAlpha) && (header.alphaBits > 0 || deep);
  reader.skip(header.textSize);
  std::vector<Pixel> map;
  if (header.type == kMapped) {
    map = readMap(reader, header, alpha);
  } else if (header.hasMap) {
    reader.skip(header.mapCount * bytesOf(header.mapBits));
  }

  Decoded decoded;
  decoded.stored.hasAlpha = alpha;
  decoded.bitmap = Bitmap::filled(header.width, header.height);
  const Pixels pixels = decoded.bitmap.writable();
  PixelReader source(reader, bytesOf(header.bits), header.packed);
  const std::int64_t count = std::int64_t{header.width} * header.height;
  std::int64_t done = 0;
  for (; done < count; ++done) {
    const std::uint8_t* const bytes = source.next();
    if (bytes == nullptr) break;
    Pixel pixel = pixelOf(bytes, header, map, alpha);
    if (attributesType == kPremultiplied) unpremultiply(pixel);
    const auto x = static_cast<std::int32_t>(done % header.width),
               y = static_cast<std::int32_t>(done / header.width);
    if (x == 0) checkCanceled();
    std::memcpy(pixels.row(header.fromTop ? y : header.height - 1 - y) +
                    4 * (header.fromRight ? header.width - 1 - x : x),
                &pixel, sizeof pixel);
  }
  const std::int64_t rows = done / header.width;
  if (rows == 0) refusePicture("The TGA file is damaged: it ends before the first row of the picture.");
  if (rows < header.height) {
    decoded.notice = rowsReadNotice(rows, header.height);
  }
  if (alpha && attributesType == kUnspecified && rows == header.height) dropEmptyAlpha(decoded.bitmap);
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata&, const EncodeOptions&) {
  const ConstPixels pixels = bitmap.pixels();
  if (pixels.width > 65535 || pixels.height > 65535) {
    throw RuntimeError(err::kInvalidCall,
                       "The picture is too large for a TGA file, whose sides have at most 65535 pixels.");
  }
  const std::size_t pixelBytes = isOpaque(bitmap.pixels()) ? 3 : 4;
  ByteWriter writer;
  writer.u16(0);
  writer.u8(kColor | kPacked);
  writer.zeros(9);
  writer.u16(static_cast<std::size_t>(pixels.width));
  writer.u16(static_cast<std::size_t>(pixels.height));
  writer.u8(8 * pixelBytes);
  constexpr std::size_t kFromTop = 0x20;
  writer.u8(kFromTop | (pixelBytes == 4 ? 8 : 0));
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    writeRow(writer, pixels.row(y), static_cast<std::size_t>(pixels.width), pixelBytes);
  }
  const std::size_t area = pixelBytes == 4 ? writer.size() : 0;
  if (area > 0) {
    writer.u16(kAreaSize);
    writer.zeros(kAttributesTypeInArea - 2);
    writer.u8(kAlpha);
  }
  writer.u32(area);
  writer.u32(0);
  writer.text(kFooterMark);
  return writer.finish();
}

}  // namespace kestrel::engine::tga
