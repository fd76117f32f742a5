#include "ImagePart.h"

#include <string>

#include "Conversions.h"

namespace kestrel::engine {

std::string ImagePart::DecodeErrors() const {
  const auto& notice = owner_.picture().state().notice;
  return notice ? *notice : std::string();
}

Colour ImagePart::GetPixel(std::int32_t x, std::int32_t y) const {
  const Bitmap& picture = bitmap();
  if (x < 0 || y < 0 || x >= picture.width() || y >= picture.height()) {
    throw RuntimeError(err::kInvalidCall, "The pixel (" + std::to_string(x) + ", " + std::to_string(y) +
                                              ") is outside the picture of " +
                                              std::to_string(picture.width()) + " x " +
                                              std::to_string(picture.height()) + " pixels.");
  }
  const Pixel pixel = picture.at(x, y);
  return Colour(pixel.b << 16 | pixel.g << 8 | pixel.r, pixel.a);
}

void ImagePart::Convert(const Colour* /*background*/, std::int32_t pixelFormat) {
  if (pixelFormat != kPixelFormatRgba) {
    throw RuntimeError(err::kInvalidCall, "The pixel format " + std::to_string(pixelFormat) + " is unknown.");
  }
}

PixelRows ImagePart::Pixels() const { return rowsOf(bitmap()); }

}  // namespace kestrel::engine
