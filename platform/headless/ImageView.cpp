#include "ImageView.h"

#include <utility>

namespace kestrel::headless {

ImageView::ImageView(Desktop& desktop, Window* parent, std::string name, engine::ClipboardPort& clipboard,
                     const FileSystem& files)
    : WindowOf(desktop, parent, std::move(name), -1, clipboard),
      document_(files, parts_.document),
      writer_(files, parts_.writer) {}

void ImageView::pointAt(Point position) {
  const Point corner = origin();
  desktop().pointer = {corner.X + position.X, corner.Y + position.Y};
}

void ImageView::press(std::int32_t button, std::int32_t shift, Point at) {
  pointAt(at);
  pointerDown(button, shift, static_cast<float>(at.X), static_cast<float>(at.Y));
}

void ImageView::move(std::int32_t button, std::int32_t shift, Point to) {
  pointAt(to);
  pointerMove(button, shift, static_cast<float>(to.X), static_cast<float>(to.Y));
}

void ImageView::release(std::int32_t button, std::int32_t shift, Point at) {
  pointAt(at);
  pointerUp(button, shift, static_cast<float>(at.X), static_cast<float>(at.Y));
}

void ImageView::drag(Point from, Point to, std::int32_t button, std::int32_t shift) {
  constexpr std::int32_t kSteps = 4;
  press(button, shift, from);
  for (std::int32_t step = 1; step <= kSteps; ++step) {
    move(button, shift, {from.X + (to.X - from.X) * step / kSteps, from.Y + (to.Y - from.Y) * step / kSteps});
  }
  release(button, shift, to);
}

void ImageView::click(Point at, std::int32_t button, std::int32_t shift) {
  press(button, shift, at);
  release(button, shift, at);
}

void ImageView::doubleClick(Point at) {
  click(at);
  pointerDown(kLeftButton, 0, static_cast<float>(at.X), static_cast<float>(at.Y), true);
  release(kLeftButton, 0, at);
}

void ImageView::leave() { pointerLeave(); }

void ImageView::turnWheel(std::int32_t notches, std::int32_t shift, Point at) {
  pointAt(at);
  wheel(0, static_cast<float>(notches), shift, static_cast<float>(at.X), static_cast<float>(at.Y));
}

void ImageView::pressNoticeButton() {
  if (!noticeButton_.empty()) NoticeAction();
}

void ImageView::resized() {
  const bool hasArea = Width() > 0 && Height() > 0;
  screen_ = hasArea ? engine::Bitmap::filled(Width(), Height()) : engine::Bitmap();
  invalid_.clear();
  resize(Width(), Height());
}

void ImageView::paintOn(engine::Bitmap& target, const Rectangle& area) {
  const engine::Pixels pixels = target.writable();
  paint({pixels.data, pixels.stride, pixels.width, pixels.height}, area);
}

engine::Bitmap ImageView::painted() {
  if (Width() < 1 || Height() < 1) return {};
  auto bitmap = engine::Bitmap::filled(Width(), Height());
  paintOn(bitmap, {0, 0, Width(), Height()});
  return bitmap;
}

void ImageView::invalidate(const Rectangle& area) {
  // Nobody may ever look at the screen, so the list must not grow.
  constexpr std::size_t kMostAreas = 64;
  const bool whole = area.Width >= Width() && area.Height >= Height();
  if (whole || invalid_.size() == kMostAreas) {
    invalid_ = {{0, 0, Width(), Height()}};
  } else {
    invalid_.push_back(area);
  }
}

const engine::Bitmap& ImageView::screen() {
  if (!screen_.empty()) {
    for (const Rectangle& area : std::exchange(invalid_, {})) paintOn(screen_, area);
  }
  return screen_;
}

void ImageView::repaint() {
  invalid_ = {{0, 0, Width(), Height()}};
  if (!isShown()) return;
  ++repaints_;
  screen();
}

}  // namespace kestrel::headless
