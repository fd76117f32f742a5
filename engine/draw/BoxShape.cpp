#include "BoxShape.h"

#include <algorithm>
#include <cmath>

namespace kestrel::engine {
namespace {

/// A coordinate clamped to the edges of `columns`.
std::int32_t within(PixelRun columns, double x) {
  return static_cast<std::int32_t>(
      std::clamp(x, static_cast<double>(columns.first), static_cast<double>(columns.last)));
}

}  // namespace

BoxShape::Chord BoxShape::RoundedBox::chord(double y) const {
  if (y <= top || y >= bottom) return {};
  const double intoCorner = std::max({top + radiusY - y, y - (bottom - radiusY), 0.0});
  if (intoCorner == 0) return {left, right};
  const double part = intoCorner / radiusY;
  const double inset = radiusX * (1 - std::sqrt(1 - part * part));
  return {left + inset, right - inset};
}

BoxShape::Chords BoxShape::RoundedBox::chords(std::int32_t y) const {
  Chords result;
  for (int i = 0; i < kLines; ++i) result[static_cast<std::size_t>(i)] = chord(y + (i + 0.5) / kLines);
  return result;
}

BoxShape::BoxShape(const RoundedBox& outer, std::optional<std::int32_t> pen) : outer_(outer) {
  if (!pen) return;
  const double width = std::max(1, *pen);
  const RoundedBox hole{outer.left + width,
                        outer.top + width,
                        outer.right - width,
                        outer.bottom - width,
                        std::max(0.0, outer.radiusX - width),
                        std::max(0.0, outer.radiusY - width)};
  if (hole.left < hole.right && hole.top < hole.bottom) hole_ = hole;
}

BoxShape BoxShape::rectangle(Point start, Point end, std::optional<std::int32_t> pen, std::int32_t radiusX,
                             std::int32_t radiusY) {
  RoundedBox box{static_cast<double>(std::min(start.X, end.X)),
                 static_cast<double>(std::min(start.Y, end.Y)),
                 static_cast<double>(std::max(start.X, end.X)),
                 static_cast<double>(std::max(start.Y, end.Y)),
                 0,
                 0};
  if (radiusX > 0 && radiusY > 0) {
    box.radiusX = std::min<double>(radiusX, (box.right - box.left) / 2);
    box.radiusY = std::min<double>(radiusY, (box.bottom - box.top) / 2);
  }
  return {box, pen};
}

BoxShape BoxShape::ellipse(Point start, Point end, std::optional<std::int32_t> pen) {
  return rectangle(start, end, pen, INT32_MAX, INT32_MAX);
}

Rectangle BoxShape::bounds(const Rectangle& clip) const {
  const PixelRun columns{clip.Left, clip.Left + clip.Width};
  const PixelRun rows{clip.Top, clip.Top + clip.Height};
  const std::int32_t left = within(columns, outer_.left), right = within(columns, outer_.right);
  const std::int32_t top = within(rows, outer_.top), bottom = within(rows, outer_.bottom);
  if (left >= right || top >= bottom) return {};
  return {left, top, right - left, bottom - top};
}

std::array<PixelRun, 2> BoxShape::runs(std::int32_t y, PixelRun columns) const {
  double left = HUGE_VAL, right = -HUGE_VAL;
  for (const Chord& chord : outer_.chords(y)) {
    if (chord.empty()) continue;
    left = std::min(left, chord.left);
    right = std::max(right, chord.right);
  }
  if (left >= right) return {};
  const PixelRun whole{within(columns, std::floor(left)), within(columns, std::ceil(right))};
  if (!hole_) return {whole, {}};

  double holeLeft = -HUGE_VAL, holeRight = HUGE_VAL;
  for (const Chord& chord : hole_->chords(y)) {
    if (chord.empty()) return {whole, {}};
    holeLeft = std::max(holeLeft, chord.left);
    holeRight = std::min(holeRight, chord.right);
  }
  const PixelRun hole{within(columns, std::ceil(holeLeft)), within(columns, std::floor(holeRight))};
  if (hole.empty()) return {whole, {}};
  return {PixelRun{whole.first, hole.first}, PixelRun{hole.last, whole.last}};
}

void BoxShape::cover(std::int32_t y, PixelRun run, std::uint8_t* out) const {
  const Chords outer = outer_.chords(y);
  const Chords hole = hole_ ? hole_->chords(y) : Chords{};
  const auto overlap = [](const Chord& chord, double x) {
    return chord.empty() ? 0 : std::max(0.0, std::min(chord.right, x + 1) - std::max(chord.left, x));
  };
  const auto measure = [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t x = first; x < last; ++x) {
      double area = 0;
      for (std::size_t i = 0; i < outer.size(); ++i) area += overlap(outer[i], x) - overlap(hole[i], x);
      *out++ = static_cast<std::uint8_t>(std::lrint(area * 255 / kLines));
    }
  };
  // Columns that every scan line covers, without a hole in the row, are solid: no need to measure.
  double left = -HUGE_VAL, right = HUGE_VAL;
  for (std::size_t i = 0; i < outer.size(); ++i) {
    if (outer[i].empty() || !hole[i].empty()) right = -HUGE_VAL;
    left = std::max(left, outer[i].left);
    right = std::min(right, outer[i].right);
  }
  const std::int32_t solidFirst = within(run, std::ceil(left));
  const std::int32_t solidLast = std::max(solidFirst, within(run, std::floor(right)));
  measure(run.first, solidFirst);
  out = std::fill_n(out, solidLast - solidFirst, std::uint8_t{255});
  measure(solidLast, run.last);
}

}  // namespace kestrel::engine
