#pragma once

#include "Shape.h"

namespace kestrel::engine {

/// A straight line with round caps, as wide as the pen. Coverage of a pixel falls linearly with the distance
/// of its center from the line: full at half a pixel inside the edge, none at half a pixel outside.
class LineShape final : public Shape {
 public:
  /// `width` in pixels, at least 1. A line of width 1 between the centers of two pixels of a row or column
  /// covers exactly these pixels and those between them. A line to its own start is a dot.
  LineShape(PointD from, PointD to, double width = 1);

  Rectangle bounds(const Rectangle& clip) const override;
  std::array<PixelRun, 2> runs(std::int32_t y, PixelRun columns) const override;
  void cover(std::int32_t y, PixelRun run, std::uint8_t* out) const override;

 private:
  PointD from_, to_;
  double reach_;  ///< distance from the line's axis at which coverage becomes 0
};

}  // namespace kestrel::engine
