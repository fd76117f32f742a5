#include "TiffLayout.h"

#include <algorithm>
#include <string>

#include "engine/codecs/common/DecodeErrors.h"

namespace kestrel::engine::tiff {
namespace {

constexpr std::uint16_t kMostSamples = 64;

/// Rough upper bound of the compression ratio.
std::int64_t maxRatio(std::uint16_t compression) {
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

/// Number of color samples of a pixel.
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

}  // namespace

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
  checkClaimedSize(width, height, fileSize, maxPixelsPerByte(layout));
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
  // a* and b* are always signed, which this tag need not say.
  if (layout.photometric == PHOTOMETRIC_CIELAB) layout.sample.kind = SampleFormat::Kind::unsignedNumber;

  std::uint16_t extraCount = 0;
  const std::uint16_t* extras = nullptr;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
  if (layout.samples > layout.colors) {
    // Many programs write RGBA and forget to say what the fourth sample is.
    const bool unmarked = extraCount == 0 && layout.photometric == PHOTOMETRIC_RGB && layout.samples == 4;
    const std::uint16_t kind = extraCount > 0 && extras != nullptr ? extras[0] : std::uint16_t{0};
    layout.hasAlpha = unmarked || kind == EXTRASAMPLE_ASSOCALPHA || kind == EXTRASAMPLE_UNASSALPHA;
    layout.premultiplied = kind == EXTRASAMPLE_ASSOCALPHA;
  }
  return layout;
}

std::int64_t maxPixelsPerByte(const Layout& layout) {
  const std::int64_t bits = std::max<std::int64_t>(1, std::int64_t{layout.sample.bits} * layout.samples);
  return std::max<std::int64_t>(1, maxRatio(layout.compression) * 8 / bits);
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

}  // namespace kestrel::engine::tiff
