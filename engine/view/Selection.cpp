#include "Selection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace kestrel::engine {
namespace {

/// Largest distance of an edge from the picture's corner; keeps sums of positions and sizes within 32 bits.
constexpr std::int64_t kFarthest = 1'000'000'000;

/// Corners first: on a small rectangle they take precedence over the sides.
constexpr std::array kHandles{SelectionPart::TopLeft,    SelectionPart::TopRight, SelectionPart::BottomRight,
                              SelectionPart::BottomLeft, SelectionPart::Left,     SelectionPart::Top,
                              SelectionPart::Right,      SelectionPart::Bottom};

}  // namespace

Rectangle intersection(const Rectangle& a, const Rectangle& b) {
  const std::int32_t left = std::max(a.Left, b.Left);
  const std::int32_t top = std::max(a.Top, b.Top);
  return {left, top, std::max(0, std::min(a.Left + a.Width, b.Left + b.Width) - left),
          std::max(0, std::min(a.Top + a.Height, b.Top + b.Height) - top)};
}

std::int32_t boundedPosition(std::int64_t position) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(position, -kFarthest, kFarthest));
}

Rectangle normalized(const Rectangle& rectangle) {
  const std::int64_t right = std::int64_t{rectangle.Left} + rectangle.Width;
  const std::int64_t bottom = std::int64_t{rectangle.Top} + rectangle.Height;
  const std::int32_t left = boundedPosition(std::min<std::int64_t>(rectangle.Left, right));
  const std::int32_t top = boundedPosition(std::min<std::int64_t>(rectangle.Top, bottom));
  return {left, top, boundedPosition(std::max<std::int64_t>(rectangle.Left, right)) - left,
          boundedPosition(std::max<std::int64_t>(rectangle.Top, bottom)) - top};
}

Point handleAt(const Rectangle& rectangle, SelectionPart part) {
  Point at{rectangle.Left + rectangle.Width / 2, rectangle.Top + rectangle.Height / 2};
  switch (part) {
    case SelectionPart::TopLeft:
    case SelectionPart::Left:
    case SelectionPart::BottomLeft:
      at.X = rectangle.Left;
      break;
    case SelectionPart::TopRight:
    case SelectionPart::Right:
    case SelectionPart::BottomRight:
      at.X = rectangle.Left + rectangle.Width;
      break;
    default:
      break;
  }
  switch (part) {
    case SelectionPart::TopLeft:
    case SelectionPart::Top:
    case SelectionPart::TopRight:
      at.Y = rectangle.Top;
      break;
    case SelectionPart::BottomLeft:
    case SelectionPart::Bottom:
    case SelectionPart::BottomRight:
      at.Y = rectangle.Top + rectangle.Height;
      break;
    default:
      break;
  }
  return at;
}

SelectionPart partAt(const Rectangle& rectangle, PointD at, double tolerance) {
  for (const SelectionPart part : kHandles) {
    const Point handle = handleAt(rectangle, part);
    if (std::abs(at.X - handle.X) <= tolerance && std::abs(at.Y - handle.Y) <= tolerance) return part;
  }
  const bool inside = at.X >= rectangle.Left && at.X < rectangle.Left + rectangle.Width &&
                      at.Y >= rectangle.Top && at.Y < rectangle.Top + rectangle.Height;
  return inside ? SelectionPart::Inside : SelectionPart::Outside;
}

}  // namespace kestrel::engine
