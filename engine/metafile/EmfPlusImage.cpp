#include "EmfPlusImage.h"

#include <algorithm>
#include <vector>

#include "Emf.h"
#include "Metafile.h"
#include "Wmf.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/gif/Gif.h"
#include "engine/codecs/jpeg/Jpeg.h"
#include "engine/codecs/png/Png.h"
#include "engine/codecs/raster/Raster.h"
#include "engine/codecs/tiff/Tiff.h"

namespace kestrel::engine::emf::plus {
namespace {

/// Pixel formats, named by the bits per pixel and channel order.
enum PixelFormat : std::uint32_t {
  kIndexed1 = 0x00030101,
  kIndexed4 = 0x00030402,
  kIndexed8 = 0x00030803,
  kGray16 = 0x00101004,
  kRgb555 = 0x00021005,
  kRgb565 = 0x00021006,
  kArgb1555 = 0x00061007,
  kRgb24 = 0x00021808,
  kRgb32 = 0x00022009,
  kArgb32 = 0x0026200A,
  kPremultiplied32 = 0x000E200B,
  kRgb48 = 0x0010300C,
  kArgb64 = 0x0034400D,
  kPremultiplied64 = 0x001A400E
};

constexpr std::size_t bitsOf(std::uint32_t format) { return format >> 8 & 0xFF; }

std::uint8_t spread(unsigned value, unsigned most) { return static_cast<std::uint8_t>(value * 255 / most); }

Pixel straight(Pixel p) {
  const auto each = [&](std::uint8_t v) {
    return static_cast<std::uint8_t>(p.a == 0 ? 0 : std::min(255, v * 255 / p.a));
  };
  return {each(p.r), each(p.g), each(p.b), p.a};
}

Pixel fromArgb(std::uint32_t argb) {
  return {static_cast<std::uint8_t>(argb >> 16), static_cast<std::uint8_t>(argb >> 8),
          static_cast<std::uint8_t>(argb), static_cast<std::uint8_t>(argb >> 24)};
}

/// 16-bit samples: the visible range is 0 to 2^13.
std::uint8_t narrowed(const std::uint8_t* two) {
  constexpr int kWhite = 8192;
  const int value = two[0] | two[1] << 8;
  return static_cast<std::uint8_t>(std::min(value, kWhite) * 255 / kWhite);
}

Pixel pixelAt(std::uint32_t format, const std::uint8_t* row, std::size_t x,
              const std::vector<std::uint32_t>& palette) {
  const std::uint8_t* const p = row + x * bitsOf(format) / 8;
  const auto sixteen = [&] { return static_cast<unsigned>(p[0] | p[1] << 8); };
  const auto indexed = [&](unsigned index) {
    return fromArgb(index < palette.size() ? palette[index] : 0xFF000000);
  };
  switch (format) {
    case kIndexed1:
      return indexed(p[0] >> (7 - x % 8) & 1U);
    case kIndexed4:
      return indexed(x % 2 == 0 ? p[0] >> 4U : p[0] & 0xFU);
    case kIndexed8:
      return indexed(p[0]);
    case kGray16:
      return {p[1], p[1], p[1], 255};
    case kRgb555:
    case kArgb1555: {
      const unsigned v = sixteen();
      const std::uint8_t alpha = format == kRgb555 || (v & 0x8000) != 0 ? 255 : 0;
      return {spread(v >> 10 & 31, 31), spread(v >> 5 & 31, 31), spread(v & 31, 31), alpha};
    }
    case kRgb565: {
      const unsigned v = sixteen();
      return {spread(v >> 11, 31), spread(v >> 5 & 63, 63), spread(v & 31, 31), 255};
    }
    case kArgb32:
      return {p[2], p[1], p[0], p[3]};
    case kPremultiplied32:
      return straight({p[2], p[1], p[0], p[3]});
    case kRgb48:
      return {narrowed(p + 4), narrowed(p + 2), narrowed(p), 255};
    case kArgb64:
      return {narrowed(p + 4), narrowed(p + 2), narrowed(p), narrowed(p + 6)};
    case kPremultiplied64:
      return straight({narrowed(p + 4), narrowed(p + 2), narrowed(p), narrowed(p + 6)});
    default:  // 24 and 32 bits
      return {p[2], p[1], p[0], 255};
  }
}

bool isKnown(std::uint32_t format) {
  constexpr std::uint32_t kKnown[] = {kIndexed1, kIndexed4, kIndexed8,        kGray16,         kRgb555,
                                      kRgb565,   kArgb1555, kRgb24,           kRgb32,          kArgb32,
                                      kRgb48,    kArgb64,   kPremultiplied32, kPremultiplied64};
  return std::ranges::find(kKnown, format) != std::end(kKnown);
}

Bitmap readPixels(ByteReader& r, std::int32_t width, std::int32_t height, std::int32_t stride,
                  std::uint32_t format, metafile::Work& work) {
  if (!isKnown(format) || width < 1 || height < 1 || stride < 1) return {};
  std::vector<std::uint32_t> palette;
  if (format == kIndexed1 || format == kIndexed4 || format == kIndexed8) {
    r.skip(4);
    const std::size_t count = r.u32();
    if (count > 256) return {};
    for (std::size_t i = 0; i < count; ++i) palette.push_back(r.u32());
  }
  const auto rowSize = static_cast<std::size_t>(stride);
  if ((static_cast<std::size_t>(width) * bitsOf(format) + 7) / 8 > rowSize) return {};
  if (r.remaining() / rowSize < static_cast<std::size_t>(height)) refusePicture("An image ends too early.");
  if (width > Bitmap::kMaxSide || height > Bitmap::kMaxSide || !work.take(8.0 * width * height)) return {};
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    const Bytes row = r.take(rowSize);
    for (std::int32_t x = 0; x < width; ++x) {
      const Pixel pixel = pixelAt(format, row.data(), static_cast<std::size_t>(x), palette);
      std::copy_n(&pixel.r, 4, pixels.row(y) + std::ptrdiff_t{4} * x);
    }
  }
  return bitmap;
}

/// Decodes an embedded file; only formats that cannot embed others.
Bitmap readFile(Bytes file, metafile::Work& work) {
  const auto taken = [&](const Decoded& decoded) {
    const Bitmap& bitmap = decoded.bitmap;
    return work.take(8.0 * bitmap.width() * bitmap.height()) ? bitmap : Bitmap();
  };
  try {
    if (png::probe(file)) return taken(png::decode(file));
    if (jpeg::probe(file)) return taken(jpeg::decode(file));
    if (gif::probe(file)) return taken(gif::decode(file));
    if (bmp::probe(file)) return taken(bmp::decode(file));
    if (tiff::probe(file)) return taken(tiff::decode(file));
  } catch (const RuntimeError&) {
    // A damaged part does not spoil the whole.
  }
  return {};
}

Bitmap readMetafile(Bytes file, metafile::Work& work) {
  if (work.depth == 0) return {};
  --work.depth;
  Bitmap bitmap;
  // Source coordinates refer to the natural size, so a reduced drawing cannot be used.
  const auto taken = [](metafile::Drawing drawing) {
    return drawing.size.scale == 1 ? std::move(drawing.bitmap) : Bitmap();
  };
  constexpr double kAsItIs = 1e6;
  try {
    if (emf::probe(file)) {
      bitmap = taken(emf::draw(file, work));
    } else if (wmf::probe(file)) {
      bitmap = taken(wmf::draw(file, work, kAsItIs));
    }
  } catch (const RuntimeError&) {
    // A damaged part does not spoil the whole.
  }
  ++work.depth;
  return work.take(8.0 * bitmap.width() * bitmap.height()) ? bitmap : Bitmap();
}

}  // namespace

Bitmap readImage(Bytes data, metafile::Work& work) {
  constexpr std::uint32_t kBitmap = 1, kMetafile = 2, kPixels = 0;
  ByteReader r(data);
  r.skip(4);
  const std::uint32_t type = r.u32();
  if (type == kMetafile) {
    r.skip(4);
    const std::size_t size = r.u32();
    return readMetafile(r.take(std::min(size, r.remaining())), work);
  }
  if (type != kBitmap) return {};
  const std::int32_t width = r.i32(), height = r.i32(), stride = r.i32();
  const std::uint32_t format = r.u32();
  if (r.u32() == kPixels) return readPixels(r, width, height, stride, format, work);
  return readFile(r.take(r.remaining()), work);
}

}  // namespace kestrel::engine::emf::plus
