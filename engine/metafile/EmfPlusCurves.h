#pragma once

#include <vector>

#include "EmfPlusObjects.h"

// Converts shapes to paths.

namespace kestrel::engine::emf::plus {

Path pathOfRect(const Rect& rect);
Path pathOfPoints(const std::vector<Point>& points, bool closed);
Path pathOfBeziers(const std::vector<Point>& points);
Path pathOfEllipse(const Rect& rect);

enum class ArcKind { open, pie };
/// Arc of an ellipse. Angles are in degrees, clockwise from the positive x axis; `sweep` may be negative.
Path pathOfArc(const Rect& rect, double start, double sweep, ArcKind kind);

/// Cardinal spline through `count` + 1 points from `first` on. The tangent at a point is `tension` times the
/// vector between its neighbors.
Path pathOfCurve(const std::vector<Point>& points, double tension, bool closed, std::size_t first,
                 std::size_t count);

/// The path with its curves flattened to a few lines each; for each point the index of its origin in the
/// path.
struct Flattened {
  std::vector<Point> points;
  std::vector<std::size_t> origins;
};
Flattened flattened(const Path& path);

}  // namespace kestrel::engine::emf::plus
