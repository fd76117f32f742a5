#pragma once

#include <cmath>
#include <cstdint>

#include "PaintBuffer.h"
#include "Selection.h"
#include "ViewAxis.h"
#include "engine/undo/EditablePicture.h"
#include "imaging/contract/Colour.h"

namespace kestrel::engine {

/// The middle of the pixel that a point lies in.
inline PointD pixelCenter(PointD at) { return {std::floor(at.X) + 0.5, std::floor(at.Y) + 0.5}; }

/// What a gesture sees of its view.
class GestureHost {
 public:
  virtual const ViewAxis& horizontal() const = 0;
  virtual const ViewAxis& vertical() const = 0;
  PointD toPicture(PointD at) const { return {horizontal().toPicture(at.X), vertical().toPicture(at.Y)}; }

  virtual EditablePicture& gesturePicture() = 0;
  virtual Colour drawColor() const = 0;
  virtual std::int32_t penWidth() const = 0;
  virtual bool outlined() const = 0;  ///< rather than filled
  virtual const Selection& selection() const = 0;

  /// Places the selection and raises `SelectChanged`.
  virtual void select(const Rectangle& rectangle) = 0;
  /// Raises `Selected`.
  virtual void selectEnded() = 0;
  /// Puts the selection back that was there before a drag; raises `SelectChanged` if it had changed.
  virtual void selectCanceled(const Selection& before) = 0;
  /// Places the selection, or takes it away, without an event.
  virtual void putSelection(const Selection& selection) = 0;

  /// Scrolls to these offsets, and raises `Pan` or `Scroll` if that moved anything.
  virtual void pan(double x, double y, bool withPanTool) = 0;
  /// Raises `PanChanged` or `ScrollChanged`.
  virtual void panEnded(bool withPanTool) = 0;

  /// Pixels of the picture have been drawn on, ahead of the change that they will be.
  virtual void pictureDrawn(const Rectangle& area) = 0;
  virtual void invalidateView(const Rectangle& area) = 0;

 protected:
  ~GestureHost() = default;
};

/// What the user does with a mouse tool from a press to a release. Points are view pixels.
class Gesture {
 public:
  virtual ~Gesture() = default;

  /// The pointer was moved, or the picture scrolled under it, after it had left the place of the press.
  virtual void drag(PointD at, std::int32_t shift) = 0;
  /// The button was released; `dragged` tells whether there was a drag. What it changes, it changes now.
  virtual void end(bool dragged) = 0;
  /// Leaves everything as it was before the press.
  virtual void cancel() = 0;
  /// The rubber band.
  virtual void paint(const PaintBuffer& /*buffer*/, const Rectangle& /*area*/) const {}
  /// Whether dragging beyond the view's edge scrolls.
  virtual bool scrolls() const { return true; }
};

}  // namespace kestrel::engine
