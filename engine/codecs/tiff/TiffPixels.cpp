#include "TiffPixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "TiffFax.h"
#include "TiffLab.h"
#include "TiffSamples.h"
#include "TiffStream.h"
#include "base/RuntimeError.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"

namespace kestrel::engine::tiff {
namespace {

constexpr std::uint16_t kMostSamples = 64;

template <typename T>
T field(TIFF* tiff, std::uint32_t tag, T otherwise) {
  T value = otherwise;
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

/// Pixel layout from the directory's tags.
struct Layout {
  std::int32_t width = 0, height = 0;
  std::uint16_t samples = 1;
  std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
  std::uint16_t compression = COMPRESSION_NONE;
  bool planar = false;
  SampleFormat sample;
  std::uint16_t colors = 1;  ///< color samples; alpha follows, then samples that are ignored
  bool hasAlpha = false;
  bool premultiplied = false;
};

/// A part of the picture that could not be read.
struct Gap {
  std::int64_t x = 0, y = 0, columns = 0, rows = 0;
};

/// Approximate highest compression ratio.
std::int64_t highestRatio(std::uint16_t compression) {
  switch (compression) {
    case COMPRESSION_NONE:
      return 1;
    case COMPRESSION_PACKBITS:
      return 64;
    case COMPRESSION_LZW:
      return 2731;
    case COMPRESSION_LZMA:
    case COMPRESSION_ZSTD:
    case COMPRESSION_WEBP:
      return 8192;
    default:
      return 1032;
  }
}

/// The same in pixels per byte.
std::int64_t mostPixelsPerByte(const Layout& layout) {
  const std::int64_t bits = std::max<std::int64_t>(1, std::int64_t{layout.sample.bits} * layout.samples);
  return std::max<std::int64_t>(1, highestRatio(layout.compression) * 8 / bits);
}

/// Number of color samples per pixel.
std::uint16_t colorsOf(std::uint16_t photometric) {
  switch (photometric) {
    case PHOTOMETRIC_RGB:
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
      return 3;
    case PHOTOMETRIC_SEPARATED:
      return 4;
    default:
      return 1;
  }
}

Layout readLayout(TIFF* tiff, std::size_t fileSize) {
  Layout layout;
  const auto width = field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
  const auto height = field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
  layout.samples = field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  if (layout.samples < 1 || layout.samples > kMostSamples) {
    refusePicture("The TIFF file cannot be read: it claims " + std::to_string(layout.samples) +
                  " samples for each pixel.");
  }
  layout.compression = field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  layout.photometric = field<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC,
                                            layout.samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
  layout.planar = layout.samples > 1 && field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG,
                                                             PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
  layout.sample.bits = field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
  checkClaimedSize(width, height, fileSize, mostPixelsPerByte(layout));
  layout.width = static_cast<std::int32_t>(width);
  layout.height = static_cast<std::int32_t>(height);
  switch (field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT)) {
    case SAMPLEFORMAT_INT:
      layout.sample.kind = SampleFormat::Kind::signedNumber;
      break;
    case SAMPLEFORMAT_IEEEFP:
      layout.sample.kind = SampleFormat::Kind::real;
      break;
    default:
      break;
  }
  layout.sample.raw = layout.photometric == PHOTOMETRIC_PALETTE;
  layout.colors = colorsOf(layout.photometric);
  // CIELAB implies signed a and b; `put` handles the sign.
  if (layout.photometric == PHOTOMETRIC_CIELAB) layout.sample.kind = SampleFormat::Kind::unsignedNumber;

  std::uint16_t extraCount = 0;
  const std::uint16_t* extras = nullptr;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
  if (layout.samples > layout.colors) {
    // Many programs write RGBA without the ExtraSamples tag.
    const bool unspecified = extraCount == 0 && layout.photometric == PHOTOMETRIC_RGB && layout.samples == 4;
    const std::uint16_t kind = extraCount > 0 && extras != nullptr ? extras[0] : std::uint16_t{0};
    layout.hasAlpha = unspecified || kind == EXTRASAMPLE_ASSOCALPHA || kind == EXTRASAMPLE_UNASSALPHA;
    layout.premultiplied = kind == EXTRASAMPLE_ASSOCALPHA;
  }
  return layout;
}

using Palette = std::array<Pixel, 256>;

/// Reads the color map. Some programs write 8-bit values into the 16-bit map.
Palette readPalette(TIFF* tiff, std::uint32_t bits) {
  Palette palette{};
  const std::uint16_t* maps[3] = {};
  if (bits > 8 || TIFFGetField(tiff, TIFFTAG_COLORMAP, &maps[0], &maps[1], &maps[2]) != 1) {
    refusePicture("The TIFF file is damaged: its color map is missing.");
  }
  const std::size_t count = std::size_t{1} << bits;
  const bool wide = std::ranges::any_of(maps, [count](const std::uint16_t* map) {
    return std::any_of(map, map + count, [](std::uint16_t value) { return value > 255; });
  });
  const auto level = [wide](std::uint16_t value) {
    return static_cast<std::uint8_t>(wide ? value >> 8 : value);
  };
  for (std::size_t i = 0; i < count; ++i) {
    palette[i] = {level(maps[0][i]), level(maps[1][i]), level(maps[2][i]), 255};
  }
  return palette;
}

/// Uniform access to strips or tiles.
class Blocks {
 public:
  Blocks(TIFF* tiff, Bytes file, const Layout& layout) : tiff_(tiff), file_(file) {
    tiled_ = TIFFIsTiled(tiff) != 0;
    if (tiled_) {
      width_ = field<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH, 0);
      height_ = field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 0);
      checkClaimedSize(width_, height_, file.size(), mostPixelsPerByte(layout));
      rowBytes_ = TIFFTileRowSize(tiff);
    } else {
      width_ = static_cast<std::uint32_t>(layout.width);
      const auto rows = field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, UINT32_MAX);
      height_ = std::min(rows, static_cast<std::uint32_t>(layout.height));
      rowBytes_ = TIFFScanlineSize(tiff);
    }
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 30;
    if (width_ == 0 || height_ == 0 || rowBytes_ <= 0 ||
        static_cast<std::uint64_t>(rowBytes_) > kLargest / height_) {
      refusePicture("The TIFF file is damaged: the size of its strips or tiles is invalid.");
    }
    const std::uint64_t samplesInRow = std::uint64_t{width_} * (layout.planar ? 1U : layout.samples);
    if (static_cast<std::uint64_t>(rowBytes_) * 8 < samplesInRow * layout.sample.bits) {
      refusePicture("The TIFF file cannot be read: its samples are stored in an unusual way.");
    }
    buffer_.resize(static_cast<std::size_t>(rowBytes_) * height_);
  }

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  const std::uint8_t* row(std::int64_t y) const { return buffer_.data() + y * rowBytes_; }

  /// Reads the block that contains the pixel (x, y) of a plane; returns the number of valid rows, at most
  /// `rows`.
  std::int64_t read(std::int64_t x, std::int64_t y, std::uint16_t plane, std::int64_t rows) {
    const auto column = static_cast<std::uint32_t>(x), line = static_cast<std::uint32_t>(y);
    const std::uint32_t number =
        tiled_ ? TIFFComputeTile(tiff_, column, line, 0, plane) : TIFFComputeStrip(tiff_, line, plane);
    const tmsize_t wanted = rowBytes_ * (tiled_ ? height() : rows);
    const tmsize_t got = tiled_ ? TIFFReadEncodedTile(tiff_, number, buffer_.data(), wanted)
                                : TIFFReadEncodedStrip(tiff_, number, buffer_.data(), wanted);
    return got >= wanted ? rows : std::min(rows, salvage(number));
  }

 private:
  /// Number of rows of a damaged block that can be decoded from the bytes in the file, found by bisection:
  /// the library only reports success or failure. For some compressions it invents missing data with just a
  /// warning, so warnings count as failure.
  std::int64_t salvage(std::uint32_t number) {
    const std::uint64_t offset = TIFFGetStrileOffset(tiff_, number);
    if (offset >= file_.size()) return 0;
    // Bounds the copy: no compressed block needs more, but a file may declare the same bytes for many blocks.
    const std::uint64_t useful = 8 * buffer_.size() + (1U << 16);
    const std::uint64_t size =
        std::min<std::uint64_t>({TIFFGetStrileByteCount(tiff_, number), file_.size() - offset, useful});
    if (size == 0) return 0;
    std::vector<std::uint8_t> packed(file_.begin() + static_cast<std::ptrdiff_t>(offset),
                                     file_.begin() + static_cast<std::ptrdiff_t>(offset + size));
    const auto* const stream = static_cast<const TiffStream*>(TIFFClientdata(tiff_));
    const auto decodes = [&](std::int64_t rows) {
      const int before = stream->diagnostics();
      return TIFFReadFromUserBuffer(tiff_, number, packed.data(), static_cast<tmsize_t>(packed.size()),
                                    buffer_.data(), rowBytes_ * rows) == 1 &&
             stream->diagnostics() == before;
    };
    std::int64_t good = 0, bad = height() + 1;
    while (bad - good > 1) {
      const std::int64_t middle = good + (bad - good) / 2;
      (decodes(middle) ? good : bad) = middle;
    }
    if (good > 0) decodes(good);
    return good;
  }

  TIFF* tiff_;
  Bytes file_;
  bool tiled_ = false;
  std::uint32_t width_ = 0, height_ = 0;
  tmsize_t rowBytes_ = 0;
  std::vector<std::uint8_t> buffer_;
};

