#include "MetafileDib.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/jpeg/Jpeg.h"
#include "engine/codecs/png/Png.h"
#include "engine/codecs/raster/Raster.h"

namespace kestrel::engine::metafile {
namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kCoreHeader = 12;
constexpr std::size_t kInfoHeader = 40;

/// Storage layout from the header.
struct Layout {
  std::size_t headerSize = 0;
  std::int64_t width = 0, height = 0;
  std::uint16_t bits = 0;
  std::uint32_t compression = 0;
  std::size_t masks = 0;   ///< bytes
  std::size_t colors = 0;  ///< entries of the palette
};

Layout layoutOf(Bytes header) {
  Layout layout;
  ByteReader reader(header);
  layout.headerSize = reader.u32();
  if (layout.headerSize == kCoreHeader) {
    layout.width = reader.u16();
    layout.height = reader.u16();
    reader.skip(2);
    layout.bits = reader.u16();
    layout.colors = layout.bits <= 8 ? std::size_t{1} << layout.bits : 0;
    return layout;
  }
  layout.width = reader.i32();
  layout.height = reader.i32();
  reader.skip(2);
  layout.bits = reader.u16();
  layout.compression = reader.u32();
  reader.skip(12);
  const std::size_t used = reader.u32();
  constexpr std::uint32_t kBitfields = 3;
  layout.masks = layout.compression == kBitfields && layout.headerSize == kInfoHeader ? 12 : 0;
  constexpr std::size_t kMost = 256;
  layout.colors = std::min(kMost, layout.bits > 8 ? used : used > 0 ? used : std::size_t{1} << layout.bits);
  return layout;
}

/// Wraps the bitmap in a BMP file for its codec.
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

/// The header with a gray palette.
std::vector<std::uint8_t> withGrays(Bytes header, const Layout& layout) {
  const std::size_t count = std::size_t{1} << layout.bits;
  std::vector<std::uint8_t> result(header.begin(),
                                   header.begin() + static_cast<std::ptrdiff_t>(layout.headerSize));
  for (std::size_t i = 0; i < count; ++i) {
    const auto gray = static_cast<std::uint8_t>(i * 255 / (count - 1));
    result.insert(result.end(), {gray, gray, gray});
    if (layout.headerSize != kCoreHeader) result.push_back(0);
  }
  // 0 colors used means the maximum for the depth.
  if (layout.headerSize >= kInfoHeader) std::memset(result.data() + 32, 0, 4);
  return result;
}

Bitmap read(Bytes header, Bytes pixels, DibColors colors) {
  const Layout layout = layoutOf(header);
  constexpr std::uint32_t kJpeg = 4, kPng = 5;
  if (layout.headerSize >= kInfoHeader && layout.compression == kJpeg) return jpeg::decode(pixels).bitmap;
  if (layout.headerSize >= kInfoHeader && layout.compression == kPng) return png::decode(pixels).bitmap;
  const bool indexed = layout.bits == 1 || layout.bits == 2 || layout.bits == 4 || layout.bits == 8;
  if (colors != DibColors::rgb && indexed && layout.headerSize <= header.size())
    return bmp::decode(asFile(withGrays(header, layout), pixels)).bitmap;
  return bmp::decode(asFile(header, pixels)).bitmap;
}

}  // namespace

Bitmap decodeDib(Bytes header, Bytes pixels, DibColors colors) {
  try {
    return read(header, pixels, colors);
  } catch (const RuntimeError&) {
    return {};  // a damaged bitmap must not fail the drawing
  }
}

Bitmap decodeDib(Bytes dib, DibColors colors) {
  try {
    const Layout layout = layoutOf(dib);
    const std::size_t entry = colors == DibColors::palette ? 2 : layout.headerSize == kCoreHeader ? 3 : 4;
    const std::size_t palette = colors == DibColors::none ? 0 : entry * layout.colors;
    const std::size_t at = std::min(layout.headerSize + layout.masks + palette, dib.size());
    return decodeDib(dib.first(at), dib.subspan(at), colors);
  } catch (const RuntimeError&) {
    return {};
  }
}

Bitmap decodeDibWithAlpha(Bytes header, Bytes pixels) {
  Bitmap bitmap = decodeDib(header, pixels);
  if (bitmap.empty()) return bitmap;
  const Layout layout = layoutOf(header);
  const auto width = static_cast<std::size_t>(bitmap.width()),
             height = static_cast<std::size_t>(bitmap.height());
  if (layout.bits != 32 || pixels.size() / 4 / width < height) return bitmap;
  const Pixels rows = bitmap.writable();
  for (std::int32_t y = 0; y < rows.height; ++y) {
    const auto row = static_cast<std::size_t>(layout.height < 0 ? y : rows.height - 1 - y);
    const std::uint8_t* from = pixels.data() + row * width * 4;
    std::uint8_t* to = rows.row(y);
    for (std::int32_t x = 0; x < rows.width; ++x, from += 4, to += 4) {
      to[3] = from[3];
      for (int i = 0; i < 3; ++i)
        to[i] = static_cast<std::uint8_t>(from[3] == 0 ? 0 : std::min(255, to[i] * 255 / from[3]));
    }
  }
  return bitmap;
}

