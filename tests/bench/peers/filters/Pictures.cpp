#include "Pictures.h"

namespace kestrel::bench {
namespace {

constexpr std::int32_t kWidth = 6000;
constexpr std::int32_t kHeight = 4000;

engine::Bitmap makePicture(bool opaque) {
  engine::Bitmap result = engine::Bitmap::uninitialized(kWidth, kHeight);
  const engine::Pixels pixels = result.writable();
  std::uint32_t noise = 1;
  for (std::int32_t y = 0; y < kHeight; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < kWidth; ++x, p += 4) {
      noise = noise * 1664525U + 1013904223U;
      p[0] = static_cast<std::uint8_t>((x >> 5) + static_cast<std::int32_t>(noise >> 29));
      p[1] = static_cast<std::uint8_t>((y >> 5) + static_cast<std::int32_t>(noise >> 28));
      p[2] = static_cast<std::uint8_t>((x + y) >> 6);
      const double u = 2.0 * x / kWidth - 1, v = 2.0 * y / kHeight - 1;
      const double inside = (1.05 - u * u - v * v) * 6;
      p[3] = opaque || inside > 1 ? 255 : inside < 0 ? 0 : static_cast<std::uint8_t>(inside * 255);
    }
  }
  return result;
}

}  // namespace

engine::Bitmap opaquePicture() { return makePicture(true); }
engine::Bitmap cutOutPicture() { return makePicture(false); }

cv::Mat matOf(const engine::Bitmap& picture) {
  const engine::ConstPixels pixels = picture.pixels();
  return {pixels.height, pixels.width, CV_8UC4, const_cast<std::uint8_t*>(pixels.data), pixels.stride};
}

}  // namespace kestrel::bench
