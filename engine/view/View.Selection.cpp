#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "BackBuffer.h"
#include "View.h"

namespace kestrel::engine {
namespace {

/// Half the side of a handle, and the grab tolerance around its center, in logical pixels.
constexpr double kHandleReach = 3;
constexpr double kGrabReach = 5;
/// Smallest side with handles; on a smaller selection they would hide it.
constexpr std::int32_t kSmallestWithHandles = 24;

constexpr std::int32_t kDash = 4;

constexpr Pixel kSurroundings{255, 255, 255, 255};

std::int32_t roundedPosition(double value) {
  return static_cast<std::int32_t>(std::lround(std::clamp(value, -1e9, 1e9)));
}

void put(const PaintBuffer& buffer, std::int32_t x, std::int32_t y, std::uint8_t gray) {
  std::uint8_t* const pixel = buffer.row(y) + 4 * static_cast<std::size_t>(x);
  pixel[0] = pixel[1] = pixel[2] = gray;
  pixel[3] = 255;
}

/// Marching ants: black and white dashes shifted by the phase.
void paintDashes(const PaintBuffer& buffer, const Rectangle& line, const Rectangle& area,
                 std::int32_t phase) {
  const Rectangle part = intersection(line, area);
  for (std::int32_t y = part.Top; y < part.Top + part.Height; ++y) {
    for (std::int32_t x = part.Left; x < part.Left + part.Width; ++x) {
      const std::uint32_t along = static_cast<std::uint32_t>(x + y - phase);
      put(buffer, x, y, along / kDash % 2 == 0 ? 0 : 255);
    }
  }
}

void paintHandle(const PaintBuffer& buffer, Point middle, std::int32_t reach, const Rectangle& area) {
  const Rectangle whole{middle.X - reach, middle.Y - reach, 2 * reach + 1, 2 * reach + 1};
  const Rectangle part = intersection(whole, area);
  for (std::int32_t y = part.Top; y < part.Top + part.Height; ++y) {
    for (std::int32_t x = part.Left; x < part.Left + part.Width; ++x) {
      const bool rim = std::abs(x - middle.X) == reach || std::abs(y - middle.Y) == reach;
      put(buffer, x, y, rim ? 0 : 255);
    }
  }
}

/// The four sides of a rectangle as lines of one pixel, inside it.
std::array<Rectangle, 4> sidesOf(const Rectangle& r) {
  return {Rectangle{r.Left, r.Top, r.Width, 1}, Rectangle{r.Left, r.Top + r.Height - 1, r.Width, 1},
          Rectangle{r.Left, r.Top, 1, r.Height}, Rectangle{r.Left + r.Width - 1, r.Top, 1, r.Height}};
}

constexpr std::array kHandles{SelectionPart::TopLeft,    SelectionPart::Top,         SelectionPart::TopRight,
                              SelectionPart::Right,      SelectionPart::BottomRight, SelectionPart::Bottom,
                              SelectionPart::BottomLeft, SelectionPart::Left};

bool isAlong(ViewKey key) { return key == ViewKey::left || key == ViewKey::right; }

}  // namespace

void View::SelectionWidth(std::int32_t value) {
  Selection selection = selection_;
  selection.rectangle.Width = value;
  writeSelection(selection);
}

void View::SelectionHeight(std::int32_t value) {
  Selection selection = selection_;
  selection.rectangle.Height = value;
  writeSelection(selection);
}

void View::SelectionVisible(bool value) { writeSelection({selection_.rectangle, value}); }

void View::SetSelectionRect(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
  writeSelection({{left, top, width, height}, selection_.visible});
}

void View::writeSelection(const Selection& selection) {
  setSelection(selection);
  if (autoRedrawSelection_) repaint();
}

void View::setSelection(const Selection& selection) {
  invalidateSelection();
  const bool wasShown = selection_.shown();
  selection_ = selection;
  invalidateSelection();
  if (selection_.shown() != wasShown) setTimer(ViewTimer::march, selection_.shown());
}

void View::select(const Rectangle& rectangle) {
  setSelection({rectangle, true});
  SelectChanged(rectangle.Left, rectangle.Top, rectangle.Width, rectangle.Height);
}

void View::selectEnded() {
  const Rectangle& r = selection_.rectangle;
  Selected(r.Left, r.Top, r.Width, r.Height);
}

void View::selectCanceled(const Selection& before) {
  if (selection_ == before) return;
  setSelection(before);
  const Rectangle& r = before.rectangle;
  SelectChanged(r.Left, r.Top, r.Width, r.Height);
}

Rectangle View::inView(const Rectangle& pictureArea) const {
  const std::int32_t left = roundedPosition(std::floor(horizontal_.toView(pictureArea.Left) + 0.5));
  const std::int32_t top = roundedPosition(std::floor(vertical_.toView(pictureArea.Top) + 0.5));
  const double right = horizontal_.toView(static_cast<double>(pictureArea.Left) + pictureArea.Width);
  const double bottom = vertical_.toView(static_cast<double>(pictureArea.Top) + pictureArea.Height);
  return {left, top, std::max(1, roundedPosition(std::floor(right + 0.5)) - left),
          std::max(1, roundedPosition(std::floor(bottom + 0.5)) - top)};
}

SelectionPart View::selectionPartAt(PointD at) const {
  if (!selection_.shown()) return SelectionPart::Outside;
  return partAt(inView(normalized(selection_.rectangle)), at, kGrabReach * deviceScale_);
}

bool View::nudgeSelection(ViewKey key, std::int32_t shift) {
  const bool arrow = isAlong(key) || key == ViewKey::up || key == ViewKey::down;
  if (!arrow || tool_ != kViewToolSelect || !selection_.shown()) return false;
  std::int32_t step = (shift & kShiftMask) != 0 ? 10 : 1;
  if (key == ViewKey::left || key == ViewKey::up) step = -step;
  Rectangle rectangle = selection_.rectangle;
  std::int32_t& position = isAlong(key) ? rectangle.Left : rectangle.Top;
  position = boundedPosition(std::int64_t{position} + step);
  select(rectangle);
  selectEnded();
  return true;
}

std::int32_t View::handleReach() const {
  return static_cast<std::int32_t>(std::lround(kHandleReach * deviceScale_));
}

void View::invalidateSelection() {
  if (!selection_.shown()) return;
  const Rectangle shown = inView(normalized(selection_.rectangle));
  const std::int32_t reach = handleReach();
  for (Rectangle side : sidesOf(shown)) {
    // The middles of the right and lower handles are one pixel outside of the rectangle.
    side = {side.Left - reach, side.Top - reach, side.Width + 2 * reach + 1, side.Height + 2 * reach + 1};
    invalidateView(side);
  }
}

void View::invalidateView(const Rectangle& area) {
  const Rectangle part = intersection(area, {0, 0, horizontal_.view(), vertical_.view()});
  if (part.Width > 0 && part.Height > 0) invalidate(part);
}

void View::paintSelection(const PaintBuffer& buffer, const Rectangle& area) const {
  if (!selection_.shown()) return;
  const Rectangle shown = inView(normalized(selection_.rectangle));
  for (const Rectangle& side : sidesOf(shown)) paintDashes(buffer, side, area, marchPhase_);
  const std::int32_t reach = handleReach();
  const bool roomForHandles = std::min(shown.Width, shown.Height) >= kSmallestWithHandles * deviceScale_;
  if (tool_ != kViewToolSelect || gesture_ || !roomForHandles) return;
  for (const SelectionPart part : kHandles) paintHandle(buffer, handleAt(shown, part), reach, area);
}

void View::paint(const PaintBuffer& buffer, const Rectangle& area) {
  const Rectangle part = intersection(area, {0, 0, buffer.width, buffer.height});
  if (part.Width == 0 || part.Height == 0) return;
  painter_.paint({picture_->bitmap(), horizontal_, vertical_, kSurroundings, background_}, buffer, part);
  if (doubleBuffer_) {
    BackBuffer backBuffer(buffer, part);
    DoubleBufferPaintAfter(backBuffer);
  }
  if (gesture_) gesture_->paint(buffer, part);
  paintSelection(buffer, part);
}

}  // namespace kestrel::engine