/// Samples to read. CMYK needs all four bytes of a pixel until it is converted, so the alpha of such pictures
/// is read in a second pass.
enum class Part { all, colors, alpha };

/// Writes 8-bit samples into pixels.
class PixelWriter {
 public:
  PixelWriter(TIFF* tiff, const Layout& layout, Part part) : layout_(layout), part_(part) {
    if (layout.photometric == PHOTOMETRIC_PALETTE) palette_ = readPalette(tiff, layout.sample.bits);
  }

  /// Writes one sample of each pixel of a run; `step` is the distance between pixels in samples. Unused
  /// samples are skipped.
  void put(std::uint16_t sample, const std::uint8_t* samples, std::size_t step, std::int64_t count,
           std::uint8_t* pixel) const {
    if (sample >= layout_.colors) {
      if (sample > layout_.colors || !layout_.hasAlpha || part_ == Part::colors) return;
      for (std::int64_t i = 0; i < count; ++i, pixel += 4, samples += step) pixel[3] = *samples;
      return;
    }
    if (part_ == Part::alpha) return;
    // Alpha follows the colors and overwrites this.
    const bool opaque = part_ == Part::all && sample == 0;
    const int flip = layout_.photometric == PHOTOMETRIC_CIELAB && sample > 0 ? 0x80 : 0;
    for (std::int64_t i = 0; i < count; ++i, pixel += 4, samples += step) {
      if (opaque) pixel[3] = 255;
      if (layout_.colors > 1) {
        pixel[sample] = static_cast<std::uint8_t>(*samples ^ flip);
      } else if (layout_.photometric == PHOTOMETRIC_PALETTE) {
        const Pixel& color = palette_[*samples];
        pixel[0] = color.r, pixel[1] = color.g, pixel[2] = color.b;
      } else {
        const bool inverted = layout_.photometric == PHOTOMETRIC_MINISWHITE;
        pixel[0] = pixel[1] = pixel[2] = static_cast<std::uint8_t>(inverted ? 255 - *samples : *samples);
      }
    }
  }

