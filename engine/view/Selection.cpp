#include "Selection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace kestrel::engine {
namespace {

/// Corners first: on a small rectangle they win over the sides.
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

Rectangle normalized(const Rectangle& rectangle) {
  Rectangle result = rectangle;
  if (result.Width < 0) {
    result.Left += result.Width;
    result.Width = -result.Width;
  }
  if (result.Height < 0) {
    result.Top += result.Height;
    result.Height = -result.Height;
  }
  return result;
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
