#pragma once

#include <cstdint>

#include "imaging/contract/ThumbnailView.h"
#include "imaging/contract/Types.h"

namespace kestrel::thumbnails {

/// What the arrangement needs to know of the screen.
struct Metrics {
  /// Device pixels per logical pixel; above 0.
  double scale = 1;
  /// Height of a line of the names, in device pixels.
  std::int32_t lineHeight = 16;
  /// How far a pressed pointer moves before a drag begins, in device pixels.
  std::int32_t dragDistance = 10;

  bool operator==(const Metrics&) const = default;
};

/// The rectangles of one item, in device pixels of the viewport. They may be partly outside.
struct ItemPlace {
  Rectangle cell;     ///< what is highlighted, and what a click hits
  Rectangle picture;  ///< the box that the picture is fitted into
  Rectangle name;     ///< one line as wide as the cell for the name, elided in its middle

  bool operator==(const ItemPlace&) const = default;
};

/// Items `first` to `last` - 1, counted from 0.
struct ItemRange {
  std::int32_t first = 0;
  std::int32_t last = 0;

  bool empty() const { return first >= last; }
  bool contains(std::int32_t item) const { return item >= first && item < last; }
  bool operator==(const ItemRange&) const = default;
};

/// An area along the scroll axis in content coordinates and across it in those of the viewport; the ends are
/// not included.
struct ContentArea {
  std::int64_t from = 0;
  std::int64_t to = 0;
  std::int32_t acrossFrom = 0;
  std::int32_t acrossTo = 0;
};

/// Side of the box of a picture in the grid, in device pixels. Thumbnails are made for it in all views, so
/// that a change of the view finds them.
std::int32_t gridPictureSide(double scale);

/// Places items in the viewport: a grid that scrolls down, a film strip (one large picture above a row that
/// scrolls to the right; in a low viewport the row's pictures are smaller, or there is no row), or a single
/// picture. A pure function of its parameters; positions and lengths along
/// the scroll axis have 64 bits.
class Arrangement {
 public:
  Arrangement() = default;
  /// `view` is one of `kViewThumbnail`, `kViewFilmstrip`, `kViewSingle`; counts and sizes below 0 are taken
  /// as 0.
  Arrangement(std::int32_t view, std::int32_t count, Size viewport, const Metrics& metrics);

  std::int32_t view() const { return view_; }
  std::int32_t count() const { return count_; }
  Size viewport() const { return viewport_; }

  /// Whether items scroll sideways (film strip) rather than down.
  bool scrollsSideways() const { return view_ == kViewFilmstrip; }
  /// Length of the content, and of the visible part, along the scroll axis.
  std::int64_t length() const { return length_; }
  std::int64_t page() const { return page_; }
  /// The largest scroll position; 0 if all is visible.
  std::int64_t scrollRange() const { return length_ > page_ ? length_ - page_ : 0; }
  /// From one row of the grid, or item of the film strip, to the next.
  std::int64_t pitch() const { return pitch_; }
  /// Where the cell of an item begins, along the scroll axis.
  std::int64_t begin(std::int32_t item) const;

  /// Items in a row of the grid; 1 in the other views.
  std::int32_t columns() const { return columns_; }
  /// Rows (grid) or items (film strip) that are visible as a whole, at least 1.
  std::int64_t wholeSteps() const;

  /// The items of which a part is visible at a scroll position. None in the single view.
  ItemRange visible(std::int64_t scroll) const;
  /// The place of an item at a scroll position. In the single view all items have the same.
  ItemPlace place(std::int32_t item, std::int64_t scroll) const;
  /// The box of the large picture (film strip and single view), else empty.
  Rectangle large() const { return large_; }
  /// The area in which items scroll.
  Rectangle strip() const { return strip_; }

  /// The item at a position of the viewport, -1 if there is none.
  std::int32_t hit(Point position, std::int64_t scroll) const;
  /// The scroll position nearest to `scroll` at which the item is visible as a whole.
  std::int64_t scrollToShow(std::int32_t item, std::int64_t scroll) const;
  /// Calls `visit` for each item whose cell intersects an area.
  template <typename Visit>
  void forEachIn(const ContentArea& area, Visit visit) const {
    const ItemRange near = between(area.from, area.to);
    for (std::int32_t item = near.first; item < near.last; ++item) {
      if (crosses(item, area)) visit(item);
    }
  }

 private:
  void setCell(std::int32_t picture);
  /// Side of the pictures in the row of a film strip: smaller in a low viewport, for the large picture.
  std::int32_t stripPicture(double scale) const;
  void layOutGrid();
  void layOutStrip();
  void layOutSingle();
  ItemRange between(std::int64_t from, std::int64_t to) const;
  bool crosses(std::int32_t item, const ContentArea& area) const;

  std::int32_t view_ = kViewThumbnail;
  std::int32_t count_ = 0;
  Size viewport_;

  std::int32_t padding_ = 1;  ///< between the edge of a cell and what it shows
  std::int32_t gap_ = 1;      ///< between cells, and around them
  std::int32_t lineHeight_ = 0;
  std::int32_t picture_ = 1;  ///< side of the box of a picture
  Size cell_;
  std::int32_t columns_ = 1;
  std::int32_t columnPitch_ = 0;  ///< from one column to the next
  std::int32_t across_ = 0;       ///< where the first cell begins across the scroll axis
  std::int64_t pitch_ = 1;        ///< from one cell to the next along the scroll axis
  std::int64_t length_ = 0;
  std::int64_t page_ = 0;
  Rectangle large_;
  Rectangle strip_;
};

/// The largest rectangle with a picture's proportions in the middle of `box`, not larger than the picture.
Rectangle fitted(Size picture, const Rectangle& box);

}  // namespace kestrel::thumbnails
