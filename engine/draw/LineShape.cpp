#include "LineShape.h"

#include <algorithm>
#include <cmath>

namespace kestrel::engine {
namespace {

/// The pixels whose centers are from `low` to `high`, clipped to a range.
PixelRun centersBetween(double low, double high, PixelRun range) {
  const auto cut = [&](double value) {
    return static_cast<std::int32_t>(
        std::clamp(value, static_cast<double>(range.first), static_cast<double>(range.last)));
  };
  return {cut(std::ceil(low - 0.5)), cut(std::floor(high - 0.5) + 1)};
}

}  // namespace

LineShape::LineShape(PointD from, PointD to, double width)
    : from_(from), to_(to), reach_(std::max(1.0, width) / 2 + 0.5) {}

Rectangle LineShape::bounds(const Rectangle& clip) const {
  const PixelRun columns =
      centersBetween(std::min(from_.X, to_.X) - reach_, std::max(from_.X, to_.X) + reach_,
                     {clip.Left, clip.Left + clip.Width});
  const PixelRun rows = centersBetween(std::min(from_.Y, to_.Y) - reach_, std::max(from_.Y, to_.Y) + reach_,
                                       {clip.Top, clip.Top + clip.Height});
  if (columns.empty() || rows.empty()) return {};
  return {columns.first, rows.first, columns.last - columns.first, rows.last - rows.first};
}

std::array<PixelRun, 2> LineShape::runs(std::int32_t y, PixelRun columns) const {
  // The covered area is a rectangle with a circle at each end; the run spans the row's intersections with all
  // three.
  const double center = y + 0.5;
  double low = HUGE_VAL, high = -HUGE_VAL;
  const auto include = [&](double x) {
    low = std::min(low, x);
    high = std::max(high, x);
  };
  for (const PointD& end : {from_, to_}) {
    const double dy = center - end.Y;
    if (std::abs(dy) > reach_) continue;
    const double half = std::sqrt(reach_ * reach_ - dy * dy);
    include(end.X - half);
    include(end.X + half);
  }
  const double dx = to_.X - from_.X;
  const double dy = to_.Y - from_.Y;
  const double length = std::hypot(dx, dy);
  if (length > 0 && dy != 0) {
    const double normalX = -dy / length * reach_;
    const double normalY = dx / length * reach_;
    for (const double side : {-1.0, 1.0}) {
      const double along = (center - from_.Y - side * normalY) / dy;
      if (along >= 0 && along <= 1) include(from_.X + side * normalX + along * dx);
    }
  }
  if (low > high) return {};
  return {centersBetween(low, high, columns), PixelRun{}};
}

void LineShape::cover(std::int32_t y, PixelRun run, std::uint8_t* out) const {
  const double dx = to_.X - from_.X;
  const double dy = to_.Y - from_.Y;
  const double lengthSquared = dx * dx + dy * dy;
  const double py = y + 0.5 - from_.Y;
  for (std::int32_t x = run.first; x < run.last; ++x) {
    const double px = x + 0.5 - from_.X;
    const double along = lengthSquared > 0 ? std::clamp((px * dx + py * dy) / lengthSquared, 0.0, 1.0) : 0.0;
    const double distance = std::hypot(px - along * dx, py - along * dy);
    *out++ = static_cast<std::uint8_t>(std::lrint(std::clamp(reach_ - distance, 0.0, 1.0) * 255));
  }
}

}  // namespace kestrel::engine
