#pragma once

#include "MetafileCanvas.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::emf::plus {

/// Decodes an image object: raw pixels, a file of a known format, or a metafile. Empty if it is invalid or
/// the work limit is exhausted. Raises RuntimeError 481 if it is truncated.
Bitmap readImage(Bytes data, metafile::Work& work);

}  // namespace kestrel::engine::emf::plus
