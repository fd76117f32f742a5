#include "RubberBand.h"

#include <algorithm>

namespace kestrel::thumbnails {

RubberBand::Corner RubberBand::cornerOf(const Arrangement& arrangement, std::int64_t scroll, Point position) {
  if (arrangement.scrollsSideways()) return {scroll + position.X, position.Y};
  return {scroll + position.Y, position.X};
}

void RubberBand::begin(const Arrangement& arrangement, std::int64_t scroll, Point position,
                       std::int32_t modifiers, Selection& selection) {
  active_ = true;
  inverts_ = (modifiers & kCtrlMask) != 0;
  from_ = to_ = cornerOf(arrangement, scroll, position);
  before_ = selection;
  if ((modifiers & (kCtrlMask | kShiftMask)) == 0) selection.clear();
  base_ = selection;
}

ContentArea RubberBand::area() const {
  return {std::min(from_.along, to_.along), std::max(from_.along, to_.along) + 1,
          std::min(from_.across, to_.across), std::max(from_.across, to_.across) + 1};
}

void RubberBand::update(const Arrangement& arrangement, std::int64_t scroll, Point position,
                        Selection& selection) {
  to_ = cornerOf(arrangement, scroll, position);
  selection = base_;
  arrangement.forEachIn(area(),
                        [&](std::int32_t item) { selection.set(item, !inverts_ || !base_.contains(item)); });
}

void RubberBand::remap(const std::vector<std::int32_t>& places, std::int32_t count) {
  before_.remap(places, count);
  base_.remap(places, count);
}

void RubberBand::shift(std::int64_t distance) {
  from_.along += distance;
  to_.along += distance;
}

Rectangle RubberBand::rectangle(const Arrangement& arrangement, std::int64_t scroll) const {
  if (!active_) return {};
  const ContentArea band = area();
  const bool sideways = arrangement.scrollsSideways();
  const Rectangle strip = arrangement.strip();
  const std::int64_t page = arrangement.page();
  const auto from = static_cast<std::int32_t>(std::clamp<std::int64_t>(band.from - scroll, 0, page));
  const auto to = static_cast<std::int32_t>(std::clamp<std::int64_t>(band.to - scroll, 0, page));
  const std::int32_t edge = sideways ? strip.Top : strip.Left;
  const std::int32_t extent = sideways ? strip.Height : strip.Width;
  const std::int32_t acrossFrom = std::clamp(band.acrossFrom, edge, edge + extent);
  const std::int32_t acrossTo = std::clamp(band.acrossTo, edge, edge + extent);
  if (from >= to || acrossFrom >= acrossTo) return {};
  if (sideways) return {from, acrossFrom, to - from, acrossTo - acrossFrom};
  return {acrossFrom, from, acrossTo - acrossFrom, to - from};
}

}  // namespace kestrel::thumbnails
