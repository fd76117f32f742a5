#pragma once

#include "PaintBuffer.h"
#include "imaging/contract/DeviceContext.h"

namespace kestrel::engine {

/// The back buffer of a view that is being painted, open for drawing inside the area that is being painted.
class BackBuffer final : public DeviceContext {
 public:
  BackBuffer(const PaintBuffer& buffer, const Rectangle& area) : buffer_(buffer), area_(area) {}

  std::int32_t Width() const override { return buffer_.width; }
  std::int32_t Height() const override { return buffer_.height; }
  /// Colours are copied as they stand, transparent ones too, and become opaque.
  void Blit(std::int32_t x, std::int32_t y, const PixelRows& source, std::uint32_t rasterOperation) override;

 private:
  PaintBuffer buffer_;
  Rectangle area_;
};

}  // namespace kestrel::engine
