#include "Pictures.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace kestrel::bench {

engine::Bitmap makePicture(bool opaque, std::uint32_t seed) {
  engine::Bitmap result = engine::Bitmap::uninitialized(kWidth, kHeight);
  const engine::Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < kHeight; ++y) {
    std::uint8_t* p = pixels.row(y);
    std::uint32_t noise = (static_cast<std::uint32_t>(y) + seed) * 2654435761U;
    for (std::int32_t x = 0; x < kWidth; ++x, p += 4) {
      noise = noise * 1664525U + 1013904223U;
      p[0] = static_cast<std::uint8_t>((x >> 4) + static_cast<std::int32_t>(noise >> 29));
      p[1] = static_cast<std::uint8_t>((y >> 4) + static_cast<std::int32_t>(noise >> 28));
      p[2] = static_cast<std::uint8_t>((x + y) >> 5);
      p[3] = opaque ? 255 : static_cast<std::uint8_t>(noise >> 24);
    }
  }
  return result;
}

cv::Mat asMat(const engine::Pixels& pixels) {
  return {pixels.height, pixels.width, CV_8UC4, pixels.data, pixels.stride};
}

cv::Mat asMat(const engine::ConstPixels& pixels) {
  return {pixels.height, pixels.width, CV_8UC4, const_cast<std::uint8_t*>(pixels.data), pixels.stride};
}

engine::Bitmap keptBuffer(std::int32_t width, std::int32_t height) {
  return engine::Bitmap::filled(width, height);
}

void requireLike(const engine::Bitmap& ours, const engine::Bitmap& theirs, int levels) {
  if (ours.width() != theirs.width() || ours.height() != theirs.height())
    throw std::runtime_error("A peer's result has another size.");
  for (std::int32_t y = 0; y < ours.height(); ++y) {
    const std::uint8_t* a = ours.pixels().row(y);
    const std::uint8_t* b = theirs.pixels().row(y);
    for (std::int32_t x = 0; x < ours.width(); ++x, a += 4, b += 4) {
      const int alpha = std::max(a[3], b[3]);
      const bool alike = std::abs(a[3] - b[3]) <= levels && std::abs(a[0] - b[0]) * alpha <= levels * 255 &&
                         std::abs(a[1] - b[1]) * alpha <= levels * 255 &&
                         std::abs(a[2] - b[2]) * alpha <= levels * 255;
      if (!alike)
        throw std::runtime_error("A peer's result differs at " + std::to_string(x) + ", " +
                                 std::to_string(y));
    }
  }
}

}  // namespace kestrel::bench
