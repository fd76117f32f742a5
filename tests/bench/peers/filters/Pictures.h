#pragma once

#include <opencv2/core.hpp>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// 6000 x 4000 pixels of smooth colors with some noise: opaque, or a soft-edged disc on transparent pixels.
engine::Bitmap opaquePicture();
engine::Bitmap cutOutPicture();

/// A read-only CV_8UC4 matrix on the bitmap's memory, valid while the bitmap lives unchanged.
cv::Mat matOf(const engine::Bitmap& picture);

}  // namespace kestrel::bench