 private:
  Layout layout_;
  Part part_;
  Palette palette_{};
};

void unpremultiply(Bitmap& bitmap) {
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
      const int alpha = p[3];
      if (alpha == 0 || alpha == 255) continue;
      for (int i = 0; i < 3; ++i)
        p[i] = static_cast<std::uint8_t>(std::min(255, (p[i] * 255 + alpha / 2) / alpha));
    }
  }
}

void noteMissingRows(Decoded& decoded, std::int64_t goodRows) {
  if (goodRows == 0) refusePicture("The TIFF file is damaged: not one row of the picture can be read.");
  decoded.notice = "The file is damaged or truncated: only " + std::to_string(goodRows) + " of " +
                   std::to_string(decoded.bitmap.height()) + " rows could be read.";
}

/// Reads the samples block by block; returns the gaps.
std::vector<Gap> readBlocks(TIFF* tiff, Bytes file, const Layout& layout, Part part, Decoded& decoded) {
  Blocks blocks(tiff, file, layout);
  const PixelWriter writer(tiff, layout, part);
  const Pixels pixels = decoded.bitmap.writable();
  const std::uint16_t planes = layout.planar ? layout.samples : std::uint16_t{1};
  const std::uint16_t together = layout.planar ? std::uint16_t{1} : layout.samples;
  std::vector<std::uint8_t> samples(static_cast<std::size_t>(blocks.width()) * together);
  std::vector<Gap> gaps;
  std::int64_t goodRows = 0;

  for (std::int64_t y = 0; y < layout.height; y += blocks.height()) {
    const std::int64_t rows = std::min<std::int64_t>(blocks.height(), layout.height - y);
    std::int64_t rowsOfAll = rows;
    for (std::int64_t x = 0; x < layout.width; x += blocks.width()) {
      const std::int64_t columns = std::min<std::int64_t>(blocks.width(), layout.width - x);
      std::int64_t rowsHere = rows;
      for (std::uint16_t plane = 0; plane < planes; ++plane) {
        const std::int64_t good = blocks.read(x, y, plane, rows);
        rowsHere = std::min(rowsHere, good);
        for (std::int64_t row = 0; row < good; ++row) {
          unpackSamples(blocks.row(row), samples.size(), layout.sample, samples.data());
          std::uint8_t* const target = pixels.row(static_cast<std::int32_t>(y + row)) + 4 * x;
          for (std::uint16_t s = 0; s < together; ++s) {
            writer.put(static_cast<std::uint16_t>(plane + s), samples.data() + s, together, columns, target);
          }
        }
      }
      if (rowsHere < rows) gaps.push_back({x, y + rowsHere, columns, rows - rowsHere});
      rowsOfAll = std::min(rowsOfAll, rowsHere);
    }
    goodRows += rowsOfAll;
  }
  if (goodRows < layout.height) noteMissingRows(decoded, goodRows);
  return gaps;
}

