#include "FloatImage.h"

#include <algorithm>

#include "FilterRows.h"

namespace kestrel::engine {

FloatImage::FloatImage(std::size_t valuesPerRow, std::int32_t rows)
    : stride_(valuesPerRow + kRowSlack), memory_(stride_ * static_cast<std::size_t>(rows) * sizeof(float)) {
  for (std::int32_t y = 0; y < rows; ++y) std::fill_n(row(y) + valuesPerRow, kRowSlack, 0.0F);
}

}  // namespace kestrel::engine
