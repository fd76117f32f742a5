#pragma once

#include <tiffio.h>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// Reads the pixels of the current directory into `decoded.bitmap`, without applying the orientation, and
/// converts them to sRGB from the profile in `decoded.metadata`. Sets `decoded.stored` and, after decode
/// errors, `decoded.notice`; pixels that could not be read are transparent. The file must be opened by a
/// TiffStream. Raises RuntimeError 481 or 7.
void readPixels(TIFF* tiff, Bytes file, Decoded& decoded);

}  // namespace kestrel::engine::tiff
