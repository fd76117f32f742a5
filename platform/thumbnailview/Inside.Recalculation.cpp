#include <algorithm>
#include <utility>

#include "Inside.h"

namespace kestrel::thumbnails {

bool ThumbnailViewModel::Inside::canImprove(const Item& item) const {
  if (!item.counted || !item.needs(side)) return false;
  const std::int32_t longest = std::max(item.pictureSize.Width, item.pictureSize.Height);
  return longest == 0 || longest > item.madeSide;
}

void ThumbnailViewModel::Inside::setSide(std::int32_t value) {
  if (value == side) return;
  side = value;
  if (phase == Phase::kLoading) {
    // What is not loaded yet is loaded at the new size. The rest follows after the load.
    loader.removeAll();
    std::vector<LoadRequest> requests;
    for (const auto& item : list.items()) {
      if (!item->counted) requests.push_back(requestFor(*item, side, false));
    }
    loader.add(std::move(requests));
  } else if (phase == Phase::kDone) {
    if (recalculating) loader.removeAll();
    // Posted, since events are raised that handlers may answer by destroying the view under the caller.
    services.post([this, alive = std::weak_ptr<const int>(life)] {
      if (!alive.expired()) considerRecalculation();
    });
  }
}

void ThumbnailViewModel::Inside::considerRecalculation() {
  if (phase != Phase::kDone) return;
  const bool needed = std::any_of(list.items().begin(), list.items().end(),
                                  [this](const auto& item) { return canImprove(*item); });
  if (!endRecalculation() || !needed) return;
  startRecalculation();
}

void ThumbnailViewModel::Inside::startRecalculation() {
  bool cancel = false;
  recalculating = true;
  starting = true;
  if (!raise(view.RecalculatingThumbnailsStart, cancel)) return;
  starting = false;
  if (cancel) {
    // The thumbnails stay as they are, enlarged where that is needed.
    std::int32_t largest = 0;
    for (const auto& item : list.items()) {
      if (item->madeSide != Item::kFinal) largest = std::max(largest, item->madeSide);
    }
    // Without any the next ones are made at the new size.
    if (largest > 0) side = largest;
    updateWanted();
    static_cast<void>(endRecalculation());
    return;
  }
  std::vector<LoadRequest> requests;
  for (const auto& item : list.items()) {
    if (!canImprove(*item)) continue;
    item->remaking = true;
    ++remaining;
    requests.push_back(requestFor(*item, side, false));
  }
  loader.add(std::move(requests));
  updateWanted();
  if (remaining == 0) static_cast<void>(endRecalculation());
}

bool ThumbnailViewModel::Inside::reportRecalculated(const std::shared_ptr<Item>& item) {
  if (!std::exchange(item->remaking, false)) return true;
  --remaining;
  return raise(view.RecalculatedThumbnail, *item);
}

bool ThumbnailViewModel::Inside::endRecalculation() {
  if (!std::exchange(recalculating, false)) return true;
  starting = false;
  for (const auto& item : list.items()) item->remaking = false;
  remaining = 0;
  return raise(view.RecalculatingThumbnailsComplete);
}

}  // namespace kestrel::thumbnails
