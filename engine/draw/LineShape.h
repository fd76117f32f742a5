#pragma once

#include "Shape.h"

namespace kestrel::engine {

/// A straight line with round ends, as wide as the pen. A pixel is covered by how near its center is to the
/// line: wholly at half a pixel within its edge, not at all at half a pixel beyond it.
class LineShape final : public Shape {
 public:
  /// `width` in pixels, at least 1. From one pixel's center to another's, a line of width 1 along a row or
  /// column covers just the pixels from the one to the other. A line to its own start is a dot.
  LineShape(PointD from, PointD to, double width = 1);

  Rectangle bounds(const Rectangle& clip) const override;
  std::array<PixelRun, 2> runs(std::int32_t y, PixelRun columns) const override;
  void cover(std::int32_t y, PixelRun run, std::uint8_t* out) const override;

 private:
  PointD from_, to_;
  double reach_;  ///< from the line's middle to where it covers nothing any more
};

}  // namespace kestrel::engine
