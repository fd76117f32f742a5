#pragma once

#include <tiffio.h>

#include <cstddef>
#include <cstdint>

#include "TiffSamples.h"

namespace kestrel::engine::tiff {

/// A tag's value, its default, or `otherwise` where the format has no default.
template <typename T>
T field(TIFF* tiff, std::uint32_t tag, T otherwise) {
  T value = otherwise;
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

/// The pixel format of a directory.
struct Layout {
  std::int32_t width = 0, height = 0;
  std::uint16_t samples = 1;
  std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
  std::uint16_t compression = COMPRESSION_NONE;
  bool planar = false;
  SampleFormat sample;
  std::uint16_t colors = 1;  ///< number of color samples; alpha and samples of no known meaning follow
  bool hasAlpha = false;
  bool premultiplied = false;
};

/// The format of the present directory. Raises RuntimeError 481 where it makes no sense or claims more pixels
/// than `fileSize` bytes can hold, 7 where they are too many.
Layout readLayout(TIFF* tiff, std::size_t fileSize);

/// Upper bound of the pixels decoded from a byte of the file.
std::int64_t maxPixelsPerByte(const Layout& layout);

/// True if `unpackSamples` can read the samples and their colors need no conversion by the library.
bool storesPlainSamples(const Layout& layout);

}  // namespace kestrel::engine::tiff
