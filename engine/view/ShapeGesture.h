#pragma once

#include <memory>
#include <string>

#include "Gesture.h"
#include "engine/draw/Shape.h"

namespace kestrel::engine {

/// Draws a line, rectangle or ellipse: a rubber band in the view during the drag, the shape in the picture at
/// its end.
class ShapeGesture final : public Gesture {
 public:
  enum class Kind { line, rectangle, ellipse };

  ShapeGesture(GestureHost& host, Kind kind, PointD at);

  void drag(PointD at, std::int32_t shift) override;
  void end(bool dragged) override;
  void cancel() override;
  void paint(const PaintBuffer& buffer, const Rectangle& area) const override;

 private:
  std::unique_ptr<Shape> inPicture() const;
  std::unique_ptr<Shape> inView() const;
  /// Lines run between pixel centers, boxes between pixel edges.
  PointD pointAt(PointD at) const;
  PointD constrained(PointD to) const;
  void invalidateBand();

  GestureHost& host_;
  Kind kind_;
  PointD from_;  ///< in the picture
  PointD to_;
  bool dragging_ = false;  ///< a press alone shows nothing
};

}  // namespace kestrel::engine
