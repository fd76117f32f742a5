#include <algorithm>
#include <cmath>

#include "View.h"
#include "base/RuntimeError.h"

namespace kestrel::engine {

void View::Zoom(double value) {
  if (std::isnan(value)) throw RuntimeError(err::kInvalidPropertyValue, "The zoom factor is not a number.");
  BeforeZoomChanged(value);
  const PointD middle{horizontal_.view() / 2.0, vertical_.view() / 2.0};
  const PointD fixed = zoomsAtPointer_ ? pixelCenter(pointer_) : middle;
  horizontal_.zoom(value, fixed.X);
  vertical_.zoom(value, fixed.Y);
  keepPlace();
  scrollRangesChanged();
  invalidateAll();
  reportPointerPixel();
}

double View::FitZoom() const {
  if (picture_->empty()) return 1.0;
  const Size room = sizeWithoutBars();
  return std::min(horizontal_.fit(room.Width), vertical_.fit(room.Height));
}

bool View::moveTo(double x, double y) {
  const bool movedX = horizontal_.scrollTo(x);
  const bool movedY = vertical_.scrollTo(y);
  if (!movedX && !movedY) return false;
  keepPlace();
  scrollRangesChanged();
  invalidateAll();
  reportPointerPixel();
  return true;
}

void View::scrollAndNotify(double x, double y) {
  if (!moveTo(x, y)) return;
  Scroll();
  ScrollChanged();
}

void View::ScrollLeft(std::int32_t value) { scrollAndNotify(value * horizontal_.zoom(), vertical_.offset()); }

void View::ScrollTop(std::int32_t value) { scrollAndNotify(horizontal_.offset(), value * vertical_.zoom()); }

void View::scrollTo(std::int32_t x, std::int32_t y) {
  // A scroll bar still at the view's own position must not discard the fraction of the offset that it cannot
  // show.
  scrollAndNotify(x == horizontal_.range().position ? horizontal_.offset() : x,
                  y == vertical_.range().position ? vertical_.offset() : y);
}

void View::scrollBy(float x, float y) {
  scrollAndNotify(horizontal_.offset() - static_cast<double>(x), vertical_.offset() - static_cast<double>(y));
}

void View::pan(double x, double y, bool withPanTool) {
  if (moveTo(x, y)) (withPanTool ? Pan : Scroll)();
}

void View::panEnded(bool withPanTool) { (withPanTool ? PanChanged : ScrollChanged)(); }

void View::wheel(float notchesX, float notchesY, std::int32_t shift, float x, float y) {
  shift_ = shift;
  pointerEnter(x, y);
  if ((shift & kCtrlMask) != 0) {
    turnZoomWheel(notchesY);
    return;
  }
  if ((shift & kShiftMask) != 0) std::swap(notchesX, notchesY);
  scrollAndNotify(horizontal_.offset() - static_cast<double>(notchesX) * horizontal_.range().step,
                  vertical_.offset() - static_cast<double>(notchesY) * vertical_.range().step);
}

void View::turnZoomWheel(float notches) {
  if (notches * wheelRest_ < 0) wheelRest_ = 0;  // a change of direction starts from 0
  wheelRest_ += notches;
  const std::int32_t direction = wheelRest_ > 0 ? 1 : -1;
  while (std::abs(wheelRest_) >= 1) {
    wheelRest_ -= static_cast<float>(direction);
    const ZoomingAtPointer fixed(zoomsAtPointer_);
    WheelZoom(direction);
  }
}

bool View::scrollByKey(ViewKey key) {
  double x = horizontal_.offset();
  double y = vertical_.offset();
  switch (key) {
    case ViewKey::left:
      x -= horizontal_.range().step;
      break;
    case ViewKey::right:
      x += horizontal_.range().step;
      break;
    case ViewKey::up:
      y -= vertical_.range().step;
      break;
    case ViewKey::down:
      y += vertical_.range().step;
      break;
    case ViewKey::pageUp:
      y -= vertical_.range().page;
      break;
    case ViewKey::pageDown:
      y += vertical_.range().page;
      break;
    case ViewKey::home:
      x = y = 0;
      break;
    case ViewKey::end:
      x = horizontal_.range().maximum;
      y = vertical_.range().maximum;
      break;
    case ViewKey::escape:
      return false;
  }
  const bool scrollable = horizontal_.range().maximum > 0 || vertical_.range().maximum > 0;
  if (scrollable) scrollAndNotify(x, y);
  return scrollable;
}

}  // namespace kestrel::engine
