#include <algorithm>
#include <cmath>
#include <utility>

#include "FreehandGesture.h"
#include "PanGesture.h"
#include "SelectGesture.h"
#include "ShapeGesture.h"
#include "View.h"

namespace kestrel::engine {
namespace {

/// Largest movement during a click, in logical pixels.
constexpr double kClickTolerance = 2;

/// Pointer style: the tool's pointer is shown over the picture only.
constexpr std::int32_t kOverPictureOnly = 2;

/// Speed of autoscroll, in device pixels per tick of the timer.
constexpr double kSlowestScroll = 4;
constexpr double kFastestScroll = 64;

/// Signed distance of a position outside 0 to `size`; 0 inside.
double beyond(double position, std::int32_t size) {
  if (position < 0) return position;
  return position > size ? position - size : 0;
}

/// Whether a view position is in the picture or on the line right of or below it. The last pixel stays
/// reported there, because handlers of `MouseMove` count that line as inside.
bool isInsideOrOnFarLine(const ViewAxis& axis, float position) {
  const double center = std::floor(static_cast<double>(position)) + 0.5;
  return center >= axis.toView(0) && center < axis.toView(axis.picture()) + 1;
}

double scrollSpeed(double distance) {
  if (distance == 0) return 0;
  return std::copysign(std::clamp(std::abs(distance), kSlowestScroll, kFastestScroll), distance);
}

}  // namespace

void View::pointerDown(std::int32_t button, std::int32_t shift, float x, float y, bool again) {
  pointer_ = {x, y};
  pointerInside_ = true;
  shift_ = shift;
  const bool pans = button == kMiddleButton;
  // A pan must not turn the press of another button into a drag.
  if (pans && (gesture_ || pressedButton_ != 0)) return;
  if (!gesture_) {
    pressedAt_ = pointer_;
    dragged_ = false;
  }
  if (!pans) {
    pressedButton_ = button;
    pressedAgain_ = again && button == kLeftButton;
    MouseDown(button, shift, x, y);
    if (gesture_) return;
  }
  gesture_ = newGesture(button, pointer_);
  gestureButton_ = button;
  if (gesture_) invalidateSelection();  // no handles during a gesture
  updateCursor();
}

void View::pointerMove(std::int32_t button, std::int32_t shift, float x, float y) {
  // The release may have gone to another window that opened meanwhile.
  if (gesture_ && (button & gestureButton_) == 0) cancelGesture();
  if ((button & pressedButton_) == 0) pressedButton_ = 0;
  followPointer({x, y}, shift);
  updateCursor();
  MouseMove(button, shift, x, y);
  if (const auto pixel = PointerPixel()) {
    reportedPixel_ = pixel;
    MouseMovePixel(button, shift, pixel->X, pixel->Y);
  } else if (!isInsideOrOnFarLine(horizontal_, x) || !isInsideOrOnFarLine(vertical_, y)) {
    reportPointerPixel();
  }
}

void View::reportPointerPixel() {
  const std::optional<Point> pixel = PointerPixel();
  if (pixel == reportedPixel_) return;
  reportedPixel_ = pixel;
  PointerPixelChanged();
}

std::optional<Point> View::PointerPixel() const {
  if (!pointerInside_ || !isOverPicture(pointer_)) return std::nullopt;
  const PointD pixel = toPicture(pixelCenter(pointer_));
  return Point{static_cast<std::int32_t>(std::floor(pixel.X)),
               static_cast<std::int32_t>(std::floor(pixel.Y))};
}

void View::followPointer(PointD at, std::int32_t shift) {
  pointer_ = at;
  pointerInside_ = true;
  shift_ = shift;
  if (pressedButton_ != 0 || gesture_) {
    const double tolerance = kClickTolerance * deviceScale_;
    dragged_ |= std::abs(at.X - pressedAt_.X) > tolerance || std::abs(at.Y - pressedAt_.Y) > tolerance;
  }
  if (gesture_ && dragged_) dragGesture();
}

void View::pointerUp(std::int32_t button, std::int32_t shift, float x, float y) {
  if (pointer_.X != static_cast<double>(x) || pointer_.Y != static_cast<double>(y))
    followPointer({x, y}, shift);
  const bool click = button == pressedButton_ && !dragged_;
  if (button == pressedButton_) pressedButton_ = 0;
  if (gesture_ && button == gestureButton_) {
    setAutoScroll(false);
    const std::unique_ptr<Gesture> ended = std::move(gesture_);
    ended->end(dragged_);
    invalidateSelection();  // the handles reappear
    updateCursor();
  }
  if (button == kMiddleButton) return;
  MouseUp(button, shift, x, y);
  if (!click) return;
  Click();
  if (!pressedAgain_) return;
  const ZoomingAtPointer fixed(zoomsAtPointer_);
  DblClick();
}

void View::pointerEnter(float x, float y) {
  pointerInside_ = true;
  pointerShifted(x, y);
}

void View::pointerShifted(float x, float y) {
  if (!pointerInside_) return;
  pointer_ = {x, y};
  updateCursor();
  reportPointerPixel();
}

void View::pointerLeave() {
  pointerInside_ = false;
  if (!gesture_) showCursor(cursor_ = ViewCursor::arrow);
  reportPointerPixel();
}

bool View::keyDown(ViewKey key, std::int32_t shift) {
  if (key == ViewKey::escape) {
    const bool busy = gesture_ != nullptr;
    cancelGesture();
    return busy;
  }
  if (gesture_) return false;
  return nudgeSelection(key, shift) || scrollByKey(key);
}

void View::timer(ViewTimer which) {
  if (which == ViewTimer::march) {
    ++marchPhase_;
    invalidateSelection();
    return;
  }
  if (!gesture_) return;
  scrollAndNotify(horizontal_.offset() + scrollSpeed(beyond(pointer_.X, horizontal_.view())),
                  vertical_.offset() + scrollSpeed(beyond(pointer_.Y, vertical_.view())));
  if (gesture_) dragGesture();
}

std::unique_ptr<Gesture> View::newGesture(std::int32_t button, PointD at) {
  if (picture_->empty()) return nullptr;
  GestureHost& host = *this;
  if (button == kMiddleButton) return std::make_unique<PanGesture>(host, at, false);
  if (button != kLeftButton) return nullptr;
  switch (tool_) {
    case kViewToolSelect:
      return std::make_unique<SelectGesture>(host, at, selectionPartAt(at));
    case kViewToolPan:
      return std::make_unique<PanGesture>(host, at, true);
    case kViewToolLine:
      return std::make_unique<ShapeGesture>(host, ShapeGesture::Kind::line, at);
    case kViewToolRectangle:
      return std::make_unique<ShapeGesture>(host, ShapeGesture::Kind::rectangle, at);
    case kViewToolEllipse:
      return std::make_unique<ShapeGesture>(host, ShapeGesture::Kind::ellipse, at);
    case kViewToolFreehand:
      return std::make_unique<FreehandGesture>(host, at);
    default:
      return nullptr;
  }
}

void View::dragGesture() {
  const bool outside =
      beyond(pointer_.X, horizontal_.view()) != 0 || beyond(pointer_.Y, vertical_.view()) != 0;
  setAutoScroll(outside && gesture_->scrolls());
  gesture_->drag(pointer_, shift_);
}

void View::cancelGesture() {
  if (!gesture_) return;
  setAutoScroll(false);
  dragged_ = true;  // the release must not count as a click
  const std::unique_ptr<Gesture> ended = std::move(gesture_);
  ended->cancel();
  invalidateSelection();
  updateCursor();
}

void View::setAutoScroll(bool on) {
  if (on == autoScrolling_) return;
  autoScrolling_ = on;
  setTimer(ViewTimer::autoScroll, on);
}

bool View::isOverPicture(PointD at) const {
  const PointD pixel = toPicture(pixelCenter(at));
  return pixel.X >= 0 && pixel.Y >= 0 && pixel.X < horizontal_.picture() && pixel.Y < vertical_.picture() &&
         beyond(at.X, horizontal_.view()) == 0 && beyond(at.Y, vertical_.view()) == 0;
}

ViewCursor View::cursorAt(PointD at) const {
  if (gesture_ && (gestureButton_ == kMiddleButton || tool_ == kViewToolPan)) return ViewCursor::grabbing;
  const bool toolShows = mousePointerStyle_ != kOverPictureOnly || isOverPicture(at);
  if (mousePointer_ == kPointerCustom && toolShows) return ViewCursor::custom;
  if (mousePointer_ != kPointerDefault) return ViewCursor::arrow;
  if (tool_ == kViewToolPan && toolShows) return ViewCursor::hand;
  if (tool_ != kViewToolSelect || !selection_.shown()) return ViewCursor::arrow;
  switch (selectionPartAt(at)) {
    case SelectionPart::Left:
    case SelectionPart::Right:
      return ViewCursor::sizeHorizontal;
    case SelectionPart::Top:
    case SelectionPart::Bottom:
      return ViewCursor::sizeVertical;
    case SelectionPart::TopLeft:
    case SelectionPart::BottomRight:
      return ViewCursor::sizeFalling;
    case SelectionPart::TopRight:
    case SelectionPart::BottomLeft:
      return ViewCursor::sizeRising;
    case SelectionPart::Inside:
      return ViewCursor::move;
    case SelectionPart::Outside:
      break;
  }
  return ViewCursor::arrow;
}

void View::updateCursor() {
  const ViewCursor cursor = cursorAt(pointer_);
  if (cursor == cursor_) return;
  cursor_ = cursor;
  showCursor(cursor);
}

}  // namespace kestrel::engine
