#include "ViewAxis.h"

#include <algorithm>
#include <cmath>

namespace kestrel::engine {
namespace {

/// Rounding tolerance of division and multiplication by the zoom.
constexpr double kTolerance = 1e-6;

/// One wheel notch or scroll bar step is the view's size divided by this.
constexpr std::int32_t kStepsPerPage = 10;

}  // namespace

void ViewAxis::measure(std::int32_t picture, std::int32_t view, std::int32_t border) {
  picture_ = picture;
  view_ = view;
  border_ = border;
  scrollTo(offset_);
}

void ViewAxis::zoom(double value, double anchor) {
  const double fixed = toPicture(anchor);
  zoom_ = std::clamp(value, kSmallestZoom, kLargestZoom);
  scrollTo(border_ + fixed * zoom_ - anchor);
}

double ViewAxis::fit(std::int32_t room) const {
  const double free = room - 2 * border_;
  double zoom = free / picture_;
  while (zoom > 0 && picture_ * zoom > free) zoom = std::nextafter(zoom, 0.0);  // the quotient is rounded
  return std::clamp(zoom, kSmallestZoom, kLargestZoom);
}

bool ViewAxis::scrollTo(double offset) {
  const double before = offset_;
  if (hidden() <= 0) {
    offset_ = border_ - std::floor((view_ - picture_ * zoom_) / 2);
  } else {
    offset_ = std::clamp(offset, 0.0, hidden());
  }
  return offset_ != before;
}

std::int32_t ViewAxis::scroll() const {
  return static_cast<std::int32_t>(std::floor(offset_ / zoom_ + kTolerance));
}

ScrollRange ViewAxis::range() const {
  if (hidden() <= 0) return {0, 0, view_, 1};
  return {static_cast<std::int32_t>(std::lround(offset_)), static_cast<std::int32_t>(std::ceil(hidden())),
          view_, std::max(1, view_ / kStepsPerPage)};
}

}  // namespace kestrel::engine
