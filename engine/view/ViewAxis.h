#pragma once

#include <cstdint>

namespace kestrel::engine {

/// Where a platform's scroll bar stands, in device pixels.
struct ScrollRange {
  std::int32_t position = 0;  ///< 0 to maximum
  std::int32_t maximum = 0;   ///< 0 where everything is in view
  std::int32_t page = 0;
  std::int32_t step = 0;
};

/// Zoom and scrolling along one side of a view.
///
/// A picture that is too large for the view is scrolled; a smaller one is centered. The border line around
/// the picture is scrolled with it, and counts as the view's edge: at scroll position s the picture's column
/// s begins right behind one border's width. So column = view pixel + s - border at zoom 1.
class ViewAxis {
 public:
  static constexpr double kSmallestZoom = 0.01;
  static constexpr double kLargestZoom = 64;

  /// Sizes in picture pixels, device pixels and device pixels. Keeps the scroll position as far as it fits.
  void measure(std::int32_t picture, std::int32_t view, std::int32_t border);

  double zoom() const { return zoom_; }
  /// Keeps the picture point at the view position `anchor` where it is, as far as the picture reaches.
  void zoom(double value, double anchor);

  /// Device pixels of the picture with its border that lie before the view; negative when centered.
  double offset() const { return offset_; }
  /// True if that moved anything.
  bool scrollTo(double offset);

  /// The picture column at the view's edge, rounded down.
  std::int32_t scroll() const;
  bool scroll(std::int32_t column) { return scrollTo(column * zoom_); }

  /// Points between the picture's and the view's pixels, which begin at whole numbers.
  double toPicture(double viewPosition) const { return (viewPosition - origin()) / zoom_; }
  double toView(double pictureColumn) const { return origin() + pictureColumn * zoom_; }

  std::int32_t picture() const { return picture_; }
  std::int32_t view() const { return view_; }
  std::int32_t border() const { return border_; }
  ScrollRange range() const;

 private:
  double origin() const { return border_ - offset_; }
  double hidden() const { return picture_ * zoom_ + 2 * border_ - view_; }

  std::int32_t picture_ = 0;
  std::int32_t view_ = 0;
  std::int32_t border_ = 0;
  double zoom_ = 1.0;
  double offset_ = 0.0;
};

}  // namespace kestrel::engine
