#pragma once

#include <cmath>
#include <cstdint>

#include "PaintBuffer.h"
#include "Selection.h"
#include "ViewAxis.h"
#include "engine/undo/EditablePicture.h"
#include "imaging/contract/Colour.h"

namespace kestrel::engine {

/// The center of the pixel that contains a point.
inline PointD pixelCenter(PointD at) { return {std::floor(at.X) + 0.5, std::floor(at.Y) + 0.5}; }

/// Interface of the view to its gestures.
class GestureHost {
 public:
  virtual const ViewAxis& horizontal() const = 0;
  virtual const ViewAxis& vertical() const = 0;
  PointD toPicture(PointD at) const { return {horizontal().toPicture(at.X), vertical().toPicture(at.Y)}; }

  virtual EditablePicture& gesturePicture() = 0;
  virtual Colour drawColor() const = 0;
  virtual std::int32_t penWidth() const = 0;
  virtual bool outlined() const = 0;  ///< shapes are drawn as outlines, not filled
  virtual const Selection& selection() const = 0;

  /// Places the selection and raises `SelectChanged`.
  virtual void select(const Rectangle& rectangle) = 0;
  /// Raises `Selected`.
  virtual void selectEnded() = 0;
  /// Restores the selection from before a drag; raises `SelectChanged` if that changes it.
  virtual void selectCanceled(const Selection& before) = 0;
  /// Places or removes the selection without an event.
  virtual void putSelection(const Selection& selection) = 0;

  /// Scrolls to these offsets; raises `Pan` or `Scroll` if the position changes.
  virtual void pan(double x, double y, bool withPanTool) = 0;
  /// Raises `PanChanged` or `ScrollChanged`.
  virtual void panEnded(bool withPanTool) = 0;

  /// Picture pixels were drawn, before the change that will record them: updates the view only.
  virtual void pictureDrawn(const Rectangle& area) = 0;
  virtual void invalidateView(const Rectangle& area) = 0;

 protected:
  ~GestureHost() = default;
};

/// A mouse tool at work, from press to release. Points are in view pixels.
class Gesture {
 public:
  virtual ~Gesture() = default;

  /// The pointer moved, or the picture scrolled under it, once the pointer is beyond the click tolerance.
  virtual void drag(PointD at, std::int32_t shift) = 0;
  /// The button was released; `dragged` is false for a click. Commits the change.
  virtual void end(bool dragged) = 0;
  /// Restores the state before the press.
  virtual void cancel() = 0;
  /// Paints the rubber band, if there is one.
  virtual void paint(const PaintBuffer& /*buffer*/, const Rectangle& /*area*/) const {}
  /// Whether dragging beyond the view's edge scrolls.
  virtual bool scrolls() const { return true; }
};

}  // namespace kestrel::engine
