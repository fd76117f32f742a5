#include "UndoStack.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kestrel::engine {

void UndoStack::Steps::take(Steps& from, std::list<Step>::iterator step) noexcept {
  from.bytes -= step->bytes;
  bytes += step->bytes;
  list.splice(list.end(), from.list, step);
}

void UndoStack::Steps::dropFirst() noexcept {
  bytes -= list.front().bytes;
  list.pop_front();
}

void UndoStack::Steps::bytesOf(Step& step, std::size_t value) noexcept {
  bytes = bytes - step.bytes + value;
  step.bytes = value;
}

std::size_t UndoStack::bytesOf(const Before& before) noexcept {
  if (const auto* const tiles = std::get_if<KeptTiles>(&before)) return tiles->memory();
  return std::get<PictureState>(before).bitmap.byteSize();
}

/// As `bytesOf`, but 0 for a picture that shares its pixels with the next one.
std::size_t UndoStack::bytesBeyond(const Before& before, const Bitmap& neighbor) noexcept {
  const auto* const whole = std::get_if<PictureState>(&before);
  return whole != nullptr && whole->bitmap.sharesPixelsWith(neighbor) ? 0 : bytesOf(before);
}

void UndoStack::levels(std::int32_t value) {
  levels_ = std::max(value, 0);
  const auto most = static_cast<std::size_t>(levels_);
  while (done_.list.size() > most) done_.dropFirst();
  while (undone_.list.size() > most) undone_.dropFirst();
}

void UndoStack::memoryLimit(std::size_t bytes) {
  memoryLimit_ = bytes;
  Steps removed;
  keepLimits(removed);
  while (done_.bytes + undone_.bytes > memoryLimit_ && undone_.list.size() > 1) undone_.dropFirst();
}

void UndoStack::record(const std::string& name, Before& before) {
  Steps one = makeStep(name);
  // From here on nothing can fail.
  if (!done_.list.empty()) {
    const auto* const whole = std::get_if<PictureState>(&before);
    Step& latest = done_.list.back();
    done_.bytesOf(latest, whole ? bytesBeyond(latest.before, whole->bitmap) : bytesOf(latest.before));
  }
  one.list.back().before = std::move(before);
  one.bytesOf(one.list.back(), bytesOf(one.list.back().before));
  undone_ = {};
  Steps removed;
  add(one, removed);
}

UndoStack::Point UndoStack::recordPoint(const std::string& name, const PictureState& present) {
  Steps one = makeStep(name);
  one.list.back().before = present;
  Point point;
  if (levels_ == 0) return point;
  if (!done_.list.empty()) {
    Step& latest = done_.list.back();
    done_.bytesOf(latest, bytesBeyond(latest.before, present.bitmap));
  }
  point.serial = one.list.back().serial;
  std::swap(point.undone, undone_);
  add(one, point.oldest);
  return point;
}

bool UndoStack::takeBack(Point& point) noexcept {
  if (point.serial == 0) return levels_ == 0;
  if (done_.list.empty() || done_.list.back().serial != point.serial) return false;
  done_.bytes -= done_.list.back().bytes;
  done_.list.pop_back();
  done_.list.splice(done_.list.begin(), point.oldest.list);
  done_.bytes += std::exchange(point.oldest.bytes, 0);
  std::swap(undone_, point.undone);
  return true;
}

UndoStack::Steps UndoStack::makeStep(const std::string& name) {
  Steps one{std::list<Step>(1), 0};
  one.list.back().name = name;
  one.list.back().serial = ++lastSerial_;
  return one;
}

void UndoStack::add(Steps& one, Steps& removed) noexcept {
  done_.take(one, one.list.begin());
  keepLimits(removed);
}

/// Moves the oldest steps beyond the limits to `removed`.
void UndoStack::keepLimits(Steps& removed) noexcept {
  while (done_.list.size() > static_cast<std::size_t>(levels_) ||
         (done_.list.size() > 1 && done_.bytes + undone_.bytes > memoryLimit_)) {
    removed.take(done_, done_.list.begin());
  }
}

void UndoStack::absorb(Before& before) {
  if (!done_.list.empty()) {
    Step& latest = done_.list.back();
    if (auto* const tiles = std::get_if<KeptTiles>(&latest.before)) {
      if (auto* const whole = std::get_if<PictureState>(&before)) {
        tiles->exchangeWith(whole->bitmap.writable());
        latest.before = std::move(*whole);
      } else {
        tiles->addMissing(std::get<KeptTiles>(before));
      }
    }
    done_.bytesOf(latest, bytesOf(latest.before));
  }
  undone_ = {};
  Steps removed;
  keepLimits(removed);
}

bool UndoStack::take(Steps& from, Steps& to, PictureState& present) {
  if (from.list.empty()) return false;
  Step& step = from.list.back();
  if (auto* const whole = std::get_if<PictureState>(&step.before)) {
    std::swap(*whole, present);
    from.bytesOf(step, bytesBeyond(step.before, present.bitmap));
  } else {
    std::get<KeptTiles>(step.before).exchangeWith(present.bitmap.writable());
  }
  to.take(from, std::prev(from.list.end()));
  return true;
}

std::size_t UndoStack::memory(const PictureState& present) const {
  std::size_t bytes = 0;
  for (const Steps* const steps : {&done_, &undone_}) {
    if (steps->list.empty()) continue;
    const Step& next = steps->list.back();
    bytes += steps->bytes - next.bytes + bytesBeyond(next.before, present.bitmap);
  }
  return bytes;
}

}  // namespace kestrel::engine
