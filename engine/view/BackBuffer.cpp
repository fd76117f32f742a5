#include "BackBuffer.h"

#include <algorithm>
#include <cstring>

#include "base/RuntimeError.h"

namespace kestrel::engine {

void BackBuffer::Blit(std::int32_t x, std::int32_t y, const PixelRows& source,
                      std::uint32_t rasterOperation) {
  if (rasterOperation != kSourceCopy) {
    throw RuntimeError(err::kInvalidCall, "The only raster operation is a plain copy.");
  }
  const std::int64_t left = std::max(x, area_.Left);
  const std::int64_t top = std::max(y, area_.Top);
  const std::int64_t right = std::min(std::int64_t{x} + source.Width, std::int64_t{area_.Left} + area_.Width);
  const std::int64_t bottom =
      std::min(std::int64_t{y} + source.Height, std::int64_t{area_.Top} + area_.Height);
  const bool swap = buffer_.order == ChannelOrder::bgra;
  for (std::int64_t row = top; row < bottom; ++row) {
    const std::uint8_t* from = source.Data + static_cast<std::size_t>(row - y) * source.Stride +
                               4 * static_cast<std::size_t>(std::max<std::int64_t>(left - x, 0));
    std::uint8_t* to = buffer_.row(static_cast<std::int32_t>(row)) + 4 * static_cast<std::size_t>(left);
    for (std::int64_t column = left; column < right; ++column, from += 4, to += 4) {
      to[0] = from[swap ? 2 : 0];
      to[1] = from[1];
      to[2] = from[swap ? 0 : 2];
      to[3] = 255;
    }
  }
}

}  // namespace kestrel::engine
