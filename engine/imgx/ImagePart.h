#pragma once

#include "PictureOwner.h"
#include "imaging/contract/Image.h"

namespace kestrel::engine {

/// Read access to the owner's current picture.
class ImagePart final : public kestrel::Image {
 public:
  explicit ImagePart(PictureOwner& owner) : owner_(owner) {}

  std::int32_t Width() const override { return bitmap().width(); }
  std::int32_t Height() const override { return bitmap().height(); }
  std::int32_t Format() const override { return owner_.picture().state().format; }
  std::int32_t Pages() const override { return owner_.picture().state().pages; }
  std::string DecodeErrors() const override;
  Colour GetPixel(std::int32_t x, std::int32_t y) const override;
  void Convert(const Colour* background, std::int32_t pixelFormat) override;
  PixelRows Pixels() const override;

  const Bitmap& bitmap() const { return owner_.picture().bitmap(); }

 private:
  PictureOwner& owner_;
};

}  // namespace kestrel::engine
