#include <algorithm>
#include <cstdlib>
#include <string>

#include "Inside.h"
#include "base/CaseFolding.h"
#include "platform/os/Paths.h"

namespace kestrel::thumbnails {

// ---------------------------------------------------------------------------------------------- pointer

void ThumbnailViewModel::Inside::press(std::int32_t modifiers, Point position) {
  endGesture();
  typeAhead.reset();
  pressedAt = pointer = position;
  const std::int32_t item = view.hitTest(position);
  if (item >= 0) {
    pressItem(item, modifiers);
    return;
  }
  const Rectangle strip = arrangement.strip();
  if (mode == kViewSingle || position.Y < strip.Top) return;
  gesture = Gesture::kBand;
  band.begin(arrangement, scroll, position, modifiers, selection);
}

void ThumbnailViewModel::Inside::pressItem(std::int32_t item, std::int32_t modifiers) {
  gesture = Gesture::kItem;
  onRelease = OnRelease::kNothing;
  pressed = item;
  const bool ctrl = (modifiers & kCtrlMask) != 0;
  if ((modifiers & kShiftMask) != 0) {
    selection.extend(item, ctrl);
  } else if (selection.contains(item)) {
    // The press may begin to drag all selected items.
    onRelease = ctrl ? OnRelease::kToggle : OnRelease::kSelectOnly;
  } else if (ctrl) {
    selection.toggle(item);
  } else {
    selection.only(item);
  }
  focus = item;
}

void ThumbnailViewModel::Inside::drag(Point position) {
  pointer = position;
  if (gesture == Gesture::kBand) {
    alter([&] { updateBand(position); });
    setAutoScroll(beyond(position) != 0);
  } else if (gesture == Gesture::kItem) {
    const std::int32_t distance = std::abs(position.X - pressedAt.X) + std::abs(position.Y - pressedAt.Y);
    if (distance < metrics.dragDistance) return;
    gesture = Gesture::kNone;
    // Ctrl takes an item out of the selection at the release, which does not come any more.
    if (selection.contains(pressed)) view.beginDrag();
  }
}

void ThumbnailViewModel::Inside::updateBand(Point position) {
  band.update(arrangement, scroll, position, selection);
}

std::int32_t ThumbnailViewModel::Inside::beyond(Point position) const {
  const std::int32_t along = arrangement.scrollsSideways() ? position.X : position.Y;
  const auto page = static_cast<std::int32_t>(arrangement.page());
  if (along < 0) return along;
  return along >= page ? along - page + 1 : 0;
}

void ThumbnailViewModel::Inside::setAutoScroll(bool on) {
  if (on == autoScrolling) return;
  autoScrolling = on;
  view.autoScroll(on);
}

void ThumbnailViewModel::Inside::endGesture() {
  const Rectangle shown = band.rectangle(arrangement, scroll);
  gesture = Gesture::kNone;
  onRelease = OnRelease::kNothing;
  band.end();
  setAutoScroll(false);
  if (shown != Rectangle{}) view.invalidate(shown);
}

void ThumbnailViewModel::Inside::followGesture(const ListChange& change) {
  if (gesture == Gesture::kBand) {
    band.remap(change.places, list.count());
  } else if (gesture == Gesture::kItem) {
    pressed = change.places[static_cast<std::size_t>(pressed)];
    if (pressed < 0) endGesture();
  }
}

std::int32_t ThumbnailViewModel::hitTest(Point position) const {
  const Arrangement& arrangement = inside_->arrangement;
  const Rectangle large = arrangement.large();
  const bool onLarge = position.X >= large.Left && position.X < large.Left + large.Width &&
                       position.Y >= large.Top && position.Y < large.Top + large.Height;
  return onLarge ? inside_->largeItem() : arrangement.hit(position, inside_->scroll);
}

void ThumbnailViewModel::pointerDown(std::int32_t button, std::int32_t modifiers, Point position) {
  if (button != kLeftButton) return;
  inside_->alter([&] { inside_->press(modifiers, position); });
}

void ThumbnailViewModel::pointerMove(std::int32_t /*modifiers*/, Point position) { inside_->drag(position); }

void ThumbnailViewModel::pointerUp(std::int32_t button, std::int32_t /*modifiers*/, Point /*position*/) {
  if (button != kLeftButton) return;
  inside_->alter([this] {
    const auto action = inside_->onRelease;
    if (inside_->gesture == Inside::Gesture::kItem) {
      if (action == Inside::OnRelease::kSelectOnly) inside_->selection.only(inside_->pressed);
      if (action == Inside::OnRelease::kToggle) inside_->selection.toggle(inside_->pressed);
    }
    inside_->endGesture();
  });
}

void ThumbnailViewModel::pointerDoubleClick(std::int32_t button, std::int32_t /*modifiers*/, Point position) {
  if (button != kLeftButton) return;
  inside_->endGesture();
  const std::int32_t item = hitTest(position);
  if (item < 0) return;
  const auto kept = inside_->list.items()[static_cast<std::size_t>(item)];
  static_cast<void>(inside_->raise(ThumbnailDblClick, *kept));
}

void ThumbnailViewModel::pointerCancel() { inside_->endGesture(); }

void ThumbnailViewModel::autoScrollTick() {
  constexpr std::int32_t kFraction = 4;  // of the distance beyond the edge, in each step
  if (inside_->gesture != Inside::Gesture::kBand) return;
  const std::int32_t distance = inside_->beyond(inside_->pointer);
  if (distance == 0) return;
  const std::int32_t step = std::abs(distance) / kFraction + 1;
  inside_->alter([&] {
    inside_->setScroll(inside_->scroll + (distance < 0 ? -step : step));
    inside_->updateBand(inside_->pointer);
  });
}

bool ThumbnailViewModel::contextClick(Point position) {
  const std::int32_t item = hitTest(position);
  inside_->alter([&] {
    inside_->endGesture();
    if (item < 0) {
      inside_->selection.clear();
    } else {
      if (!inside_->selection.contains(item)) inside_->selection.only(item);
      inside_->focus = item;
    }
  });
  if (item < 0) return false;
  const auto kept = inside_->list.items()[static_cast<std::size_t>(item)];
  static_cast<void>(inside_->raise(ThumbnailContextClick, *kept));
  return true;
}

bool ThumbnailViewModel::contextKey() {
  const std::int32_t item = inside_->focus;
  if (item < 0) return false;
  inside_->alter([&] {
    if (!inside_->selection.contains(item)) inside_->selection.only(item);
    inside_->moveFocus(item);
  });
  const auto kept = inside_->list.items()[static_cast<std::size_t>(item)];
  static_cast<void>(inside_->raise(ThumbnailContextClick, *kept));
  return true;
}

// ---------------------------------------------------------------------------------------------- keyboard

void ThumbnailViewModel::Inside::moveTo(std::int32_t item, std::int32_t modifiers) {
  const bool ctrl = (modifiers & kCtrlMask) != 0;
  alter([&] {
    if ((modifiers & kShiftMask) != 0) {
      if (selection.anchor() < 0) selection.anchor(focus);
      selection.extend(item, ctrl);
    } else if (!ctrl) {
      selection.only(item);
    }
    moveFocus(item);
  });
}

bool ThumbnailViewModel::Inside::space(std::int32_t modifiers) {
  if (modifiers == 0 && typeAhead.typing(services.now())) return find(" ");
  if (focus < 0) return false;
  alter([&] {
    if ((modifiers & kShiftMask) != 0) {
      selection.extend(focus, (modifiers & kCtrlMask) != 0);
    } else if ((modifiers & kCtrlMask) != 0) {
      selection.toggle(focus);
    } else {
      selection.set(focus, true);
      selection.anchor(focus);
    }
    moveFocus(focus);
  });
  return true;
}

bool ThumbnailViewModel::Inside::escape() {
  if (gesture == Gesture::kBand) {
    alter([this] {
      selection = band.before();
      endGesture();
    });
    return true;
  }
  if (typeAhead.typing(services.now())) {
    typeAhead.reset();
    return true;
  }
  if (mode != kViewSingle || modeBefore == kViewSingle) return false;
  view.View(modeBefore);
  return true;
}

bool ThumbnailViewModel::Inside::find(std::string_view text) {
  if (focus < 0) return false;
  const TypeAhead::Search search = typeAhead.type(text, services.now());
  const std::int32_t count = list.count();
  for (std::int32_t i = search.fromNext ? 1 : 0; i < count + 1; ++i) {
    const std::int32_t place = (focus + i) % count;
    if (!FoldCase(os::textOf(list.at(place).file.name)).starts_with(search.prefix)) continue;
    moveTo(place, 0);
    break;
  }
  return true;
}

bool ThumbnailViewModel::key(Key key, std::int32_t modifiers) {
  Inside& inside = *inside_;
  if ((modifiers & kAltMask) != 0) return false;
  switch (key) {
    case Key::kSpace:
      return inside.space(modifiers);
    case Key::kEscape:
      return inside.escape();
    case Key::kSelectAll:
      if (inside.list.count() == 0) return false;
      inside.alter([&] { inside.selection.all(); });
      return true;
    case Key::kDelete:
      if (modifiers != 0) return false;
      static_cast<void>(inside.raise(DeletePressed));
      return true;
    case Key::kEnter: {
      if (modifiers != 0 || inside.focus < 0) return false;
      const auto kept = inside.list.items()[static_cast<std::size_t>(inside.focus)];
      static_cast<void>(inside.raise(ThumbnailOpen, *kept));
      return true;
    }
    default:
      break;
  }
  if (inside.focus < 0) return false;
  inside.typeAhead.reset();
  const std::int32_t target = keyTarget(inside.arrangement, key, inside.focus);
  if (target < 0) return false;
  inside.moveTo(target, modifiers);
  return true;
}

bool ThumbnailViewModel::type(std::string_view text) {
  constexpr unsigned char kDelete = 0x7F;
  if (text.empty() || static_cast<unsigned char>(text.front()) <= ' ' || text.front() == kDelete)
    return false;
  return inside_->find(text);
}

}  // namespace kestrel::thumbnails
