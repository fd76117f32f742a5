// Closed shapes and arcs of the player, as lines and curves.

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "MetafilePlayer.h"

namespace kestrel::engine::metafile {
namespace {

Rect ordered(const Rect& r) {
  return {std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right),
          std::max(r.top, r.bottom)};
}

}  // namespace

void Player::rectangle(const Rect& rect) {
  polygons(
      {{{rect.left, rect.top}, {rect.right, rect.top}, {rect.right, rect.bottom}, {rect.left, rect.bottom}}},
      true);
}

/// Four cubic Beziers, with control points at 0.5523 of the radius.
void Player::addEllipse(const Rect& rect) {
  constexpr double kHandle = 0.5522847498;
  const double cx = (rect.left + rect.right) / 2, cy = (rect.top + rect.bottom) / 2;
  const double rx = (rect.right - rect.left) / 2, ry = (rect.bottom - rect.top) / 2;
  const auto at = [&](double x, double y) { return Point{cx + x * rx, cy + y * ry}; };
  addLines({at(1, 0)});
  addCurves({at(1, kHandle), at(kHandle, 1), at(0, 1), at(-kHandle, 1), at(-1, kHandle), at(-1, 0),
             at(-1, -kHandle), at(-kHandle, -1), at(0, -1), at(kHandle, -1), at(1, -kHandle), at(1, 0)},
            0);
  canvas_.closePath();
}

void Player::ellipse(const Rect& rect) {
  beginFigure();
  addEllipse(rect);
  endFigure(true);
}

void Player::roundRectangle(const Rect& rect, double cornerWidth, double cornerHeight) {
  const Rect r = ordered(rect);
  const double rx = std::min(std::abs(cornerWidth) / 2, (r.right - r.left) / 2);
  const double ry = std::min(std::abs(cornerHeight) / 2, (r.bottom - r.top) / 2);
  constexpr double kRest = 1 - 0.5522847498;
  const double hx = rx * kRest, hy = ry * kRest;
  beginFigure();
  addLines({{r.left + rx, r.top}, {r.right - rx, r.top}});
  addCurves({{r.right - hx, r.top}, {r.right, r.top + hy}, {r.right, r.top + ry}}, 0);
  addCurves({{r.right, r.bottom - ry},
             {r.right, r.bottom - ry},
             {r.right, r.bottom - ry},
             {r.right, r.bottom - hy},
             {r.right - hx, r.bottom},
             {r.right - rx, r.bottom},
             {r.left + rx, r.bottom},
             {r.left + rx, r.bottom},
             {r.left + rx, r.bottom},
             {r.left + hx, r.bottom},
             {r.left, r.bottom - hy},
             {r.left, r.bottom - ry},
             {r.left, r.top + ry},
             {r.left, r.top + ry},
             {r.left, r.top + ry},
             {r.left, r.top + hy},
             {r.left + hx, r.top},
             {r.left + rx, r.top}},
            0);
  canvas_.closePath();
  endFigure(true);
}

void Player::arc(const Rect& rect, Point from, Point to, ArcKind kind, bool connect) {
  const double cx = (rect.left + rect.right) / 2, cy = (rect.top + rect.bottom) / 2;
  const double rx = std::abs(rect.right - rect.left) / 2, ry = std::abs(rect.bottom - rect.top) / 2;
  if (rx == 0 || ry == 0) return;
  const double start = std::atan2((from.y - cy) / ry, (from.x - cx) / rx);
  double sweep = std::atan2((to.y - cy) / ry, (to.x - cx) / rx) - start;
  constexpr double kTurn = 2 * std::numbers::pi;
  // With y downwards a growing angle turns clockwise.
  if (state_.arcsClockwise) {
    if (sweep <= 0) sweep += kTurn;
  } else if (sweep >= 0) {
    sweep -= kTurn;
  }
  constexpr int kPieces = 64;
  std::vector<Point> points;
  if (connect) points.push_back(state_.position);
  for (int i = 0; i <= kPieces; ++i) {
    const double angle = start + sweep * i / kPieces;
    points.push_back({cx + rx * std::cos(angle), cy + ry * std::sin(angle)});
  }
  const Point end = points.back();
  if (kind == ArcKind::pie) points.push_back({cx, cy});
  polygons({points}, kind != ArcKind::open);
  if (connect) state_.position = end;
}

void Player::setPixel(Point at, Color color) {
  const Point p = toPicture(at);
  canvas_.newPath();
  const double x = std::floor(p.x), y = std::floor(p.y);
  canvas_.polygon({{x, y}, {x + 1, y}, {x + 1, y + 1}, {x, y + 1}});
  setSource(color);
  paint(canvas_.filledExtents(), 1, [c = canvas_.context()] { cairo_fill(c); });
}