PixelKind kindOf(std::uint16_t photometric) {
  switch (photometric) {
    case PHOTOMETRIC_SEPARATED:
      return PixelKind::cmyk;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
      return PixelKind::lab;
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
      return PixelKind::gray;
    default:
      return PixelKind::rgb;
  }
}

/// Whether the Lab white point is D50, also the default without a tag.
bool hasUsualWhite(TIFF* tiff) {
  constexpr float kUsualX = 0.3457F;
  const float* white = nullptr;
  return TIFFGetField(tiff, TIFFTAG_WHITEPOINT, &white) != 1 || std::abs(white[0] - kUsualX) < 0.005F;
}

/// Reads the samples with `readBlocks` and converts them to sRGB.
void readSamples(TIFF* tiff, Bytes file, const Layout& layout, Decoded& decoded) {
  const bool cmyk = layout.photometric == PHOTOMETRIC_SEPARATED;
  const std::vector<Gap> gaps = readBlocks(tiff, file, layout, cmyk ? Part::colors : Part::all, decoded);
  if (!cmyk && layout.premultiplied) unpremultiply(decoded.bitmap);
  if (layout.photometric == PHOTOMETRIC_CIELAB && !hasUsualWhite(tiff)) {
    labToSrgb(decoded.bitmap);
    convertToSrgb(decoded, PixelKind::rgb);
  } else {
    convertToSrgb(decoded, kindOf(layout.photometric));
  }
  if (cmyk && layout.hasAlpha) {
    readBlocks(tiff, file, layout, Part::alpha, decoded);
    if (layout.premultiplied) unpremultiply(decoded.bitmap);
  }
  const Pixels pixels = decoded.bitmap.writable();
  for (const Gap& gap : gaps) {
    for (std::int64_t y = gap.y; y < gap.y + gap.rows; ++y) {
      std::memset(pixels.row(static_cast<std::int32_t>(y)) + 4 * gap.x, 0,
                  static_cast<std::size_t>(gap.columns) * 4);
    }
  }
}

