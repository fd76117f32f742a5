#pragma once

#include <tiffio.h>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// Reads the pixels of the present directory of a file that a TiffStream opened into `decoded.bitmap`, as
/// they are turned in the file, and brings them to sRGB from the profile in `decoded.metadata`. Fills
/// `decoded.stored` and, for a damaged file, `decoded.notice`; pixels that could not be read are transparent.
/// Raises RuntimeError 481 or 7.
void readPixels(TIFF* tiff, Bytes file, Decoded& decoded);

}  // namespace kestrel::engine::tiff
