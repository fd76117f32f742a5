#include <optional>
#include <string>

#include "Raster.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Quantize.h"
#include "engine/parallel/Cancellation.h"

// WAP-237: type 0, a zero byte, width and height in groups of 7 bits, then rows of bits, 1 for white.

namespace kestrel::engine::wbmp {
namespace {

struct Header {
  std::int64_t width, height;
  std::size_t size;
};

/// A number in groups of 7 bits; a set high bit means that more follow. Nothing if it is longer than any
/// valid side.
std::optional<std::int64_t> readNumber(ByteReader& reader) {
  std::int64_t value = 0;
  for (int i = 0; i < 4 && reader.remaining() > 0; ++i) {
    const std::uint8_t group = reader.u8();
    value = value << 7 | (group & 0x7F);
    if ((group & 0x80) == 0) return value;
  }
  return std::nullopt;
}

std::optional<Header> readHeader(Bytes data) {
  ByteReader reader(data);
  if (reader.remaining() < 4 || reader.u16() != 0) return std::nullopt;
  const auto width = readNumber(reader), height = readNumber(reader);
  if (!width || !height || *width < 1 || *height < 1) return std::nullopt;
  return Header{*width, *height, reader.position()};
}

void writeNumber(ByteWriter& writer, std::int32_t value) {
  for (int shift = 21; shift > 0; shift -= 7) {
    if (value >> shift != 0) writer.u8(static_cast<std::size_t>((value >> shift & 0x7F) | 0x80));
  }
  writer.u8(static_cast<std::size_t>(value & 0x7F));
}

std::int64_t rowBytes(std::int64_t width) { return (width + 7) / 8; }

}  // namespace

/// The format has no signature, so the file size must match the header.
bool probe(Bytes data) {
  const auto header = readHeader(data);
  if (!header) return false;
  return static_cast<std::int64_t>(data.size() - header->size) == rowBytes(header->width) * header->height;
}

Decoded decode(Bytes data) {
  const auto header = readHeader(data);
  if (!header) refusePicture("The WBMP file is damaged: its header is invalid.");
  constexpr std::int64_t kPixelsPerByte = 8;
  checkClaimedSize(header->width, header->height, data.size(), kPixelsPerByte);

  Decoded decoded;
  decoded.stored.bitsPerSample = 1;
  decoded.bitmap = Bitmap::uninitialized(static_cast<std::int32_t>(header->width),
                                         static_cast<std::int32_t>(header->height));
  const Pixels pixels = decoded.bitmap.writable();
  Bytes rest = data.subspan(header->size);
  const auto size = static_cast<std::size_t>(rowBytes(header->width));
  std::int32_t rows = 0;
  for (; rows < pixels.height && rest.size() >= size; ++rows, rest = rest.subspan(size)) {
    checkCanceled();
    std::uint8_t* p = pixels.row(rows);
    for (std::size_t x = 0; x < static_cast<std::size_t>(pixels.width); ++x, p += 4) {
      const bool white = (rest[x / 8] >> (7 - x % 8) & 1) != 0;
      p[0] = p[1] = p[2] = white ? 255 : 0;
      p[3] = 255;
    }
  }
  if (rows < pixels.height) keepRows(decoded, rows);
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata&, const EncodeOptions&) {
  const std::vector<std::uint8_t> indices = ditherToBlackAndWhite(bitmap);
  ByteWriter writer;
  writer.u16(0);
  writeNumber(writer, bitmap.width());
  writeNumber(writer, bitmap.height());
  const auto width = static_cast<std::size_t>(bitmap.width());
  for (std::size_t row = 0; row < indices.size(); row += width) {
    for (std::size_t x = 0; x < width; x += 8) {
      std::size_t byte = 0;
      for (std::size_t i = 0; i < 8; ++i) {
        byte = byte << 1 | (x + i < width ? indices[row + x + i] : std::size_t{0});
      }
      writer.u8(byte);
    }
  }
  return writer.finish();
}

}  // namespace kestrel::engine::wbmp
