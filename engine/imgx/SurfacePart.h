#pragma once

#include "Conversions.h"
#include "PictureOwner.h"
#include "imaging/contract/Surface.h"

namespace kestrel::engine {

class SurfacePart final : public kestrel::Surface {
 public:
  explicit SurfacePart(PictureOwner& owner) : owner_(owner) {}

  void DrawTo(DeviceContext& target, std::int32_t x, std::int32_t y, std::uint32_t rasterOperation) override {
    target.Blit(x, y, rowsOf(owner_.loadedPicture().bitmap()), rasterOperation);
  }

 private:
  PictureOwner& owner_;
};

}  // namespace kestrel::engine
