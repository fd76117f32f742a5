#pragma once

#include <cstdint>

#include "engine/draw/Shape.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// What of a selection lies under the pointer.
enum class SelectionPart {
  Outside,
  Inside,
  Left,
  TopLeft,
  Top,
  TopRight,
  Right,
  BottomRight,
  Bottom,
  BottomLeft
};

/// The rectangle that is selected, in picture pixels, as it was given: any 32-bit numbers. Its sizes are
/// negative where it reaches leftwards or upwards from its corner.
struct Selection {
  Rectangle rectangle;
  bool visible = false;

  /// Whether there is anything to see, to move or to resize.
  bool shown() const { return visible && rectangle.Width != 0 && rectangle.Height != 0; }

  friend bool operator==(const Selection&, const Selection&) = default;
};

/// What two rectangles with sizes from 0 up have in common; 0 wide or high if that is nothing.
Rectangle intersection(const Rectangle& a, const Rectangle& b);

/// The nearest position that a gesture can move an edge to, and that drawing needs to know.
std::int32_t boundedPosition(std::int64_t position);

/// The same area with sizes from 0 up, each edge brought back to a `boundedPosition`.
Rectangle normalized(const Rectangle& rectangle);

/// Which part of a rectangle (positive sizes, view pixels) is at a point; its eight handles, at the corners
/// and in the middle of the sides, reach `tolerance` around.
SelectionPart partAt(const Rectangle& rectangle, PointD at, double tolerance);

/// Where the handle of a part is: its middle. Not for Outside and Inside.
Point handleAt(const Rectangle& rectangle, SelectionPart part);

}  // namespace kestrel::engine
