#pragma once

#include <opencv2/core.hpp>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// 6000 x 4000 pixels of smooth colors with some noise: opaque, or a soft-edged disc as cut out of its
/// ground.
engine::Bitmap opaquePicture();
engine::Bitmap cutOutPicture();

/// The same memory as OpenCV sees it, CV_8UC4; to be read only, while the bitmap lives unchanged.
cv::Mat matOf(const engine::Bitmap& picture);

}  // namespace kestrel::bench
