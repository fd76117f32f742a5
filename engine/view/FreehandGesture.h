#pragma once

#include "Gesture.h"
#include "engine/draw/Stroke.h"
#include "engine/undo/EditablePicture.h"

namespace kestrel::engine {

/// Draws a smooth stroke on the picture along the pointer's path; a click makes a dot.
class FreehandGesture final : public Gesture {
 public:
  FreehandGesture(GestureHost& host, PointD at);

  void drag(PointD at, std::int32_t shift) override;
  void end(bool dragged) override;
  void cancel() override;

 private:
  /// `advance` extends the stroke and returns the rectangles that it will paint.
  template <typename Advance>
  void draw(const Advance& advance);

  GestureHost& host_;
  Painting painting_;
  Stroke stroke_;
};

}  // namespace kestrel::engine
