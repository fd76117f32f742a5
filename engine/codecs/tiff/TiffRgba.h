#pragma once

#include <tiffio.h>

#include "TiffLayout.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// Decodes to RGBA by the library, for the rarer color models (YCbCr, LogLuv), and converts to sRGB from the
/// profile in `decoded.metadata`. `decoded.bitmap` has the size of the picture and is transparent. Raises
/// RuntimeError 481 if not one row can be decoded.
void readByLibrary(TIFF* tiff, const Layout& layout, Decoded& decoded);

}  // namespace kestrel::engine::tiff
