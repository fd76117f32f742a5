#include "UndoStack.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace kestrel::engine {

void UndoStack::levels(std::int32_t value) {
  levels_ = std::max(value, 0);
  const auto most = static_cast<std::size_t>(levels_);
  while (done_.size() > most) done_.pop_front();
  while (undone_.size() > most) undone_.pop_front();
}

void UndoStack::record(const std::string& name, Before& before) {
  Steps one = makeStep(name);
  // From here on nothing can fail.
  one.back().before = std::move(before);
  undone_.clear();
  Steps removed;
  add(one, removed);
}

UndoStack::Point UndoStack::recordPoint(const std::string& name, const PictureState& present) {
  Steps one = makeStep(name);
  one.back().before = present;
  Point point;
  if (levels_ == 0) return point;
  point.serial = one.back().serial;
  point.undone.swap(undone_);
  add(one, point.oldest);
  return point;
}

bool UndoStack::takeBack(Point& point) noexcept {
  if (point.serial == 0) return levels_ == 0;
  if (done_.empty() || done_.back().serial != point.serial) return false;
  done_.pop_back();
  done_.splice(done_.begin(), point.oldest);
  undone_.swap(point.undone);
  return true;
}

UndoStack::Steps UndoStack::makeStep(const std::string& name) {
  Steps one(1);
  one.back().name = name;
  one.back().serial = ++lastSerial_;
  return one;
}

void UndoStack::add(Steps& one, Steps& removed) noexcept {
  done_.splice(done_.end(), one);
  while (done_.size() > static_cast<std::size_t>(levels_)) {
    removed.splice(removed.end(), done_, done_.begin());
  }
}

void UndoStack::absorb(Before& before) {
  if (!done_.empty()) {
    Step& latest = done_.back();
    if (auto* const tiles = std::get_if<KeptTiles>(&latest.before)) {
      if (auto* const whole = std::get_if<PictureState>(&before)) {
        tiles->exchangeWith(whole->bitmap.writable());
        latest.before = std::move(*whole);
      } else {
        tiles->addMissing(std::get<KeptTiles>(before));
      }
    }
  }
  undone_.clear();
}

bool UndoStack::take(Steps& from, Steps& to, PictureState& present) {
  if (from.empty()) return false;
  Step& step = from.back();
  if (auto* const whole = std::get_if<PictureState>(&step.before)) {
    std::swap(*whole, present);
  } else {
    std::get<KeptTiles>(step.before).exchangeWith(present.bitmap.writable());
  }
  to.splice(to.end(), from, std::prev(from.end()));
  return true;
}

std::size_t UndoStack::memory(const PictureState& present) const {
  std::size_t bytes = 0;
  std::vector<const Bitmap*> counted{&present.bitmap};
  for (const Steps* const steps : {&done_, &undone_}) {
    for (const Step& step : *steps) {
      if (const auto* const tiles = std::get_if<KeptTiles>(&step.before)) {
        bytes += tiles->memory();
        continue;
      }
      const Bitmap& bitmap = std::get<PictureState>(step.before).bitmap;
      const bool known = std::any_of(counted.begin(), counted.end(),
                                     [&](const Bitmap* other) { return other->sharesPixelsWith(bitmap); });
      if (known) continue;
      bytes += bitmap.byteSize();
      counted.push_back(&bitmap);
    }
  }
  return bytes;
}

}  // namespace kestrel::engine
