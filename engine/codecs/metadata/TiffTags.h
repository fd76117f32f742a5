#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// The camera data of a TIFF file as an EXIF block of its own: the descriptive tags of the first directory
/// and its EXIF and GPS directories. Empty if there are none or the file is a 64-bit one.
std::vector<std::uint8_t> exifOfTiff(Bytes file);

/// The IPTC records of a TIFF file; empty if there are none or the file is a 64-bit one.
std::vector<std::uint8_t> iptcOfTiff(Bytes file);

/// How many pictures a TIFF file of either form holds, at least 1. Smaller copies of another picture
/// (previews, thumbnails) and masks do not count.
std::int32_t countPages(Bytes file);

/// Adds the tags of an EXIF block to a finished little-endian TIFF file, as a new first directory at its end.
/// Tags that the file has already stay as they are. A block that is no EXIF adds nothing.
void addExifToTiff(std::vector<std::uint8_t>& file, Bytes exif);

/// An EXIF block put together anew, without its largest values if that is what it takes to have at most
/// `limit` bytes. Empty if it is none.
std::vector<std::uint8_t> shortenExif(Bytes exif, std::size_t limit);

}  // namespace kestrel::engine::tiff
