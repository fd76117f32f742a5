#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Whether every pixel's alpha is 255.
bool isOpaque(const ConstPixels& picture);

}  // namespace kestrel::engine
