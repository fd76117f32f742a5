#include <algorithm>
#include <cstddef>

#include "Inside.h"

namespace kestrel::thumbnails {
namespace {

Rectangle grown(const Rectangle& area) {
  return {area.Left - 1, area.Top - 1, area.Width + 2, area.Height + 2};
}

}  // namespace

ThumbnailViewModel::Inside::Appearance ThumbnailViewModel::Inside::appearance() const {
  return {scroll,      arrangement.scrollRange(),          visible(), selection, focus,
          largeItem(), band.rectangle(arrangement, scroll)};
}

void ThumbnailViewModel::Inside::showDifference(const Appearance& before) {
  const Appearance now = appearance();
  if (now.scroll != before.scroll || now.range != before.range) view.scrollChanged();
  if (now.scroll != before.scroll || now.visible != before.visible) {
    invalidateAll();
  } else {
    for (std::int32_t item = now.visible.first; item < now.visible.last; ++item) {
      const bool focusMoved = now.focus != before.focus && (item == now.focus || item == before.focus);
      if (focusMoved || now.selection.contains(item) != before.selection.contains(item)) {
        view.invalidate(arrangement.place(item, scroll).cell);
      }
    }
    if (now.band != before.band) {
      if (before.band != Rectangle{}) view.invalidate(grown(before.band));
      if (now.band != Rectangle{}) view.invalidate(grown(now.band));
    }
    if (now.large != before.large) {
      mode == kViewSingle ? invalidateAll() : view.invalidate(arrangement.large());
    }
  }
  if (now.focus != before.focus) view.focusItemChanged();
  if (!now.selection.sameItems(before.selection)) view.selectionChanged();
}

void ThumbnailViewModel::Inside::invalidateAll() { view.invalidate({0, 0, viewport.Width, viewport.Height}); }

void ThumbnailViewModel::Inside::invalidateItem(const Item& item) {
  if (visible().contains(item.place)) view.invalidate(arrangement.place(item.place, scroll).cell);
  if (item.place == largeItem()) view.invalidate(arrangement.large());
}

void ThumbnailViewModel::Inside::arrange() {
  arrangement = Arrangement(mode, list.count(), viewport, metrics);
  scroll = std::clamp<std::int64_t>(scroll, 0, arrangement.scrollRange());
}

void ThumbnailViewModel::Inside::setScroll(std::int64_t position) {
  scroll = std::clamp<std::int64_t>(position, 0, arrangement.scrollRange());
}

void ThumbnailViewModel::Inside::anchorView() {
  const ItemRange shown = visible();
  anchor.reset();
  if (scroll == 0 || shown.empty()) return;
  anchor = list.items()[static_cast<std::size_t>(shown.first)];
  anchorOffset = arrangement.begin(shown.first) - scroll;
}

void ThumbnailViewModel::Inside::returnToAnchor() {
  const auto item = anchor.lock();
  if (item && item->place >= 0) setScroll(arrangement.begin(item->place) - anchorOffset);
}

std::int32_t ThumbnailViewModel::Inside::largeItem() const { return mode == kViewThumbnail ? -1 : focus; }

ItemRange ThumbnailViewModel::Inside::visible() const { return arrangement.visible(scroll); }

ItemRange ThumbnailViewModel::Inside::kept() const {
  const ItemRange shown = visible();
  if (!shown.empty() || focus < 0) return shown;
  return {focus, focus + 1};
}

void ThumbnailViewModel::Inside::moveFocus(std::int32_t item) {
  focus = item;
  setScroll(arrangement.scrollToShow(item, scroll));
}

void ThumbnailViewModel::Inside::selectShown() {
  if (mode == kViewThumbnail || focus < 0) return;
  const bool alone = selection.count() == 1 && selection.contains(focus);
  if (selection.count() == 0 || (mode == kViewSingle && !alone)) selection.only(focus);
}

Size ThumbnailViewModel::Inside::paintedSize(const Item& item, const engine::Bitmap& bitmap,
                                             std::int32_t askedFor) const {
  if (item.pictureSize.Width > 0 && item.pictureSize.Height > 0) return item.pictureSize;
  // A thumbnail that is as large as was asked for is reduced, from a picture of unknown size.
  const std::int32_t longest = std::max(bitmap.width(), bitmap.height());
  if (longest < 1 || longest < askedFor) return {bitmap.width(), bitmap.height()};
  constexpr std::int32_t kLarge = 1 << 15;
  const std::int32_t factor = std::max(1, kLarge / longest);
  return {bitmap.width() * factor, bitmap.height() * factor};
}

}  // namespace kestrel::thumbnails