void Player::gradientRect(const ColoredPoint& first, const ColoredPoint& last, bool downwards) {
  const Point from = toPicture(first.at);
  const Point to = toPicture(downwards ? Point{first.at.x, last.at.y} : Point{last.at.x, first.at.y});
  const Pattern pattern(cairo_pattern_create_linear(from.x, from.y, to.x, to.y));
  double at = 0;
  for (const ColoredPoint* const each : {&first, &last}) {
    const auto& [r, g, b, a] = each->color;
    cairo_pattern_add_color_stop_rgba(pattern.get(), at, r, g, b, a);
    at = 1;
  }
  addRects({{first.at.x, first.at.y, last.at.x, last.at.y}});
  cairo_t* const c = canvas_.context();
  cairo_set_source(c, pattern.get());
  paint(canvas_.filledExtents(), 8, [c] { cairo_fill(c); });
  canvas_.newPath();
}

void Player::gradientTriangle(const std::array<ColoredPoint, 3>& corners) {
  const Pattern mesh(cairo_pattern_create_mesh());
  cairo_mesh_pattern_begin_patch(mesh.get());
  canvas_.newPath();
  std::vector<Point> points;
  for (unsigned i = 0; i < 3; ++i) {
    const Point p = toPicture(corners[i].at);
    points.push_back(p);
    if (i == 0) {
      cairo_mesh_pattern_move_to(mesh.get(), p.x, p.y);
    } else {
      cairo_mesh_pattern_line_to(mesh.get(), p.x, p.y);
    }
  }
  for (unsigned i = 0; i < 3; ++i) {
    const auto& [r, g, b, a] = corners[i].color;
    cairo_mesh_pattern_set_corner_color_rgba(mesh.get(), i, r, g, b, a);
  }
  cairo_mesh_pattern_end_patch(mesh.get());
  canvas_.polygon(points);
  cairo_t* const c = canvas_.context();
  cairo_set_source(c, mesh.get());
  paint(canvas_.filledExtents(), 64, [c] { cairo_fill(c); });
  canvas_.newPath();
}

void Player::fillRect(const Rect& rect, Color color) {
  addRects({rect});
  setSource(color);
  cairo_t* const c = canvas_.context();
  cairo_set_operator(c, CAIRO_OPERATOR_OVER);
  // Programs paint surfaces of many such boxes; half covered pixels would show as lines between them.
  const cairo_antialias_t before = cairo_get_antialias(c);
  cairo_set_antialias(c, CAIRO_ANTIALIAS_NONE);
  if (canvas_.affords(canvas_.filledExtents())) cairo_fill(c);
  cairo_set_antialias(c, before);
  canvas_.newPath();
}

void Player::fillRects(const std::vector<Rect>& rects, const Brush& brush) {
  addRects(rects);
  cairo_t* const c = canvas_.context();
  cairo_set_fill_rule(c, CAIRO_FILL_RULE_WINDING);
  if (setBrushSource(brush)) paint(canvas_.filledExtents(), 2, [c] { cairo_fill_preserve(c); });
  canvas_.newPath();
}

/// Fills the inner border of each rectangle.
void Player::frameRects(const std::vector<Rect>& rects, const Brush& brush, double width, double height) {
  std::vector<Rect> borders;
  for (const Rect& each : rects) {
    const Rect r = ordered(each);
    const double w = std::min(std::abs(width), (r.right - r.left) / 2),
                 h = std::min(std::abs(height), (r.bottom - r.top) / 2);
    borders.push_back({r.left, r.top, r.right, r.top + h});
    borders.push_back({r.left, r.bottom - h, r.right, r.bottom});
    borders.push_back({r.left, r.top + h, r.left + w, r.bottom - h});
    borders.push_back({r.right - w, r.top + h, r.right, r.bottom - h});
  }
  fillRects(borders, brush);
}

void Player::invertRects(const std::vector<Rect>& rects) {
  constexpr std::uint8_t kInvert = 0x55;
  addRects(rects);
  cairo_t* const c = canvas_.context();
  cairo_set_fill_rule(c, CAIRO_FILL_RULE_WINDING);
  setSource({});
  canvas_.mix(kInvert, canvas_.filledExtents(), nullptr, [c] { cairo_fill_preserve(c); });
  canvas_.newPath();
}

}  // namespace kestrel::engine::metafile
