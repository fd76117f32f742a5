#include <algorithm>
#include <string>
#include <vector>

#include "Tiff.h"
#include "TiffPixels.h"
#include "TiffStream.h"
#include "base/RuntimeError.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Flatten.h"
#include "engine/codecs/common/Orientation.h"
#include "engine/codecs/common/Resolution.h"
#include "engine/codecs/metadata/Exif.h"
#include "engine/codecs/metadata/TiffTags.h"
#include "engine/pixels/Opaque.h"

namespace kestrel::engine::tiff {
namespace {

template <typename T>
void copyField(TIFF* tiff, std::uint32_t tag, std::vector<T>& target) {
  std::uint32_t count = 0;
  const T* values = nullptr;
  if (TIFFGetField(tiff, tag, &count, &values) == 1 && values != nullptr)
    target.assign(values, values + count);
}

Metadata metadataOf(TIFF* tiff, Bytes file) {
  Metadata metadata;
  float x = 0, y = 0;
  std::uint16_t unit = RESUNIT_INCH;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_RESOLUTIONUNIT, &unit);
  if (unit != RESUNIT_NONE && TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &x) == 1 &&
      TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &y) == 1 && x > 0 && y > 0) {
    const double scale = unit == RESUNIT_CENTIMETER ? kCentimetersPerInch : 1;
    metadata.resolutionX = static_cast<double>(x) * scale;
    metadata.resolutionY = static_cast<double>(y) * scale;
  }
  copyField(tiff, TIFFTAG_ICCPROFILE, metadata.iccProfile);
  copyField(tiff, TIFFTAG_XMLPACKET, metadata.xmp);
  metadata.iptc = iptcOfTiff(file);
  metadata.exif = exifOfTiff(file);
  return metadata;
}

void setMetadata(TIFF* tiff, const Metadata& metadata) {
  if (metadata.resolutionX > 0 && metadata.resolutionY > 0) {
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, metadata.resolutionX);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, metadata.resolutionY);
  }
  const auto set = [tiff](std::uint32_t tag, const std::vector<std::uint8_t>& bytes) {
    if (!bytes.empty()) TIFFSetField(tiff, tag, static_cast<std::uint32_t>(bytes.size()), bytes.data());
  };
  set(TIFFTAG_ICCPROFILE, metadata.iccProfile);
  set(TIFFTAG_XMLPACKET, metadata.xmp);
  set(TIFFTAG_RICHTIFFIPTC, metadata.iptc);
}

/// Writes the pixels; returns false after a library error.
bool writePixels(TIFF* tiff, const ConstPixels& pixels, bool opaque) {
  const std::uint16_t samples = opaque ? 3 : 4;
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(pixels.width));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(pixels.height));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  if (!opaque) {
    const std::uint16_t straight = EXTRASAMPLE_UNASSALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &straight);
  }
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
  TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  // Higher levels take many times as long on photographs for almost no gain.
  TIFFSetField(tiff, TIFFTAG_ZIPQUALITY, 4);
  constexpr std::size_t kStripBytes = std::size_t{256} << 10;
  const std::size_t rowBytes = static_cast<std::size_t>(pixels.width) * samples;
  const auto rowsPerStrip = static_cast<std::uint32_t>(std::max<std::size_t>(1, kStripBytes / rowBytes));
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rowsPerStrip);

  std::vector<std::uint8_t> row(rowBytes);
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    if (opaque) {
      flattenRowOnWhite(pixels.row(y), row.data(), pixels.width);
    } else {
      std::copy_n(pixels.row(y), rowBytes, row.begin());
    }
    if (TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y)) != 1) return false;
  }
  return true;
}

}  // namespace

bool probe(Bytes data) {
  if (data.size() < 4) return false;
  const bool little = data[0] == 'I' && data[1] == 'I' && (data[2] == 42 || data[2] == 43) && data[3] == 0;
  const bool big = data[0] == 'M' && data[1] == 'M' && data[2] == 0 && (data[3] == 42 || data[3] == 43);
  return little || big;
}

Decoded decode(Bytes data) {
  TiffStream stream(data);
  const TiffFile tiff = stream.open();
  if (!tiff) refusePicture("The TIFF file is damaged: " + std::string(stream.error()) + ".");

  Decoded decoded;
  decoded.metadata = metadataOf(tiff.get(), data);
  readPixels(tiff.get(), data, decoded);
  std::uint16_t orientation = 1;
  TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_ORIENTATION, &orientation);
  decoded.stored.pages = countPages(data);
  applyOrientation(decoded, orientation);
  normalizeCameraData(decoded.metadata);
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  TiffStream stream;
  TiffFile tiff = stream.open();
  if (!tiff) throw RuntimeError(err::kOutOfMemory, "There is not enough memory to save.");
  setMetadata(tiff.get(), metadata);
  if (!writePixels(tiff.get(), bitmap.pixels(), isOpaque(bitmap.pixels())) || TIFFFlush(tiff.get()) != 1) {
    throw RuntimeError(err::kInvalidCall,
                       "The picture cannot be saved as TIFF: " + std::string(stream.error()) + ".");
  }
  tiff.reset();

  std::vector<std::uint8_t> file = stream.finish();
  addExifToTiff(file, metadata.exif);
  return file;
}

}  // namespace kestrel::engine::tiff
