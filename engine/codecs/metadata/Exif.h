#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// Orientation in an EXIF block (see `Metadata::exif`), 1 if absent or invalid.
std::int32_t exifOrientation(Bytes exif);

/// Adapts EXIF and XMP to an upright picture that may be edited: sets the orientation to 1 and removes
/// embedded thumbnails. Clears an invalid EXIF block. The rest stays in place, since maker notes contain
/// offsets into the block.
void normalizeCameraData(Metadata& metadata);

/// Updates the picture size in EXIF and XMP, and the resolution in EXIF from `metadata`. Only existing tags
/// are updated.
void describePicture(Metadata& metadata, std::int32_t width, std::int32_t height);

/// Reads the resolution in the block, in pixels per inch, into `metadata`; no change if absent.
void readExifResolution(Bytes exif, Metadata& metadata);

}  // namespace kestrel::engine
