#pragma once

#include <cstdint>

namespace kestrel::engine {

/// Range and position for a platform's scroll bar, in device pixels.
struct ScrollRange {
  std::int32_t position = 0;  ///< 0 to maximum
  std::int32_t maximum = 0;   ///< 0 where everything is in view
  std::int32_t page = 0;
  std::int32_t step = 0;
};

/// Zoom and scroll position along one axis of a view.
///
/// A picture larger than the view is scrolled; a smaller one is centered. The border line around the picture
/// scrolls with it and counts as the view's edge: at scroll position s the picture's column s begins one
/// border width inside the view. So column = view pixel + s - border at zoom 1.
class ViewAxis {
 public:
  static constexpr double kSmallestZoom = 0.01;
  static constexpr double kLargestZoom = 64;

  /// `picture` in picture pixels, `view` and `border` in device pixels. Keeps the scroll position, clamped to
  /// its new range.
  void measure(std::int32_t picture, std::int32_t view, std::int32_t border);

  double zoom() const { return zoom_; }
  /// Keeps the picture point at the view position `anchor` in place, as far as the scroll range allows.
  void zoom(double value, double anchor);
  /// The largest zoom at which picture and border fit into `room` device pixels. The picture is not empty.
  double fit(std::int32_t room) const;

  /// Scroll offset: device pixels of the picture, border included, before the view's edge; negative when
  /// centered.
  double offset() const { return offset_; }
  /// Returns true if the offset changed.
  bool scrollTo(double offset);

  /// The picture column at the view's edge, rounded down.
  std::int32_t scroll() const;
  bool scroll(std::int32_t column) { return scrollTo(column * zoom_); }

  /// Convert between continuous picture and view coordinates; pixels begin at integers.
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
