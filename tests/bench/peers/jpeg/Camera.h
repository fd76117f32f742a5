#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// An opaque photograph with so much of a sensor's grain that its file is about as large as a camera's: some
/// 2.5 bits a pixel at quality 90 with halved color.
engine::Bitmap cameraPhotograph(std::int32_t width, std::int32_t height);

}  // namespace kestrel::bench