bool isTopDown(Bytes header) {
  if (header.size() < kInfoHeader) return false;
  return layoutOf(header).height < 0;
}

Rect withinBitmap(const Rect& part, const Bitmap& bitmap) {
  Rect result = part;
  if (bitmap.empty()) return result;
  if (part.right - part.left > bitmap.width()) {
    result.left = 0;
    result.right = bitmap.width();
  }
  if (part.bottom - part.top > bitmap.height()) {
    result.top = 0;
    result.bottom = bitmap.height();
  }
  return result;
}

namespace {

/// System colors: the 4-bit palette, and the first and last eight of the 8-bit palette, which has two more
/// after and before them.
constexpr std::array<Pixel, 16> kDeviceColors{{{0, 0, 0, 255},
                                               {128, 0, 0, 255},
                                               {0, 128, 0, 255},
                                               {128, 128, 0, 255},
                                               {0, 0, 128, 255},
                                               {128, 0, 128, 255},
                                               {0, 128, 128, 255},
                                               {192, 192, 192, 255},
                                               {128, 128, 128, 255},
                                               {255, 0, 0, 255},
                                               {0, 255, 0, 255},
                                               {255, 255, 0, 255},
                                               {0, 0, 255, 255},
                                               {255, 0, 255, 255},
                                               {0, 255, 255, 255},
                                               {255, 255, 255, 255}}};

Pixel deviceColor8(std::uint8_t index) {
  constexpr Pixel kMoneyGreen{192, 220, 192, 255}, kSkyBlue{166, 202, 240, 255}, kCream{255, 251, 240, 255},
      kMediumGray{160, 160, 164, 255};
  if (index < 8) return kDeviceColors[index];
  if (index >= 248) return kDeviceColors[index - 240U];
  switch (index) {
    case 8:
      return kMoneyGreen;
    case 9:
      return kSkyBlue;
    case 246:
      return kCream;
    case 247:
      return kMediumGray;
    default:
      break;
  }
  const auto part = [index](int shift, int largest) {
    return static_cast<std::uint8_t>((index >> shift & largest) * 255 / largest);
  };
  return {part(5, 7), part(2, 7), part(0, 3), 255};
}

/// A pixel of a device-dependent bitmap's row.
Pixel deviceColor(const std::uint8_t* row, std::int32_t x, std::uint8_t bits) {
  const std::uint8_t* const at = row + std::ptrdiff_t{x} * bits / 8;
  switch (bits) {
    case 1:
      return kDeviceColors[(at[0] >> (7 - x % 8) & 1) != 0 ? 15 : 0];
    case 4:
      return kDeviceColors[at[0] >> (x % 2 == 0 ? 4 : 0) & 0xF];
    case 8:
      return deviceColor8(at[0]);
    case 16: {
      const int value = at[0] | at[1] << 8;
      const auto part = [value](int shift) {
        return static_cast<std::uint8_t>(((value >> shift & 31) * 255 + 15) / 31);
      };
      return {part(10), part(5), part(0), 255};
    }
    default:
      return {at[2], at[1], at[0], 255};
  }
}

}  // namespace

Bitmap decodeDeviceBitmap(Bytes data) {
  ByteReader r(data);
  r.skip(2);
  const std::int32_t width = r.u16(), height = r.u16();
  const std::size_t stride = r.u16();
  const std::uint8_t planes = r.u8(), bits = r.u8();
  const Bytes pixels = r.take(r.remaining());
  constexpr std::array<std::uint8_t, 6> kBits{1, 4, 8, 16, 24, 32};
  const std::size_t needed = (static_cast<std::size_t>(width) * bits + 7) / 8;
  if (width == 0 || height == 0 || planes != 1 || std::ranges::find(kBits, bits) == kBits.end() ||
      stride < needed || pixels.size() / stride < static_cast<std::size_t>(height))
    return {};
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const Pixels rows = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    const std::uint8_t* const from = pixels.data() + static_cast<std::size_t>(y) * stride;
    std::uint8_t* to = rows.row(y);
    for (std::int32_t x = 0; x < width; ++x, to += 4) {
      const Pixel pixel = deviceColor(from, x, bits);
      std::memcpy(to, &pixel, sizeof pixel);
    }
  }
  return bitmap;
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

}  // namespace kestrel::engine::metafile
