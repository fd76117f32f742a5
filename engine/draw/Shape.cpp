#include "Shape.h"

#include <algorithm>

#include "engine/effects/Composite.h"
#include "engine/effects/rows/Blend.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

/// Intersection of two rectangles; empty if they are disjoint.
Rectangle intersection(const Rectangle& a, const Rectangle& b) {
  const std::int64_t left = std::max(a.Left, b.Left);
  const std::int64_t top = std::max(a.Top, b.Top);
  const std::int64_t right = std::min(std::int64_t{a.Left} + a.Width, std::int64_t{b.Left} + b.Width);
  const std::int64_t bottom = std::min(std::int64_t{a.Top} + a.Height, std::int64_t{b.Top} + b.Height);
  if (left >= right || top >= bottom) return {};
  return {static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
          static_cast<std::int32_t>(right - left), static_cast<std::int32_t>(bottom - top)};
}

PixelRun hull(PixelRun a, PixelRun b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  return {std::min(a.first, b.first), std::max(a.last, b.last)};
}

/// Paints the run in pieces of a fixed size, so that no memory is allocated.
void paintRun(std::uint8_t* row, std::int32_t y, PixelRun run, const Shape& shape, Pixel color) {
  constexpr std::int32_t kPiece = 1024;
  std::array<std::uint8_t, kPiece> coverage;
  std::array<Pixel, kPiece> pixels;
  for (std::int32_t first = run.first; first < run.last; first += kPiece) {
    const PixelRun piece{first, std::min(first + kPiece, run.last)};
    shape.cover(y, piece, coverage.data());
    const std::int32_t count = piece.last - piece.first;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
      pixels[i] = {color.r, color.g, color.b, mul255(color.a, coverage[i])};
    }
    compositeRow(&pixels[0].r, row + std::ptrdiff_t{4} * first, count);
  }
}

}  // namespace

std::vector<Rectangle> touchedBy(const Shape& shape, const Rectangle& clip) {
  constexpr std::int32_t kBandRows = 32;
  std::vector<Rectangle> result;
  const Rectangle area = shape.bounds(clip);
  const PixelRun columns{area.Left, area.Left + area.Width};
  for (std::int32_t top = area.Top; top < area.Top + area.Height; top += kBandRows) {
    const std::int32_t bottom = std::min(top + kBandRows, area.Top + area.Height);
    std::array<PixelRun, 2> band;
    for (std::int32_t y = top; y < bottom; ++y) {
      const std::array<PixelRun, 2> runs = shape.runs(y, columns);
      band[0] = hull(band[0], runs[0]);
      band[1] = hull(band[1], runs[1]);
    }
    if (!band[0].empty() && !band[1].empty() && band[1].first <= band[0].last) {
      band = {hull(band[0], band[1]), PixelRun{}};
    }
    for (const PixelRun& run : band) {
      if (!run.empty()) result.push_back({run.first, top, run.last - run.first, bottom - top});
    }
  }
  return result;
}

Rectangle paint(Pixels target, const Rectangle& clip, const Shape& shape, Pixel color) {
  const Rectangle area = shape.bounds(intersection(clip, {0, 0, target.width, target.height}));
  if (color.a == 0) return {};
  const PixelRun columns{area.Left, area.Left + area.Width};
  forRows(area.Height, rowsPerTask(area.Width, 2), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = area.Top + first; y < area.Top + last; ++y) {
      for (const PixelRun& run : shape.runs(y, columns)) paintRun(target.row(y), y, run, shape, color);
    }
  });
  return area;
}

}  // namespace kestrel::engine
