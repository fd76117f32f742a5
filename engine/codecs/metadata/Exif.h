#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// The orientation that an EXIF block (see `Metadata::exif`) tells, 1 if it tells none.
std::int32_t exifOrientation(Bytes exif);

/// Makes camera data true of an upright picture that may be edited: the orientation in EXIF and XMP becomes 1
/// and the embedded thumbnails go. A block that is no EXIF is emptied. The rest stays where it is, since the
/// makers' own notes hold positions within the block.
void normalizeCameraData(Metadata& metadata);

/// Makes camera data and XMP tell the size of the picture that is saved, and camera data the resolution in
/// `metadata`, in the places where they tell one.
void describePicture(Metadata& metadata, std::int32_t width, std::int32_t height);

/// The resolution that the block tells, in pixels per inch; sets nothing if it tells none.
void readExifResolution(Bytes exif, Metadata& metadata);

}  // namespace kestrel::engine
