#include "TiffPixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "TiffBlocks.h"
#include "TiffFax.h"
#include "TiffFinish.h"
#include "TiffLab.h"
#include "TiffLayout.h"
#include "TiffRgba.h"
#include "TiffSamples.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"

namespace kestrel::engine::tiff {
namespace {

/// A part of the picture that could not be read.
struct Gap {
  std::int64_t x = 0, y = 0, columns = 0, rows = 0;
};

using Palette = std::array<Pixel, 256>;

/// Some programs fill the 16-bit color map with 8-bit values.
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

/// Channels to read. CMYK takes all four bytes of a pixel until it is converted, so the alpha of such
/// pictures is read in a second pass.
enum class Part { all, colors, alpha };

/// Puts 8-bit samples into pixels.
class PixelWriter {
 public:
  PixelWriter(TIFF* tiff, const Layout& layout, Part part) : layout_(layout), part_(part) {
    if (layout.photometric == PHOTOMETRIC_PALETTE) palette_ = readPalette(tiff, layout.sample.bits);
  }

  /// Stores one sample of each of `count` pixels; `step` is the distance of their samples. Skips samples that
  /// the picture does not need.
  void put(std::uint16_t sample, const std::uint8_t* samples, std::size_t step, std::int64_t count,
           std::uint8_t* pixel) const {
    if (sample >= layout_.colors) {
      if (sample > layout_.colors || !layout_.hasAlpha || part_ == Part::colors) return;
      for (std::int64_t i = 0; i < count; ++i, pixel += 4, samples += step) pixel[3] = *samples;
      return;
    }
    if (part_ == Part::alpha) return;
    // A sample of alpha comes after the colors and overwrites this.
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

/// Reads the samples block by block, without color conversion; returns what is missing.
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
  if (goodRows < layout.height) reportMissingRows(decoded, goodRows);
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

/// True for white D50, the default of Lab files.
bool hasUsualWhite(TIFF* tiff) {
  constexpr float kUsualX = 0.3457F;
  const float* white = nullptr;
  return TIFFGetField(tiff, TIFFTAG_WHITEPOINT, &white) != 1 || std::abs(white[0] - kUsualX) < 0.005F;
}

/// Reads the samples and converts them to sRGB.
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
  // Pixels that cannot be read stay transparent.
  decoded.bitmap = Bitmap::filled(layout.width, layout.height);
  if (storesPlainSamples(layout)) {
    readSamples(tiff, file, layout, decoded);
  } else {
    readByLibrary(tiff, layout, decoded);
  }
}

}  // namespace kestrel::engine::tiff
