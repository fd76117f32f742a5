#pragma once

#include "PaintBuffer.h"
#include "imaging/contract/DeviceContext.h"

namespace kestrel::engine {

/// The back buffer during a paint, clipped to the area being painted.
class BackBuffer final : public DeviceContext {
 public:
  BackBuffer(const PaintBuffer& buffer, const Rectangle& area) : buffer_(buffer), area_(area) {}

  std::int32_t Width() const override { return buffer_.width; }
  std::int32_t Height() const override { return buffer_.height; }
  /// Copies red, green and blue unchanged, without blending, and makes the pixels opaque.
  void Blit(std::int32_t x, std::int32_t y, const PixelRows& source, std::uint32_t rasterOperation) override;

 private:
  PaintBuffer buffer_;
  Rectangle area_;
};

}  // namespace kestrel::engine
