#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// A point between pixels: pixel (x, y) is the square from (x, y) to (x + 1, y + 1), its center at a half.
struct PointD {
  double X = 0;
  double Y = 0;
};

/// Pixels next to each other in a row; `last` not included.
struct PixelRun {
  std::int32_t first = 0;
  std::int32_t last = 0;
  bool empty() const { return first >= last; }
};

/// Something to draw: how much of each pixel it covers.
class Shape {
 public:
  virtual ~Shape() = default;

  /// The smallest rectangle, cut to `clip`, outside of which it covers nothing; empty (0 wide) if that is
  /// all.
  virtual Rectangle bounds(const Rectangle& clip) const = 0;

  /// Up to two runs of row y, from left to right and apart from each other, outside of which it covers
  /// nothing; only those within `columns`.
  virtual std::array<PixelRun, 2> runs(std::int32_t y, PixelRun columns) const = 0;

  /// The coverage of each pixel of a run of row y, 0 none to 255 all of it.
  virtual void cover(std::int32_t y, PixelRun run, std::uint8_t* out) const = 0;
};

/// The rectangles within `clip`, each at most 32 rows high, that hold every pixel the shape covers: what to
/// keep of a picture before painting on it. They follow the shape closely, so that a long thin one needs
/// little.
std::vector<Rectangle> touchedBy(const Shape& shape, const Rectangle& clip);

/// Lays `color`, with its alpha, over the pixels of `target` that the shape covers and that are inside
/// `clip`. Each pixel is the source-over of Blend.h with the alpha times the coverage. Returns the rectangle
/// outside of which nothing has changed. Fails, if memory has run out, before the first pixel or not
/// at all.
Rectangle paint(Pixels target, const Rectangle& clip, const Shape& shape, Pixel color);

}  // namespace kestrel::engine
