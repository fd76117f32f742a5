#include "Arrangement.h"

#include <algorithm>
#include <cmath>

namespace kestrel::thumbnails {
namespace {

// Logical pixels.
constexpr std::int32_t kGridPicture = 128;
constexpr std::int32_t kStripPicture = 96;
constexpr std::int32_t kLeastStripPicture = 32;
constexpr std::int32_t kPadding = 6;
constexpr std::int32_t kGap = 8;

/// A low film strip leaves this percentage of its height to the row, as long as that makes its pictures
/// smaller.
constexpr std::int32_t kRowPercent = 40;

std::int32_t scaled(std::int32_t logical, double scale) {
  return std::max(1, static_cast<std::int32_t>(std::lround(logical * scale)));
}

std::int64_t floorDivide(std::int64_t value, std::int64_t by) {
  const std::int64_t quotient = value / by;
  return value % by < 0 ? quotient - 1 : quotient;
}

Rectangle inset(const Rectangle& area, std::int32_t by) {
  return {area.Left + by, area.Top + by, std::max(0, area.Width - 2 * by), std::max(0, area.Height - 2 * by)};
}

/// Places far outside the viewport are clamped, so that they fit into a rectangle.
std::int32_t clampedTo32(std::int64_t position) {
  constexpr std::int64_t kFar = 1 << 30;
  return static_cast<std::int32_t>(std::clamp(position, -kFar, kFar));
}

}  // namespace

std::int32_t gridPictureSide(double scale) { return scaled(kGridPicture, scale); }

Arrangement::Arrangement(std::int32_t view, std::int32_t count, Size viewport, const Metrics& metrics)
    : view_(view),
      count_(std::max(count, 0)),
      viewport_{std::max(viewport.Width, 0), std::max(viewport.Height, 0)},
      padding_(scaled(kPadding, metrics.scale)),
      gap_(scaled(kGap, metrics.scale)),
      lineHeight_(std::max(metrics.lineHeight, 0)) {
  switch (view) {
    case kViewFilmstrip:
      setCell(stripPicture(metrics.scale));
      layOutStrip();
      break;
    case kViewSingle:
      setCell(scaled(kStripPicture, metrics.scale));
      layOutSingle();
      break;
    default:
      setCell(gridPictureSide(metrics.scale));
      layOutGrid();
  }
}

void Arrangement::setCell(std::int32_t picture) {
  picture_ = picture;
  cell_ = {picture + 2 * padding_, picture + 3 * padding_ + lineHeight_};
}

std::int32_t Arrangement::stripPicture(double scale) const {
  const auto row = static_cast<std::int32_t>(std::int64_t{viewport_.Height} * kRowPercent / 100);
  const std::int32_t around = 3 * padding_ + lineHeight_ + 2 * gap_;
  return std::clamp(row - around, scaled(kLeastStripPicture, scale), scaled(kStripPicture, scale));
}

void Arrangement::layOutGrid() {
  strip_ = {0, 0, viewport_.Width, viewport_.Height};
  const std::int32_t room = std::max(0, viewport_.Width - gap_);
  columns_ = std::max(1, room / (cell_.Width + gap_));
  columnPitch_ = std::max(cell_.Width + gap_, room / columns_);
  // The room that is left over is between the columns.
  across_ = gap_ + (columnPitch_ - gap_ - cell_.Width) / 2;
  pitch_ = cell_.Height + gap_;
  page_ = viewport_.Height;
  const std::int64_t rows = (std::int64_t{count_} + columns_ - 1) / columns_;
  length_ = rows == 0 ? 0 : gap_ + rows * pitch_;
}

void Arrangement::layOutStrip() {
  const std::int32_t row = cell_.Height + 2 * gap_;
  // A row above which no picture of its own size fits is left out.
  const std::int32_t height = viewport_.Height - row - 2 * gap_ < picture_ ? 0 : row;
  strip_ = {0, viewport_.Height - height, viewport_.Width, height};
  large_ = inset({0, 0, viewport_.Width, strip_.Top}, gap_);
  across_ = strip_.Top + gap_;
  pitch_ = cell_.Width + gap_;
  page_ = viewport_.Width;
  length_ = count_ == 0 ? 0 : gap_ + count_ * pitch_;
}

void Arrangement::layOutSingle() {
  const std::int32_t name = std::min(viewport_.Height, lineHeight_ + padding_);
  large_ = inset({0, 0, viewport_.Width, viewport_.Height - name}, gap_);
  pitch_ = std::max(1, viewport_.Height);
  page_ = viewport_.Height;
  length_ = count_ == 0 ? 0 : page_;
}

std::int64_t Arrangement::wholeSteps() const { return std::max<std::int64_t>(1, (page_ - gap_) / pitch_); }

std::int64_t Arrangement::begin(std::int32_t item) const { return gap_ + item / columns_ * pitch_; }

ItemRange Arrangement::between(std::int64_t from, std::int64_t to) const {
  if (view_ == kViewSingle || from >= to) return {};
  const std::int64_t extent = pitch_ - gap_;
  const std::int64_t rows = (std::int64_t{count_} + columns_ - 1) / columns_;
  const std::int64_t first = std::clamp<std::int64_t>(floorDivide(from - gap_ - extent, pitch_) + 1, 0, rows);
  const std::int64_t last = std::clamp<std::int64_t>(floorDivide(to - gap_ - 1, pitch_) + 1, 0, rows);
  const std::int64_t most = count_;
  return {static_cast<std::int32_t>(std::min(first * columns_, most)),
          static_cast<std::int32_t>(std::min(last * columns_, most))};
}

ItemRange Arrangement::visible(std::int64_t scroll) const { return between(scroll, scroll + page_); }

ItemPlace Arrangement::place(std::int32_t item, std::int64_t scroll) const {
  if (view_ == kViewSingle) {
    const Rectangle name{gap_, large_.Top + large_.Height + gap_, std::max(0, viewport_.Width - 2 * gap_),
                         lineHeight_};
    return {{0, 0, viewport_.Width, viewport_.Height}, large_, name};
  }
  const std::int32_t along = clampedTo32(begin(item) - scroll);
  const std::int32_t across = across_ + item % columns_ * columnPitch_;
  const Rectangle cell = scrollsSideways() ? Rectangle{along, across, cell_.Width, cell_.Height}
                                           : Rectangle{across, along, cell_.Width, cell_.Height};
  return {cell,
          {cell.Left + padding_, cell.Top + padding_, picture_, picture_},
          {cell.Left, cell.Top + picture_ + 2 * padding_, cell.Width, lineHeight_}};
}

std::int32_t Arrangement::hit(Point position, std::int64_t scroll) const {
  if (view_ == kViewSingle) return -1;
  const std::int64_t along = scroll + (scrollsSideways() ? position.X : position.Y);
  const std::int32_t across = scrollsSideways() ? position.Y : position.X;
  std::int32_t found = -1;
  forEachIn({along, along + 1, across, across + 1}, [&](std::int32_t item) { found = item; });
  return found;
}

bool Arrangement::crosses(std::int32_t item, const ContentArea& area) const {
  const std::int32_t across = across_ + item % columns_ * columnPitch_;
  const std::int32_t extent = scrollsSideways() ? cell_.Height : cell_.Width;
  return across < area.acrossTo && across + extent > area.acrossFrom;
}

std::int64_t Arrangement::scrollToShow(std::int32_t item, std::int64_t scroll) const {
  if (view_ == kViewSingle || item < 0 || item >= count_) return scroll;
  const std::int64_t from = begin(item) - gap_;
  const std::int64_t to = from + pitch_ + gap_;
  if (to > scroll + page_) scroll = to - page_;
  if (from < scroll) scroll = from;
  return std::clamp<std::int64_t>(scroll, 0, scrollRange());
}

Rectangle fitted(Size picture, const Rectangle& box) {
  if (picture.Width < 1 || picture.Height < 1 || box.Width < 1 || box.Height < 1) return box;
  const double factor = std::min({1.0, static_cast<double>(box.Width) / picture.Width,
                                  static_cast<double>(box.Height) / picture.Height});
  const auto side = [factor](std::int32_t length, std::int32_t most) {
    return std::clamp(static_cast<std::int32_t>(std::lround(length * factor)), 1, most);
  };
  const std::int32_t width = side(picture.Width, box.Width);
  const std::int32_t height = side(picture.Height, box.Height);
  return {box.Left + (box.Width - width) / 2, box.Top + (box.Height - height) / 2, width, height};
}

}  // namespace kestrel::thumbnails
