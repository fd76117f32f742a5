#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "Gif.h"
#include "GifLzw.h"
#include "base/RuntimeError.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Quantize.h"

namespace kestrel::engine::gif {
namespace {

/// Highest compression ratio: a 12-bit code decodes to at most 4096 pixels.
constexpr std::int64_t kPixelsPerByte = 2731;

using Palette = std::array<Pixel, 256>;

/// Gray palette for files without a palette, which leave the colors to the decoder.
Palette grays() {
  Palette palette;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    const auto gray = static_cast<std::uint8_t>(i);
    palette[i] = {gray, gray, gray, 255};
  }
  return palette;
}

/// Reads the color table if `flags` announce one, else returns `otherwise`.
Palette readPalette(ByteReader& reader, std::uint8_t flags, const Palette& otherwise) {
  constexpr std::uint8_t kHasPalette = 0x80;
  if ((flags & kHasPalette) == 0) return otherwise;
  Palette palette;
  palette.fill({0, 0, 0, 255});
  const std::size_t count = std::size_t{2} << (flags & 7);
  for (std::size_t i = 0; i < count; ++i) {
    const Bytes entry = reader.take(3);
    palette[i] = {entry[0], entry[1], entry[2], 255};
  }
  return palette;
}

/// Contents of the file apart from its first picture.
struct Contents {
  std::int32_t pictures = 0;
  std::string comment;  ///< the first
};

void skipBlocks(ByteReader& reader) {
  while (const std::uint8_t size = reader.u8()) reader.skip(size);
}

/// Skips to the first image descriptor; returns its transparent index, or -1.
int findFirstPicture(ByteReader& reader) {
  constexpr std::uint8_t kExtension = 0x21, kPicture = 0x2C, kEnd = 0x3B, kGraphicControl = 0xF9;
  int transparent = -1;
  while (true) {
    const std::uint8_t mark = reader.u8();
    if (mark == kPicture) return transparent;
    if (mark == kEnd) refusePicture("The GIF file holds no picture.");
    // Some programs write extra bytes between the blocks.
    if (mark != kExtension) continue;
    const std::uint8_t kind = reader.u8();
    if (kind == kGraphicControl && reader.remaining() >= 5) {
      ByteReader control = reader;
      const bool whole = control.u8() >= 4;
      const std::uint8_t flags = control.u8();
      control.skip(2);
      const std::uint8_t index = control.u8();
      if (whole) transparent = (flags & 1) != 0 ? index : -1;
    }
    skipBlocks(reader);
  }
}

std::string readText(ByteReader& reader) {
  std::string text;
  while (const std::uint8_t size = reader.u8()) {
    const Bytes part = reader.take(size);
    text.append(part.begin(), part.end());
  }
  return text;
}

/// Scans the blocks up to the end or the first incomplete one.
Contents readContents(Bytes data) {
  constexpr std::uint8_t kExtension = 0x21, kPicture = 0x2C, kEnd = 0x3B, kComment = 0xFE;
  Contents contents;
  try {
    ByteReader reader(data);
    reader.skip(10);
    const std::uint8_t screenFlags = reader.u8();
    reader.skip(2);
    readPalette(reader, screenFlags, {});
    for (std::uint8_t mark = reader.u8(); mark != kEnd; mark = reader.u8()) {
      if (mark == kPicture) {
        reader.skip(8);
        readPalette(reader, reader.u8(), {});
        reader.skip(1);
        ++contents.pictures;
        skipBlocks(reader);
      } else if (mark == kExtension) {
        const bool isComment = reader.u8() == kComment;
        if (isComment && contents.comment.empty()) {
          contents.comment = readText(reader);
        } else {
          skipBlocks(reader);
        }
      }
    }
  } catch (const RuntimeError& error) {
    if (error.Number() != err::kInvalidPicture) throw;  // truncated: keep what was read
  }
  return contents;
}

/// Row numbers in storage order.
std::vector<std::int32_t> rowOrder(std::int32_t height, bool interlaced) {
  std::vector<std::int32_t> order;
  order.reserve(static_cast<std::size_t>(height));
  if (!interlaced) {
    for (std::int32_t y = 0; y < height; ++y) order.push_back(y);
    return order;
  }
  constexpr std::int32_t kPasses[][2] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
  for (const auto& [first, step] : kPasses) {
    for (std::int32_t y = first; y < height; y += step) order.push_back(y);
  }
  return order;
}

struct CloseWriter {
  void operator()(GifFileType* file) const { EGifCloseFile(file, nullptr); }
};
struct FreeMap {
  void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using Map = std::unique_ptr<ColorMapObject, FreeMap>;

std::string reasonOf(int code) {
  const char* const text = GifErrorString(code);
  return text != nullptr ? text : "unknown reason";
}

Map makeMap(const std::vector<Pixel>& palette) {
  const std::size_t size = std::max<std::size_t>(2, std::bit_ceil(palette.size()));
  std::vector<GifColorType> colors(size);
  for (std::size_t i = 0; i < palette.size(); ++i) colors[i] = {palette[i].r, palette[i].g, palette[i].b};
  return Map(GifMakeMapObject(static_cast<int>(size), colors.data()));
}

void check(int result, GifFileType* file) {
  if (result != GIF_ERROR) return;
  throw RuntimeError(err::kInvalidCall, "The picture cannot be saved as GIF: " + reasonOf(file->Error) + ".");
}

void putComment(GifFileType* file, const std::string& comment) {
  if (comment.empty()) return;
  constexpr std::size_t kMostOfBlock = 255;
  check(EGifPutExtensionLeader(file, COMMENT_EXT_FUNC_CODE), file);
  for (std::size_t at = 0; at < comment.size(); at += kMostOfBlock) {
    const std::size_t size = std::min(kMostOfBlock, comment.size() - at);
    check(EGifPutExtensionBlock(file, static_cast<int>(size), comment.data() + at), file);
  }
  check(EGifPutExtensionTrailer(file), file);
}

}  // namespace

bool probe(Bytes data) {
  return data.size() >= 6 &&
         (std::memcmp(data.data(), "GIF87a", 6) == 0 || std::memcmp(data.data(), "GIF89a", 6) == 0);
}

Decoded decode(Bytes data) {
  ByteReader reader(data);
  reader.skip(6);
  const std::int32_t screenWidth = reader.u16(), screenHeight = reader.u16();
  const std::uint8_t screenFlags = reader.u8();
  reader.skip(2);
  const Palette shared = readPalette(reader, screenFlags, grays());
  const int transparent = findFirstPicture(reader);

  const std::int32_t left = reader.u16(), top = reader.u16();
  const std::int32_t frameWidth = reader.u16(), frameHeight = reader.u16();
  const std::uint8_t flags = reader.u8();
  Palette palette = readPalette(reader, flags, shared);
  if (transparent >= 0) palette[static_cast<std::size_t>(transparent)].a = 0;
  // Some files state no screen size, or one smaller than the picture.
  const std::int32_t width = std::max(screenWidth, left + frameWidth);
  const std::int32_t height = std::max(screenHeight, top + frameHeight);
  checkClaimedSize(frameWidth, frameHeight, data.size(), kPixelsPerByte);
  // The screen around the picture takes no bytes, but a screen many times larger than plausible is refused.
  checkClaimedSize(width, height, data.size(), 8 * kPixelsPerByte);

  Decoded decoded;
  Contents contents = readContents(data);
  decoded.stored.pages = std::max(1, contents.pictures);
  decoded.metadata.comment = std::move(contents.comment);
  decoded.stored.hasAlpha = transparent >= 0 || frameWidth != width || frameHeight != height;
  decoded.bitmap = Bitmap::filled(width, height);
  const Pixels pixels = decoded.bitmap.writable();
  const auto rowSize = static_cast<std::size_t>(frameWidth);
  const std::vector<std::uint8_t> indices =
      unpackLzw(reader, rowSize * static_cast<std::size_t>(frameHeight));
  const auto rows = static_cast<std::int32_t>(indices.size() / rowSize);
  if (rows == 0) refusePicture("The GIF file is damaged: it ends before the first row of the picture.");

  constexpr std::uint8_t kInterlaced = 0x40;
  const std::vector<std::int32_t> order = rowOrder(frameHeight, (flags & kInterlaced) != 0);
  for (std::int32_t i = 0; i < rows; ++i) {
    const std::uint8_t* const source = indices.data() + static_cast<std::size_t>(i) * rowSize;
    std::uint8_t* const target =
        pixels.row(top + order[static_cast<std::size_t>(i)]) + 4 * static_cast<std::size_t>(left);
    for (std::size_t x = 0; x < rowSize; ++x) std::memcpy(target + 4 * x, &palette[source[x]], 4);
  }
  if (rows < frameHeight) {
    decoded.notice = rowsReadNotice(rows, frameHeight);
  }
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  if (bitmap.width() > 65535 || bitmap.height() > 65535) {
    throw RuntimeError(err::kInvalidCall,
                       "The picture is too large for a GIF file, whose sides have at most "
                       "65535 pixels.");
  }
  Indexed indexed = quantize(bitmap);
  const Map map = makeMap(indexed.palette);
  std::vector<std::uint8_t> bytes;
  int error = 0;
  std::unique_ptr<GifFileType, CloseWriter> file(EGifOpen(
      &bytes,
      [](GifFileType* self, const GifByteType* data, int count) {
        // No exception may propagate through the library.
        try {
          auto& target = *static_cast<std::vector<std::uint8_t>*>(self->UserData);
          target.insert(target.end(), data, data + count);
          return count;
        } catch (const std::bad_alloc&) {
          return 0;
        }
      },
      &error));
  if (!file || !map) throw RuntimeError(err::kOutOfMemory, "There is not enough memory to save.");

  const bool hasTransparency = indexed.transparentIndex >= 0;
  EGifSetGifVersion(file.get(), true);
  check(EGifPutScreenDesc(file.get(), bitmap.width(), bitmap.height(), 8, 0, map.get()), file.get());
  putComment(file.get(), metadata.comment);
  if (hasTransparency) {
    const GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, indexed.transparentIndex};
    std::array<GifByteType, 4> block{};
    EGifGCBToExtension(&control, block.data());
    check(EGifPutExtension(file.get(), GRAPHICS_EXT_FUNC_CODE, block.size(), block.data()), file.get());
  }
  check(EGifPutImageDesc(file.get(), 0, 0, bitmap.width(), bitmap.height(), false, nullptr), file.get());
  for (std::size_t y = 0; y < static_cast<std::size_t>(bitmap.height()); ++y) {
    check(EGifPutLine(file.get(), indexed.indices.data() + y * static_cast<std::size_t>(bitmap.width()),
                      bitmap.width()),
          file.get());
  }
  if (EGifCloseFile(file.release(), &error) == GIF_ERROR) {
    throw RuntimeError(err::kInvalidCall, "The picture cannot be saved as GIF: " + reasonOf(error) + ".");
  }
  return bytes;
}

}  // namespace kestrel::engine::gif
