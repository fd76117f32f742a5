// The player's closed shapes and arcs, told as lines and curves.

#include <algorithm>
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

/// Four curves that are as near to an ellipse as makes no difference (the usual 0.5523 of the radius).
void Player::addEllipse(const Rect& rect) {
  constexpr double kHandle = 0.5522847498;
  const double cx = (rect.left + rect.right) / 2, cy = (rect.top + rect.bottom) / 2;
  const double rx = (rect.right - rect.left) / 2, ry = (rect.bottom - rect.top) / 2;
  const auto at = [&](double x, double y) { return Point{cx + x * rx, cy + y * ry}; };
  addLines({at(1, 0)});
  addCurves({at(1, kHandle), at(kHandle, 1), at(0, 1), at(-kHandle, 1), at(-1, kHandle), at(-1, 0),
             at(-1, -kHandle), at(-kHandle, -1), at(0, -1), at(kHandle, -1), at(1, -kHandle), at(1, 0)},
            0);
  cairo_close_path(cairo_.get());
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
  cairo_close_path(cairo_.get());
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

}  // namespace kestrel::engine::metafile
