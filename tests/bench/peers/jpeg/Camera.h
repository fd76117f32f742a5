#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// An opaque photograph with sensor noise, so that its file is about as large as a camera's: about 2.5 bits
/// per pixel at quality 90 and 4:2:0.
engine::Bitmap cameraPhotograph(std::int32_t width, std::int32_t height);

}  // namespace kestrel::bench
