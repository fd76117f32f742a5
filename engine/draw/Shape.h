#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// A point in continuous coordinates: pixel (x, y) is the square from (x, y) to (x + 1, y + 1), its center at
/// (x + 0.5, y + 0.5).
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

/// Something to draw, as the coverage of each pixel.
class Shape {
 public:
  virtual ~Shape() = default;

  /// Bounding rectangle of the covered pixels, clipped to `clip`; empty (0 wide) if there are none.
  virtual Rectangle bounds(const Rectangle& clip) const = 0;

  /// Up to two disjoint runs of row y, from left to right, that hold all covered pixels within `columns`.
  virtual std::array<PixelRun, 2> runs(std::int32_t y, PixelRun columns) const = 0;

  /// The coverage of each pixel of a run of row y: 0 none to 255 full.
  virtual void cover(std::int32_t y, PixelRun run, std::uint8_t* out) const = 0;
};

/// Rectangles within `clip`, each at most 32 rows high, that hold every pixel the shape covers: the pixels to
/// save for undo before painting. They follow the shape closely, so a long thin line needs little memory.
std::vector<Rectangle> touchedBy(const Shape& shape, const Rectangle& clip);

/// Composites `color` over the pixels of `target` that the shape covers inside `clip`: source-over of
/// Blend.h, with alpha times coverage. Returns a rectangle that holds all changed pixels. An error (out of
/// memory) is raised before the first pixel is written or not at all.
Rectangle paint(Pixels target, const Rectangle& clip, const Shape& shape, Pixel color);

}  // namespace kestrel::engine
