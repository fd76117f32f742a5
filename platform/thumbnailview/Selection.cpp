#include "Selection.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kestrel::thumbnails {

void Selection::reset(std::int32_t count) {
  flags_.assign(static_cast<std::size_t>(std::max(count, 0)), 0);
  selected_ = 0;
  anchor_ = -1;
  items_.clear();
  listed_ = true;
}

void Selection::remap(const std::vector<std::int32_t>& places, std::int32_t count) {
  const Selection before = std::move(*this);
  reset(count);
  const auto newPlace = [&](std::int32_t item) {
    return item >= 0 && static_cast<std::size_t>(item) < places.size()
               ? places[static_cast<std::size_t>(item)]
               : -1;
  };
  for (const std::int32_t item : before.items()) set(newPlace(item), true);
  anchor_ = newPlace(before.anchor_);
}

bool Selection::isItem(std::int32_t item) const {
  return item >= 0 && static_cast<std::size_t>(item) < flags_.size();
}

bool Selection::contains(std::int32_t item) const {
  return isItem(item) && flags_[static_cast<std::size_t>(item)] != 0;
}

const std::vector<std::int32_t>& Selection::items() const {
  if (!std::exchange(listed_, true)) {
    items_.clear();
    items_.reserve(static_cast<std::size_t>(selected_));
    for (std::size_t i = 0; i < flags_.size(); ++i) {
      if (flags_[i] != 0) items_.push_back(static_cast<std::int32_t>(i));
    }
  }
  return items_;
}

void Selection::clear() {
  if (selected_ == 0) return;
  std::fill(flags_.begin(), flags_.end(), std::uint8_t{0});
  selected_ = 0;
  listed_ = false;
}

void Selection::all() {
  std::fill(flags_.begin(), flags_.end(), std::uint8_t{1});
  selected_ = static_cast<std::int32_t>(flags_.size());
  listed_ = false;
}

void Selection::set(std::int32_t item, bool selected) {
  if (!isItem(item) || contains(item) == selected) return;
  flags_[static_cast<std::size_t>(item)] = selected ? 1 : 0;
  selected_ += selected ? 1 : -1;
  listed_ = false;
}

void Selection::only(std::int32_t item) {
  clear();
  set(item, true);
  anchor_ = item;
}

void Selection::toggle(std::int32_t item) {
  set(item, !contains(item));
  anchor_ = item;
}

void Selection::extend(std::int32_t item, bool keep) {
  if (!isItem(anchor_)) anchor_ = item;
  if (!keep) clear();
  for (std::int32_t i = std::min(anchor_, item); i <= std::max(anchor_, item); ++i) set(i, true);
}

}  // namespace kestrel::thumbnails