/// Reads the next rows; returns the number of valid rows, found by bisection: the library decodes only as
/// many rows of a strip as requested.
std::int32_t readableRows(TIFFRGBAImage& image, std::vector<std::uint32_t>& raster, std::int32_t width,
                          std::int32_t rows) {
  const auto reads = [&](std::int32_t count) {
    return TIFFRGBAImageGet(&image, raster.data(), static_cast<std::uint32_t>(width),
                            static_cast<std::uint32_t>(count)) != 0;
  };
  if (reads(rows)) return rows;
  std::int32_t good = 0, bad = rows;
  while (bad - good > 1) {
    const std::int32_t middle = good + (bad - good) / 2;
    (reads(middle) ? good : bad) = middle;
  }
  return good > 0 && reads(good) ? good : 0;
}

/// Decodes the rarer color models (YCbCr, LogLuv) with the library.
void readByLibrary(TIFF* tiff, const Layout& layout, Decoded& decoded) {
  TIFFRGBAImage image{};
  char reason[1024] = "";
  if (TIFFRGBAImageOK(tiff, reason) == 0 || TIFFRGBAImageBegin(&image, tiff, 1, reason) == 0) {
    refusePicture("The TIFF file cannot be read: " + std::string(reason) + ".");
  }
  image.req_orientation = image.orientation;
  const Pixels pixels = decoded.bitmap.writable();
  const std::int32_t band = TIFFIsTiled(tiff) != 0
                                ? static_cast<std::int32_t>(std::min<std::uint32_t>(
                                      field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 1), 4096))
                                : static_cast<std::int32_t>(std::min<std::uint32_t>(
                                      field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, 1), 4096));
  const std::int32_t step = std::max(1, std::min(band, layout.height));
  std::vector<std::uint32_t> raster(static_cast<std::size_t>(step) * static_cast<std::size_t>(layout.width));
  std::int32_t y = 0;
  while (y < layout.height) {
    const std::int32_t rows = std::min(step, layout.height - y);
    image.row_offset = y;
    image.col_offset = 0;
    const std::int32_t good = readableRows(image, raster, layout.width, rows);
    for (std::int32_t row = 0; row < good; ++row) {
      std::memcpy(pixels.row(y + row),
                  raster.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(layout.width),
                  static_cast<std::size_t>(layout.width) * 4);
    }
    y += good;
    if (good < rows) break;
  }
  const bool hasAlpha = image.alpha != 0;
  TIFFRGBAImageEnd(&image);
  if (y < layout.height) noteMissingRows(decoded, y);
  if (hasAlpha) unpremultiply(decoded.bitmap);
  convertToSrgb(decoded, PixelKind::rgb);
}

bool storesPlainSamples(const Layout& layout) {
  switch (layout.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_PALETTE:
    case PHOTOMETRIC_RGB:
    case PHOTOMETRIC_SEPARATED:
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
      return layout.samples >= layout.colors && canUnpack(layout.sample);
    default:
      return false;
  }
}

}  // namespace

void readPixels(TIFF* tiff, Bytes file, Decoded& decoded) {
  Layout layout = readLayout(tiff, file.size());
  correctFaxCoding(tiff);
  if (TIFFIsCODECConfigured(layout.compression) == 0) {
    refusePicture("The TIFF file cannot be read: its compression, number " +
                  std::to_string(layout.compression) + ", is not known.");
  }
  if (layout.compression == COMPRESSION_JPEG && layout.photometric == PHOTOMETRIC_YCBCR && !layout.planar) {
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    layout.photometric = PHOTOMETRIC_RGB;
    layout.colors = 3;
  }
  decoded.stored.bitsPerSample = static_cast<std::int32_t>(layout.sample.bits);
  decoded.stored.hasAlpha = layout.hasAlpha;
  // Transparent, so that pixels that cannot be read stay transparent.
  decoded.bitmap = Bitmap::filled(layout.width, layout.height);
  if (storesPlainSamples(layout)) {
    readSamples(tiff, file, layout, decoded);
  } else {
    readByLibrary(tiff, layout, decoded);
  }
}

}  // namespace kestrel::engine::tiff
