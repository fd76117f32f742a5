#pragma once

#include <cstdint>

#include "engine/draw/Shape.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Part of a selection, for hit testing.
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

/// The selected rectangle in picture pixels, stored as given: any 32-bit numbers, sizes negative if it
/// extends to the left of or above its corner.
struct Selection {
  Rectangle rectangle;
  bool visible = false;

  /// Whether the selection is visible and not empty.
  bool shown() const { return visible && rectangle.Width != 0 && rectangle.Height != 0; }

  friend bool operator==(const Selection&, const Selection&) = default;
};

/// Intersection of two rectangles with sizes of at least 0; 0 wide or high if they are disjoint.
Rectangle intersection(const Rectangle& a, const Rectangle& b);

/// The position clamped to +-10^9, so that sums with sizes fit into 32 bits.
std::int32_t boundedPosition(std::int64_t position);

/// The same area with sizes of at least 0, each edge clamped by `boundedPosition`.
Rectangle normalized(const Rectangle& rectangle);

/// Hit test of a rectangle (positive sizes, view pixels). The eight handles, at the corners and in the middle
/// of the sides, extend `tolerance` pixels around their centers.
SelectionPart partAt(const Rectangle& rectangle, PointD at, double tolerance);

/// Center of the handle of a part. Not for Outside and Inside.
Point handleAt(const Rectangle& rectangle, SelectionPart part);

}  // namespace kestrel::engine
