#include "EmfPlusCurves.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrel::engine::emf::plus {

Path pathOfRect(const Rect& r) {
  return pathOfPoints({{r.left, r.top}, {r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}}, true);
}

Path pathOfPoints(const std::vector<Point>& points, bool closed) {
  Path path;
  for (std::size_t i = 0; i < points.size(); ++i) i == 0 ? path.start(points[i]) : path.line(points[i]);
  if (closed) path.close();
  return path;
}

Path pathOfBeziers(const std::vector<Point>& points) {
  Path path;
  if (points.empty()) return path;
  path.start(points[0]);
  for (std::size_t i = 1; i + 2 < points.size(); i += 3) path.curve(points[i], points[i + 1], points[i + 2]);
  return path;
}

Path pathOfEllipse(const Rect& rect) {
  Path path = pathOfArc(rect, 0, 360, ArcKind::open);
  path.close();
  return path;
}

Path pathOfArc(const Rect& rect, double start, double sweep, ArcKind kind) {
  Path path;
  if (!std::isfinite(start) || !std::isfinite(sweep)) return path;
  const double cx = (rect.left + rect.right) / 2, cy = (rect.top + rect.bottom) / 2;
  const double rx = (rect.right - rect.left) / 2, ry = (rect.bottom - rect.top) / 2;
  constexpr double kDegree = std::numbers::pi / 180;
  // Converts the angle of a ray from the center to the ellipse's parameter.
  const auto onEllipse = [&](double degrees) {
    const double angle = degrees * kDegree;
    const double bent = std::atan2(std::sin(angle) * std::abs(rx), std::cos(angle) * std::abs(ry));
    return bent + std::round((angle - bent) / (2 * std::numbers::pi)) * 2 * std::numbers::pi;
  };
  const double turn = std::clamp(sweep, -360.0, 360.0);
  const double first = onEllipse(std::fmod(start, 360));
  const double last =
      std::abs(turn) == 360 ? first + turn * kDegree : onEllipse(std::fmod(start, 360) + turn);
  const auto at = [&](double x, double y) { return Point{cx + rx * x, cy + ry * y}; };
  // Four cubic Beziers approximate an ellipse to within 0.03 % of its radius.
  constexpr int kPieces = 4;
  const double step = (last - first) / kPieces, handle = 4 / 3.0 * std::tan(step / 4);
  if (kind == ArcKind::pie) {
    path.start({cx, cy});
    path.line(at(std::cos(first), std::sin(first)));
  } else {
    path.start(at(std::cos(first), std::sin(first)));
  }
  for (int i = 0; i < kPieces; ++i) {
    const double a = first + step * i, b = a + step;
    path.curve(at(std::cos(a) - handle * std::sin(a), std::sin(a) + handle * std::cos(a)),
               at(std::cos(b) + handle * std::sin(b), std::sin(b) - handle * std::cos(b)),
               at(std::cos(b), std::sin(b)));
  }
  if (kind == ArcKind::pie) path.close();
  return path;
}

Path pathOfCurve(const std::vector<Point>& points, double tension, bool closed, std::size_t first,
                 std::size_t count) {
  Path path;
  const std::size_t size = points.size();
  if (size < 2 || first >= size) return path;
  const auto at = [&](std::size_t i, int by) {
    if (closed) return points[(i + size + static_cast<std::size_t>(by + static_cast<int>(size))) % size];
    const auto shifted = static_cast<std::ptrdiff_t>(i) + by;
    return points[static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(shifted, 0, static_cast<std::ptrdiff_t>(size) - 1))];
  };
  // The control point is at a third of the tangent.
  const double part = (std::isfinite(tension) ? tension : 0.5) / 3;
  const std::size_t segments = closed ? size : std::min(count, size - 1 - first);
  path.start(points[first]);
  for (std::size_t i = first; i < first + segments; ++i) {
    const Point before = at(i, -1), from = at(i, 0), to = at(i, 1), after = at(i, 2);
    path.curve({from.x + (to.x - before.x) * part, from.y + (to.y - before.y) * part},
               {to.x - (after.x - from.x) * part, to.y - (after.y - from.y) * part}, to);
  }
  if (closed) path.close();
  return path;
}

Flattened flattened(const Path& path) {
  constexpr int kLines = 8;
  Flattened result;
  const auto add = [&](Point p, std::size_t origin) {
    result.points.push_back(p);
    result.origins.push_back(origin);
  };
  for (std::size_t i = 0; i < path.points.size(); ++i) {
    if ((path.types[i] & Path::kKind) != Path::kCurve || i == 0 || i + 2 >= path.points.size()) {
      add(path.points[i], i);
      continue;
    }
    const Point a = path.points[i - 1], b = path.points[i], c = path.points[i + 1], d = path.points[i + 2];
    for (int line = 1; line <= kLines; ++line) {
      const double t = static_cast<double>(line) / kLines, u = 1 - t;
      const double fa = u * u * u, fb = 3 * u * u * t, fc = 3 * u * t * t, fd = t * t * t;
      add({fa * a.x + fb * b.x + fc * c.x + fd * d.x, fa * a.y + fb * b.y + fc * c.y + fd * d.y}, i + 2);
    }
    i += 2;
  }
  return result;
}

}  // namespace kestrel::engine::emf::plus
