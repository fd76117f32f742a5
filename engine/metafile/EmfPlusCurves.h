#pragma once

#include <vector>

#include "EmfPlusObjects.h"

// Shapes as paths.

namespace kestrel::engine::emf::plus {

Path pathOfRect(const Rect& rect);
Path pathOfPoints(const std::vector<Point>& points, bool closed);
Path pathOfBeziers(const std::vector<Point>& points);
Path pathOfEllipse(const Rect& rect);

enum class ArcKind { open, pie };
/// The part of an ellipse from an angle on, in degrees clockwise from the right, over so many more.
Path pathOfArc(const Rect& rect, double start, double sweep, ArcKind kind);

/// A curve through `count` + 1 points from `first` on: a cardinal spline, whose tangent at a point is
/// parallel to the line between its neighbours and `tension` of its length.
Path pathOfCurve(const std::vector<Point>& points, double tension, bool closed, std::size_t first,
                 std::size_t count);

/// The points of the path, its curves in a few lines each, and for each the number of the path's point.
struct Flattened {
  std::vector<Point> points;
  std::vector<std::size_t> origins;
};
Flattened flattened(const Path& path);

}  // namespace kestrel::engine::emf::plus
