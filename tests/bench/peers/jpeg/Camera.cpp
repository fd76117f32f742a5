#include "Camera.h"

#include <algorithm>

#include "../png/TestPicture.h"

namespace kestrel::bench {

engine::Bitmap cameraPhotograph(std::int32_t width, std::int32_t height) {
  engine::Bitmap picture = photograph(width, height, false);
  const engine::Pixels pixels = picture.writable();
  std::uint32_t random = 1;
  const auto next = [&random] {
    random = random * 1664525U + 1013904223U;  // Numerical Recipes' generator; its upper bits are good
    return static_cast<int>(random >> 28) - 7;
  };
  for (std::int32_t y = 0; y < height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < width; ++x, p += 4) {
      const int grain = next() + next();
      for (int i = 0; i < 3; ++i) {
        p[i] = static_cast<std::uint8_t>(std::clamp(p[i] + grain + next() / 2, 0, 255));
      }
    }
  }
  return picture;
}

}  // namespace kestrel::bench
