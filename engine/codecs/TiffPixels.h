#pragma once

#include <tiffio.h>

#include "Codecs.h"
#include "ColorProfile.h"

namespace kestrel::engine::tiff {

/// Reads the pixels of the present directory into `decoded.bitmap`, as stored (not turned, not colour
/// managed), and tells what they are. Fills `decoded.stored` and, for a damaged file, `decoded.notice`;
/// pixels that could not be read stay transparent. Raises RuntimeError 481 or 7.
PixelKind readPixels(TIFF* tiff, Bytes file, Decoded& decoded);

}  // namespace kestrel::engine::tiff
