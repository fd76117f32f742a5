#include "DropShadow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

#include "Composite.h"
#include "base/RuntimeError.h"
#include "engine/effects/gaussian/GaussianFilter.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/FloatRows.h"
#include "engine/effects/rows/WriteRows.h"
#include "engine/parallel/Parallel.h"
#include "engine/pixels/Opaque.h"

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

/// Bounding box of the pixels that are not fully transparent.
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

/// A side of the result, clamped to 32 bits; the bitmap refuses sizes beyond its limits.
std::int32_t side(std::int64_t length) {
  return static_cast<std::int32_t>(std::min<std::int64_t>(length, INT32_MAX));
}

/// Enlargement on each side, in pixels, that the shadow needs.
struct Growth {
  std::int64_t left = 0, top = 0, right = 0, bottom = 0;
};

Growth growthFor(const Box& visible, const ConstPixels& picture, std::int64_t offsetX, std::int64_t offsetY,
                 double sigma) {
  const auto reach = static_cast<std::int64_t>(std::ceil(3 * sigma));
  const auto beyond = [](std::int64_t distance) { return std::max<std::int64_t>(0, distance); };
  return {beyond(reach - offsetX - visible.left), beyond(reach - offsetY - visible.top),
          beyond(visible.right + offsetX + reach - picture.width),
          beyond(visible.bottom + offsetY + reach - picture.height)};
}

}  // namespace

double shadowSigma(double blur) { return std::min(blur, 255.0) / 32; }

Bitmap dropShadow(const Bitmap& source, std::int32_t offsetX, std::int32_t offsetY, Pixel color, double blur,
                  bool grow) {
  requirePicture(source);
  if (!(blur >= 0)) throw RuntimeError(err::kInvalidCall, "The blur of a shadow must be 0 or more.");
  const ConstPixels from = source.pixels();
  const std::optional<Box> visible = visibleBox(from);
  if (!visible) return source;

  const double sigma = shadowSigma(blur);
  const Growth growth = grow ? growthFor(*visible, from, offsetX, offsetY, sigma) : Growth{};
  Bitmap result = Bitmap::uninitialized(side(growth.left + from.width + growth.right),
                                        side(growth.top + from.height + growth.bottom));
  const Pixels to = result.writable();

  // Source column that column 0 of the result takes the shadow from. Offsets beyond any picture's size are
  // clamped: the shadow is outside anyway.
  const auto start = [](std::int64_t grown, std::int32_t offset) {
    return static_cast<std::int32_t>(-grown -
                                     std::clamp(offset, -4 * Bitmap::kMaxSide, 4 * Bitmap::kMaxSide));
  };
  const std::int32_t startX = start(growth.left, offsetX);
  const std::int32_t startY = start(growth.top, offsetY);
  const GaussianAxis columns(from.width, to.width, startX, sigma);
  const GaussianAxis rows(from.height, to.height, startY, sigma);
  std::uint32_t tint;
  std::memcpy(&tint, &color, sizeof tint);
  const bool stream = exceedsCaches(result.byteSize());
  // Composites the picture over the tinted shadow. Pieces begin at multiples of 64 bytes, as non-temporal
  // stores need.
  constexpr std::int32_t kPixels = 512;
  const auto finishSome = [&](std::int32_t y, Interval part, const float* shadow, float strength) {
    alignas(64) std::array<std::uint8_t, 4 * kPixels> pixels;
    tintRow(shadow, part.length(), tint, strength, pixels.data());
    const std::int64_t sourceY = y - growth.top;
    const std::int64_t first = std::max<std::int64_t>(part.first, growth.left);
    const std::int64_t last = std::min<std::int64_t>(part.last, growth.left + from.width);
    if (sourceY >= 0 && sourceY < from.height && first < last) {
      compositeRow(from.row(static_cast<std::int32_t>(sourceY)) + 4 * (first - growth.left),
                   pixels.data() + 4 * (first - part.first), static_cast<std::int32_t>(last - first));
    }
    copyRow(pixels.data(), part.length(), stream, to.row(y) + std::ptrdiff_t{4} * part.first);
  };
  const auto finish = [&](std::int32_t y, Interval piece, const float* shadow, float strength) {
    for (std::int32_t x = piece.first; x < piece.last; x += kPixels) {
      finishSome(y, {x, std::min(x + kPixels, piece.last)}, shadow + (x - piece.first), strength);
    }
  };
  if (isOpaque(from)) {
    // The shadow of an opaque rectangle is the product of two one-dimensional profiles.
    const std::vector<float> across = columns.profile();
    const std::vector<float> down = rows.profile();
    forRows(to.height, rowsPerTask(to.width), [&](std::int32_t first, std::int32_t last) {
      for (std::int32_t y = first; y < last; ++y) {
        finish(y, {0, to.width}, across.data(), color.a * down[static_cast<std::size_t>(y)]);
      }
      if (stream) storeFence();
    });
  } else {
    const float opacity = static_cast<float>(color.a) / 255.0F;
    gaussianFilter(
        from, GaussianChannels::Alpha, columns, rows,
        [&](std::int32_t y, Interval piece, const float* shadow) { finish(y, piece, shadow, opacity); });
  }
  return result;
}

}  // namespace kestrel::engine
