#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// EXIF block built from a TIFF file: the descriptive tags of the first directory and its EXIF and GPS
/// directories. Empty if there are none or for BigTIFF.
std::vector<std::uint8_t> exifOfTiff(Bytes file);

/// IPTC records of a TIFF file; empty if there are none or for BigTIFF.
std::vector<std::uint8_t> iptcOfTiff(Bytes file);

/// Number of pictures in a TIFF or BigTIFF file, at least 1. Reduced copies (previews, thumbnails) and masks
/// do not count.
std::int32_t countPages(Bytes file);

/// Adds the tags of an EXIF block to a finished little-endian TIFF file, as a new first directory at its end.
/// Existing tags of the file are kept. An invalid block adds nothing.
void addExifToTiff(std::vector<std::uint8_t>& file, Bytes exif);

/// Rewrites an EXIF block to at most `limit` bytes, dropping its largest values as needed. Empty for an
/// invalid block.
std::vector<std::uint8_t> shortenExif(Bytes exif, std::size_t limit);

}  // namespace kestrel::engine::tiff
