#pragma once

#include "Gesture.h"

namespace kestrel::engine {

/// Draws a new selection, or moves or resizes the one there is.
class SelectGesture final : public Gesture {
 public:
  /// `part` is the part of the selection under the pointer.
  SelectGesture(GestureHost& host, PointD at, SelectionPart part);

  void drag(PointD at, std::int32_t shift) override;
  void end(bool dragged) override;
  void cancel() override;

 private:
  Rectangle drawn(PointD to, bool square) const;
  Rectangle moved(PointD to) const;
  Rectangle resized(PointD to) const;

  GestureHost& host_;
  SelectionPart part_;
  Selection before_;
  PointD pressed_;  ///< in the picture
};

}  // namespace kestrel::engine
