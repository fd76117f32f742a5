#pragma once

#include <cstdint>
#include <vector>

#include "Arrangement.h"
#include "Selection.h"

namespace kestrel::thumbnails {

/// Selects the items that a dragged rectangle touches. It is fixed to the content, so that it grows while the
/// view scrolls. Without modifiers the band replaces the selection, with Shift it adds, with Ctrl it inverts.
class RubberBand {
 public:
  bool active() const { return active_; }
  /// Begins at a position of the viewport. Without modifiers it clears the selection.
  void begin(const Arrangement& arrangement, std::int64_t scroll, Point position, std::int32_t modifiers,
             Selection& selection);
  /// The other corner is at this position of the viewport. Changes the selection.
  void update(const Arrangement& arrangement, std::int64_t scroll, Point position, Selection& selection);
  void end() { active_ = false; }
  /// Follows a change of the list, as `Selection::remap`.
  void remap(const std::vector<std::int32_t>& places, std::int32_t count);
  /// The content under the band was moved by this distance along the scroll axis.
  void shift(std::int64_t distance);
  /// The selection as it was before the band.
  const Selection& before() const { return before_; }

  /// The band in the viewport, without what is outside; empty if it is not active.
  Rectangle rectangle(const Arrangement& arrangement, std::int64_t scroll) const;

 private:
  struct Corner {
    std::int64_t along = 0;
    std::int32_t across = 0;
  };

  static Corner cornerOf(const Arrangement& arrangement, std::int64_t scroll, Point position);
  ContentArea area() const;

  bool active_ = false;
  bool inverts_ = false;
  Corner from_;
  Corner to_;
  Selection before_;
  Selection base_;  ///< what the touched items are added to
};

}  // namespace kestrel::thumbnails
