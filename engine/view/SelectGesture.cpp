#include "SelectGesture.h"

#include <algorithm>
#include <cmath>

namespace kestrel::engine {
namespace {

/// The nearest edge between pixels, the picture's own edges included.
std::int32_t edgeAt(double position, std::int32_t size) {
  return static_cast<std::int32_t>(std::lround(std::clamp(position, 0.0, static_cast<double>(size))));
}

bool isLeft(SelectionPart part) {
  return part == SelectionPart::TopLeft || part == SelectionPart::Left || part == SelectionPart::BottomLeft;
}
bool isRight(SelectionPart part) {
  return part == SelectionPart::TopRight || part == SelectionPart::Right ||
         part == SelectionPart::BottomRight;
}
bool isTop(SelectionPart part) {
  return part == SelectionPart::TopLeft || part == SelectionPart::Top || part == SelectionPart::TopRight;
}
bool isBottom(SelectionPart part) {
  return part == SelectionPart::BottomLeft || part == SelectionPart::Bottom ||
         part == SelectionPart::BottomRight;
}

}  // namespace

SelectGesture::SelectGesture(GestureHost& host, PointD at, SelectionPart part)
    : host_(host), part_(part), before_(host.selection()), pressed_(host.toPicture(at)) {}

void SelectGesture::drag(PointD at, std::int32_t shift) {
  const PointD to = host_.toPicture(at);
  switch (part_) {
    case SelectionPart::Outside:
      host_.select(drawn(to, (shift & kShiftMask) != 0));
      break;
    case SelectionPart::Inside:
      host_.select(moved(to));
      break;
    default:
      host_.select(resized(to));
  }
}

void SelectGesture::end(bool dragged) {
  if (dragged) {
    host_.selectEnded();
  } else if (part_ == SelectionPart::Outside) {
    Selection none = host_.selection();
    none.visible = false;
    host_.putSelection(none);
  }
}

void SelectGesture::cancel() { host_.selectCanceled(before_); }

Rectangle SelectGesture::drawn(PointD to, bool square) const {
  const std::int32_t width = host_.horizontal().picture();
  const std::int32_t height = host_.vertical().picture();
  const std::int32_t left = edgeAt(pressed_.X, width);
  const std::int32_t top = edgeAt(pressed_.Y, height);
  Rectangle result{left, top, edgeAt(to.X, width) - left, edgeAt(to.Y, height) - top};
  if (square) {
    const std::int32_t side = std::min(std::abs(result.Width), std::abs(result.Height));
    result.Width = result.Width < 0 ? -side : side;
    result.Height = result.Height < 0 ? -side : side;
  }
  return result;
}

Rectangle SelectGesture::moved(PointD to) const {
  Rectangle result = before_.rectangle;
  result.Left = boundedPosition(result.Left + std::llround(to.X - pressed_.X));
  result.Top = boundedPosition(result.Top + std::llround(to.Y - pressed_.Y));
  return result;
}

Rectangle SelectGesture::resized(PointD to) const {
  const Rectangle start = normalized(before_.rectangle);
  std::int32_t left = start.Left, right = start.Left + start.Width;
  std::int32_t top = start.Top, bottom = start.Top + start.Height;
  const std::int32_t x = edgeAt(to.X, host_.horizontal().picture());
  const std::int32_t y = edgeAt(to.Y, host_.vertical().picture());
  if (isLeft(part_)) left = x;
  if (isRight(part_)) right = x;
  if (isTop(part_)) top = y;
  if (isBottom(part_)) bottom = y;
  return {left, top, right - left, bottom - top};
}

}  // namespace kestrel::engine
