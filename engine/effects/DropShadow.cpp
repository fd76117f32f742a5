#include "DropShadow.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

#include "Common.h"
#include "Composite.h"
#include "FilterRows.h"
#include "GaussianFilter.h"
#include "base/RuntimeError.h"

namespace kestrel::engine {
namespace {

struct Box {
  std::int64_t left, top, right, bottom;  ///< `right` and `bottom` not included
};

bool anyVisible(const std::uint8_t* row, std::int64_t first, std::int64_t last) {
  for (std::int64_t x = first; x < last; ++x) {
    if (row[4 * x + 3] != 0) return true;
  }
  return false;
}

/// The smallest box that holds every pixel that is not fully transparent.
std::optional<Box> visibleBox(const ConstPixels& picture) {
  std::int32_t top = 0, bottom = picture.height;
  while (top < bottom && !anyVisible(picture.row(top), 0, picture.width)) ++top;
  if (top == bottom) return {};
  while (!anyVisible(picture.row(bottom - 1), 0, picture.width)) --bottom;
  std::int64_t left = picture.width, right = 0;
  for (std::int32_t y = top; y < bottom; ++y) {
    const std::uint8_t* const row = picture.row(y);
    for (std::int64_t x = 0; x < left; ++x) {
      if (row[4 * x + 3] != 0) left = x;
    }
    for (std::int64_t x = picture.width; x > right; --x) {
      if (row[4 * x - 1] != 0) right = x;
    }
  }
  return Box{left, top, right, bottom};
}

/// What a side of the result would have, as far as a bitmap can be asked for it.
std::int32_t side(std::int64_t length) {
  return static_cast<std::int32_t>(std::min<std::int64_t>(length, INT32_MAX));
}

}  // namespace

double shadowSigma(double blur) { return std::min(blur, 255.0) / 32; }

Bitmap dropShadow(const Bitmap& source, std::int32_t offsetX, std::int32_t offsetY, Pixel color,
                  double blur) {
  requirePicture(source);
  if (!(blur >= 0)) throw RuntimeError(err::kInvalidCall, "The blur of a shadow must be 0 or more.");
  const ConstPixels from = source.pixels();
  const std::optional<Box> visible = visibleBox(from);
  if (!visible) return source;

  const double sigma = shadowSigma(blur);
  const auto reach = static_cast<std::int64_t>(std::ceil(3 * sigma));
  const std::int64_t growLeft = std::max<std::int64_t>(0, reach - offsetX - visible->left);
  const std::int64_t growTop = std::max<std::int64_t>(0, reach - offsetY - visible->top);
  const std::int64_t growRight = std::max<std::int64_t>(0, visible->right + offsetX + reach - from.width);
  const std::int64_t growBottom = std::max<std::int64_t>(0, visible->bottom + offsetY + reach - from.height);
  Bitmap result = Bitmap::uninitialized(side(growLeft + from.width + growRight),
                                        side(growTop + from.height + growBottom));
  const Pixels to = result.writable();

  // The shadow's own place in the picture it is cast by: column 0 of the result stands at this column of it.
  const auto startX = static_cast<std::int32_t>(-growLeft - offsetX);
  const auto startY = static_cast<std::int32_t>(-growTop - offsetY);
  const GaussianAxis columns(from.width, to.width, startX, sigma, FilterEdge::Transparent);
  const GaussianAxis rows(from.height, to.height, startY, sigma, FilterEdge::Transparent);
  std::uint32_t tint;
  std::memcpy(&tint, &color, sizeof tint);
  const float opacity = static_cast<float>(color.a) / 255.0F;
  const RowSink finish = [&](std::int32_t y, const float* shadow) {
    tintRow(shadow, to.width, tint, opacity, to.row(y));
    const std::int64_t sourceY = y - growTop;
    if (sourceY < 0 || sourceY >= from.height) return;
    compositeRow(from.row(static_cast<std::int32_t>(sourceY)), to.row(y) + 4 * growLeft, from.width);
  };
  gaussianFilter(FilterSource::alpha(from), columns, rows, finish);
  return result;
}

}  // namespace kestrel::engine
