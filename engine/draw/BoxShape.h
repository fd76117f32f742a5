#pragma once

#include <cstdint>
#include <optional>

#include "Shape.h"

namespace kestrel::engine {

/// Shapes inscribed in a box: rectangles, rounded rectangles, ellipses.
///
/// The box lies between two points, in either order: the columns and rows from the smaller coordinate up to,
/// and not including, the larger one. So from (0, 0) to (10, 5) a filled rectangle is exactly the 10 x 5
/// pixels from (0, 0) to (9, 4), and boxes that share an edge neither overlap nor leave a gap. An outline
/// lies inside the same box, as wide as the pen. Points in one column or row make a box without area: nothing
/// is drawn.
///
/// Straight edges are not antialiased. Curves are antialiased by coverage, measured along 16 scan lines per
/// pixel row.
class BoxShape final : public Shape {
 public:
  /// `pen` is the width of the outline in pixels, at least 1; without it the shape is filled. The radii of
  /// the corners are limited to half the box; negative ones count as 0.
  static BoxShape rectangle(Point start, Point end, std::optional<std::int32_t> pen, std::int32_t radiusX = 0,
                            std::int32_t radiusY = 0);
  static BoxShape ellipse(Point start, Point end, std::optional<std::int32_t> pen);

  Rectangle bounds(const Rectangle& clip) const override;
  std::array<PixelRun, 2> runs(std::int32_t y, PixelRun columns) const override;
  void cover(std::int32_t y, PixelRun run, std::uint8_t* out) const override;

 private:
  static constexpr int kLines = 16;

  /// Intersection of a horizontal scan line with the shape; empty if `right` <= `left`.
  struct Chord {
    double left = 0, right = 0;
    bool empty() const { return left >= right; }
  };
  using Chords = std::array<Chord, kLines>;

  struct RoundedBox {
    double left, top, right, bottom, radiusX, radiusY;
    Chord chord(double y) const;
    Chords chords(std::int32_t y) const;
  };

  BoxShape(const RoundedBox& outer, std::optional<std::int32_t> pen);

  RoundedBox outer_;
  std::optional<RoundedBox> hole_;
};

}  // namespace kestrel::engine
