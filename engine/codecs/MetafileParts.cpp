#include <algorithm>
#include <array>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "Formats.h"
#include "MetafilePlayer.h"

// The bitmaps and the texts within metafiles.

namespace kestrel::engine::metafile {
namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kCoreHeader = 12;

/// Where the pixels begin behind a header: after masks and palette.
std::size_t pixelsBehind(Bytes header) {
  ByteReader reader(header);
  const std::size_t size = reader.u32();
  if (size == kCoreHeader) {
    reader.skip(6);
    const std::uint16_t bits = reader.u16();
    return size + (bits <= 8 ? (std::size_t{1} << bits) * 3 : 0);
  }
  reader.skip(10);
  const std::uint16_t bits = reader.u16();
  const std::uint32_t compression = reader.u32();
  reader.skip(12);
  const std::size_t used = reader.u32();
  const std::size_t masks = compression == 3 && size == 40 ? 12 : 0;
  const std::size_t colors =
      bits <= 8 ? (used > 0 ? std::min<std::size_t>(used, 256) : std::size_t{1} << bits) : used;
  return size + masks + 4 * std::min<std::size_t>(colors, 256);
}

/// A BMP file around the bitmap, which its codec then reads.
std::vector<std::uint8_t> asFile(Bytes header, Bytes pixels) {
  ByteWriter writer;
  writer.text("BM");
  writer.u32(kFileHeader + header.size() + pixels.size());
  writer.u32(0);
  writer.u32(kFileHeader + header.size());
  writer.bytes(header);
  writer.bytes(pixels);
  return writer.finish();
}

constexpr std::array<std::uint16_t, 32> kWindows80{
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

/// The Greek letters of the symbol font, from A and from a.
constexpr std::array<std::uint16_t, 26> kGreekUpper{
    0x391, 0x392, 0x3A7, 0x394, 0x395, 0x3A6, 0x393, 0x397, 0x399, 0x3D1, 0x39A, 0x39B, 0x39C,
    0x39D, 0x39F, 0x3A0, 0x398, 0x3A1, 0x3A3, 0x3A4, 0x3A5, 0x3C2, 0x3A9, 0x39E, 0x3A8, 0x396};
constexpr std::array<std::uint16_t, 26> kGreekLower{
    0x3B1, 0x3B2, 0x3C7, 0x3B4, 0x3B5, 0x3C6, 0x3B3, 0x3B7, 0x3B9, 0x3D5, 0x3BA, 0x3BB, 0x3BC,
    0x3BD, 0x3BF, 0x3C0, 0x3B8, 0x3C1, 0x3C3, 0x3C4, 0x3C5, 0x3D6, 0x3C9, 0x3BE, 0x3C8, 0x3B6};

std::uint32_t symbolOf(std::uint32_t code) {
  code &= 0xFF;
  if (code >= 'A' && code <= 'Z') return kGreekUpper[code - 'A'];
  if (code >= 'a' && code <= 'z') return kGreekLower[code - 'a'];
  switch (code) {
    case 0x2D:
      return 0x2212;  // minus
    case 0xA3:
      return 0x2264;
    case 0xA5:
      return 0x221E;
    case 0xAE:
      return 0x2192;
    case 0xB1:
      return 0xB1;
    case 0xB3:
      return 0x2265;
    case 0xB4:
      return 0xD7;
    case 0xB6:
      return 0x2202;
    case 0xB9:
      return 0x2260;
    case 0xBB:
      return 0x2248;
    case 0xD6:
      return 0x221A;
    case 0xE5:
      return 0x2211;
    case 0xF2:
      return 0x222B;
    default:
      return code;
  }
}

std::string utf8(std::uint32_t code) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  const auto tail = [&](int shift) { return byte(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x20) return " ";
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0 | code >> 6), tail(0)};
  if (code < 0x10000) return {byte(0xE0 | code >> 12), tail(6), tail(0)};
  return {byte(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
}

}  // namespace

Bitmap decodeDib(Bytes header, Bytes pixels) {
  try {
    return bmp::decode(asFile(header, pixels)).bitmap;
  } catch (const RuntimeError&) {
    return {};  // a damaged part does not spoil the whole
  }
}

Bitmap decodeDib(Bytes dib) {
  if (dib.size() < 40) return {};
  const std::size_t at = std::min(pixelsBehind(dib), dib.size());
  return decodeDib(dib.first(at), dib.subspan(at));
}

std::vector<std::uint8_t> encodeDib(const Bitmap& bitmap) {
  Bitmap opaque = bitmap;
  const Pixels pixels = opaque.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
      for (int i = 0; i < 3; ++i)
        p[i] = static_cast<std::uint8_t>((p[i] * p[3] + 255 * (255 - p[3]) + 127) / 255);
      p[3] = 255;
    }
  }
  std::vector<std::uint8_t> file = bmp::encode(opaque, {}, {});
  file.erase(file.begin(), file.begin() + kFileHeader);
  return file;
}

std::vector<std::string> lettersOf(Bytes text, bool symbols) {
  std::vector<std::string> letters;
  for (const std::uint8_t byte : text) {
    const std::uint32_t code = byte >= 0x80 && byte < 0xA0 ? kWindows80[byte - 0x80U] : byte;
    letters.push_back(utf8(symbols ? symbolOf(byte) : code));
  }
  return letters;
}

std::vector<std::string> lettersOf(const std::vector<std::uint16_t>& text, bool symbols) {
  std::vector<std::string> letters;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t code = text[i];
    const bool pair = code >= 0xD800 && code < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                      text[i + 1] < 0xE000;
    if (pair) {
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00U);
    } else if (code >= 0xD800 && code < 0xE000) {
      code = 0xFFFD;
    }
    letters.push_back(utf8(symbols && !pair ? symbolOf(code) : code));
    // A letter for each advance: the second half of a pair has none to show.
    if (pair) letters.emplace_back();
  }
  return letters;
}

}  // namespace kestrel::engine::metafile
