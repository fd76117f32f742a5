#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "Damage.h"
#include "Formats.h"
#include "Quantize.h"
#include "base/RuntimeError.h"

namespace kestrel::engine::gif {
namespace {

/// A code of 12 bits stands for 4096 pixels at most.
constexpr std::int64_t kPixelsPerByte = 2731;

struct CloseReader {
  void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
};
struct CloseWriter {
  void operator()(GifFileType* file) const { EGifCloseFile(file, nullptr); }
};
struct FreeMap {
  void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using Reader = std::unique_ptr<GifFileType, CloseReader>;
using Map = std::unique_ptr<ColorMapObject, FreeMap>;

std::string reasonOf(int code) {
  const char* const text = GifErrorString(code);
  return text != nullptr ? text : "unknown reason";
}

[[noreturn]] void damaged(int code) { refusePicture("The GIF file is damaged: " + reasonOf(code) + "."); }

Reader open(Bytes& rest) {
  int error = 0;
  Reader reader(DGifOpen(
      &rest,
      [](GifFileType* file, GifByteType* target, int count) {
        auto& left = *static_cast<Bytes*>(file->UserData);
        const std::size_t here = std::min(left.size(), static_cast<std::size_t>(std::max(0, count)));
        std::memcpy(target, left.data(), here);
        left = left.subspan(here);
        return static_cast<int>(here);
      },
      &error));
  if (!reader) damaged(error);
  return reader;
}

/// Goes to the first picture; gives the index that is transparent in it, or -1.
int findFirstPicture(GifFileType* file) {
  int transparent = NO_TRANSPARENT_COLOR;
  while (true) {
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(file, &record) == GIF_ERROR) damaged(file->Error);
    if (record == TERMINATE_RECORD_TYPE) refusePicture("The GIF file holds no picture.");
    if (record == IMAGE_DESC_RECORD_TYPE) {
      if (DGifGetImageDesc(file) == GIF_ERROR) damaged(file->Error);
      return transparent;
    }
    if (record != EXTENSION_RECORD_TYPE) continue;
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(file, &code, &block) == GIF_ERROR) damaged(file->Error);
    while (block != nullptr) {
      GraphicsControlBlock control{};
      if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
        transparent = control.TransparentColor;
      }
      if (DGifGetExtensionNext(file, &block) == GIF_ERROR) damaged(file->Error);
    }
  }
}

using Palette = std::array<Pixel, 256>;

/// A file without any palette leaves the colours to the reader: greys.
Palette paletteOf(const ColorMapObject* map, int transparent) {
  Palette palette;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    const auto gray = static_cast<std::uint8_t>(i);
    palette[i] = map == nullptr ? Pixel{gray, gray, gray, 255} : Pixel{0, 0, 0, 255};
    if (map != nullptr && i < static_cast<std::size_t>(map->ColorCount)) {
      palette[i] = {map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue, 255};
    }
  }
  if (transparent >= 0 && transparent < 256) palette[static_cast<std::size_t>(transparent)].a = 0;
  return palette;
}

/// The rows of a picture in the order in which they are stored.
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

}  // namespace

bool probe(Bytes data) {
  return data.size() >= 6 &&
         (std::memcmp(data.data(), "GIF87a", 6) == 0 || std::memcmp(data.data(), "GIF89a", 6) == 0);
}

Decoded decode(Bytes data) {
  Bytes rest = data;
  const Reader file = open(rest);
  const int transparent = findFirstPicture(file.get());
  const GifImageDesc& frame = file->Image;
  // Some files tell no screen, or one that is smaller than the picture on it.
  const std::int32_t width = std::max(file->SWidth, frame.Left + frame.Width);
  const std::int32_t height = std::max(file->SHeight, frame.Top + frame.Height);
  checkClaimedSize(frame.Width, frame.Height, data.size(), kPixelsPerByte);
  checkClaimedSize(width, height, data.size(), 64 * kPixelsPerByte);

  const ColorMapObject* const map = frame.ColorMap != nullptr ? frame.ColorMap : file->SColorMap;
  const Palette palette = paletteOf(map, transparent);
  Decoded decoded;
  decoded.stored.bitsPerSample = map != nullptr ? map->BitsPerPixel : 8;
  decoded.stored.hasAlpha = transparent >= 0 || frame.Width != width || frame.Height != height;
  decoded.bitmap = Bitmap::filled(width, height);
  const Pixels pixels = decoded.bitmap.writable();

  std::vector<GifPixelType> line(static_cast<std::size_t>(frame.Width));
  std::int32_t rows = 0;
  for (const std::int32_t y : rowOrder(frame.Height, frame.Interlace)) {
    if (DGifGetLine(file.get(), line.data(), frame.Width) == GIF_ERROR) break;
    std::uint8_t* target = pixels.row(frame.Top + y) + 4 * static_cast<std::size_t>(frame.Left);
    for (const GifPixelType index : line) {
      std::memcpy(target, &palette[index], 4);
      target += 4;
    }
    ++rows;
  }
  if (rows == 0) damaged(file->Error);
  if (rows < frame.Height) {
    decoded.notice = "The file is damaged or was cut short: only " + std::to_string(rows) + " of " +
                     std::to_string(frame.Height) + " rows could be read.";
  }
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata&, const EncodeOptions&) {
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
        // No exception may pass through the library.
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

  const bool seeThrough = indexed.transparentIndex >= 0;
  EGifSetGifVersion(file.get(), true);
  check(EGifPutScreenDesc(file.get(), bitmap.width(), bitmap.height(), 8, 0, map.get()), file.get());
  if (seeThrough) {
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
