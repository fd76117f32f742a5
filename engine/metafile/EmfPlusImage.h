#pragma once

#include "MetafileCanvas.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::emf::plus {

/// The picture of an image object: pixels, a file of a known format, or a metafile. Empty if it makes no
/// sense or there is no work left for it. Raises RuntimeError 481 if it ends too early.
Bitmap readImage(Bytes data, metafile::Work& work);

}  // namespace kestrel::engine::emf::plus
