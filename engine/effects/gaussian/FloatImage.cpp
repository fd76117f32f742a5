#include "FloatImage.h"

#include <algorithm>

#include "engine/effects/rows/FloatRows.h"

namespace kestrel::engine {

FloatImage::FloatImage(std::size_t valuesPerRow, std::int32_t rows)
    : stride_((valuesPerRow + 15) / 16 * 16 + kRowSlack),
      memory_(stride_ * static_cast<std::size_t>(rows) * sizeof(float)) {
  std::fill_n(values(), memory_.size() / sizeof(float), 0.0F);
}

}  // namespace kestrel::engine
