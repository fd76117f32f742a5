#include "Navigation.h"

#include <algorithm>

namespace kestrel::thumbnails {
namespace {

/// Moves by rows of the grid in the same column. Below a last row that is too short, ends at the last item.
std::int32_t moveRows(const Arrangement& arrangement, std::int32_t item, std::int64_t rows) {
  const std::int64_t columns = arrangement.columns();
  const std::int64_t row = item / columns;
  const std::int64_t lastRow = (arrangement.count() - 1) / columns;
  const std::int64_t target = std::clamp<std::int64_t>(row + rows, 0, lastRow);
  if (target == row) return item;
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(target * columns + item % columns, arrangement.count() - 1));
}

}  // namespace

std::int32_t keyTarget(const Arrangement& arrangement, Key key, std::int32_t item) {
  const std::int32_t last = arrangement.count() - 1;
  // Outside the grid there is one column, so that all arrows move along the list.
  const std::int64_t page = arrangement.view() == kViewSingle ? 1 : arrangement.wholeSteps();
  switch (key) {
    case Key::kLeft:
      return std::max(item - 1, 0);
    case Key::kRight:
      return std::min(item + 1, last);
    case Key::kUp:
      return moveRows(arrangement, item, -1);
    case Key::kDown:
      return moveRows(arrangement, item, 1);
    case Key::kHome:
      return 0;
    case Key::kEnd:
      return last;
    case Key::kPageUp:
      return moveRows(arrangement, item, -page);
    case Key::kPageDown:
      return moveRows(arrangement, item, page);
    default:
      return -1;
  }
}

}  // namespace kestrel::thumbnails
