#include <algorithm>
#include <cstddef>
#include <iterator>
#include <system_error>
#include <utility>

#include "FolderReading.h"
#include "Inside.h"

namespace kestrel::thumbnails {
namespace {

/// A file that changes during each of so many reads is shown as broken until it is reported to have changed.
constexpr std::int32_t kMostStaleReads = 3;

}  // namespace

void ThumbnailViewModel::Inside::startLoad() {
  if (!endLoad()) return;
  const std::filesystem::path path = view.folderPath();
  if (path.empty() || cleared || !userMode) return;
  ++load;
  phase = Phase::kSearching;
  loadedCount = 0;
  lastPercent = 0;
  bool cancel = false;
  if (!raise(view.FolderLoadStart, cancel)) return;
  if (cancel) {
    cancelLoad();
    return;
  }
  // Absolute, since the store identifies files by their whole path.
  std::error_code ignored;
  const std::filesystem::path absolute = std::filesystem::absolute(path, ignored);
  loader.open(absolute.empty() ? path : absolute);
}

bool ThumbnailViewModel::Inside::endLoad() {
  const bool loading = isLoading();
  loader.close();
  ++load;
  phase = Phase::kNone;
  if (!endRecalculation()) return false;
  if (!loading) return true;
  return raise(view.FolderLoadComplete, true);
}

void ThumbnailViewModel::Inside::cancelLoad() {
  loader.removeAll();
  ++load;
  phase = Phase::kCanceled;
  invalidateAll();
  static_cast<void>(raise(view.FolderLoadComplete, true));
}

void ThumbnailViewModel::Inside::emptyList() {
  endGesture();
  const std::string& separator = services.separator;
  list.reset(folder.ends_with(separator) ? folder : folder + separator);
  selection.reset(0);
  focus = -1;
  scroll = 0;
  anchor.reset();
  problem.clear();
  typeAhead.reset();
  pictures.recount(list);
  large.clear();
  arrange();
  invalidateAll();
  view.scrollChanged();
  view.itemsChanged();
  view.selectionChanged();
  view.focusItemChanged();
}

std::int32_t ThumbnailViewModel::Inside::percent() const {
  if (list.count() == 0) return 100;
  return static_cast<std::int32_t>(std::int64_t{100} * loadedCount / list.count());
}

void ThumbnailViewModel::Inside::finishIfComplete() {
  if (recalculating && !starting && remaining == 0 && !endRecalculation()) return;
  if (phase != Phase::kLoading || loadedCount < list.count()) return;
  phase = Phase::kDone;
  if (!raise(view.FolderLoadComplete, false)) return;
  updateWanted();
  considerRecalculation();
}

LoadRequest ThumbnailViewModel::Inside::requestFor(const Item& item, std::int32_t atSide, bool bitmap) const {
  return {item.key, item.file, atSide, bitmap};
}

// ---------------------------------------------------------------------------------------------- listing

void ThumbnailViewModel::Inside::listed(std::vector<FoundFile> files, const std::string& trouble) {
  setProblem(trouble);
  const bool first = phase == Phase::kSearching;
  const ListChange change = list.replace(std::move(files));
  follow(change);
  if (!first) {
    requestFresh(change);
    finishIfComplete();
    return;
  }
  invalidateAll();
  loadedCount = 0;
  for (const auto& item : list.items()) {
    // What has failed may have been a matter of memory or of permissions.
    if (item->broken()) item->madeSide = 0;
    item->counted = !item->needs(side);
    if (item->counted) ++loadedCount;
  }
  phase = Phase::kLoading;
  std::vector<LoadRequest> requests;
  for (const auto& item : list.items()) {
    if (!item->counted) requests.push_back(requestFor(*item, side, false));
  }
  updateWanted();
  loader.add(std::move(requests));
  if (raise(view.FolderSearchComplete, list.count())) finishIfComplete();
}

void ThumbnailViewModel::Inside::changed(Changes changes) {
  if (changes.folderGone) setProblem(kFolderGone);
  const ListChange change = changes.folderGone ? list.replace({}) : list.apply(std::move(changes));
  follow(change);
  requestFresh(change);
  finishIfComplete();
}

void ThumbnailViewModel::Inside::setProblem(const std::string& sentence) {
  if (sentence == problem) return;
  problem = sentence;
  invalidateAll();
  view.itemsChanged();
}

std::int32_t ThumbnailViewModel::Inside::focusAfter(const ListChange& change) const {
  const std::int32_t from = std::max(focus, 0);
  const auto stays = [](std::int32_t place) { return place >= 0; };
  const auto begin = change.places.begin(), end = change.places.end();
  const auto middle = begin + std::min(from, static_cast<std::int32_t>(end - begin));
  if (const auto next = std::find_if(middle, end, stays); next != end) return *next;
  const auto last = std::find_if(std::reverse_iterator(middle), std::reverse_iterator(begin), stays);
  return last.base() != begin ? *last : std::min(from, list.count() - 1);
}

void ThumbnailViewModel::Inside::follow(const ListChange& change) {
  std::vector<FileKey> removed = change.gone;
  // A file may have got another name first, and then another version.
  for (const auto& [before, after] : change.renamed) {
    removed.push_back(before);
    large.rename(before, after);
  }
  for (const auto& [before, after] : change.renewed) {
    removed.push_back(before);
    large.renew(before, after);
  }
  loader.remove(removed);
  if (!change.any) return;

  const std::int64_t scrollBefore = scroll;
  const bool hadSelection = selection.count() > 0, focusShown = visible().contains(focus);
  const std::int32_t focusBefore = focus;
  const bool focusGone = focus >= 0 && change.places[static_cast<std::size_t>(focus)] < 0;
  selection.remap(change.places, list.count());
  followGesture(change);
  focus = focusAfter(change);
  // After a command has deleted or moved the selected files, the user goes on with the next one.
  if (hadSelection && selection.count() == 0 && focus >= 0) selection.only(focus);
  pictures.recount(list);
  if (phase == Phase::kLoading) {
    loadedCount = static_cast<std::int32_t>(std::count_if(list.items().begin(), list.items().end(),
                                                          [](const auto& item) { return item->counted; }));
  }
  if (recalculating) {
    remaining = static_cast<std::int32_t>(std::count_if(list.items().begin(), list.items().end(),
                                                        [](const auto& item) { return item->remaking; }));
  }
  arrange();
  returnToAnchor();
  if (focusGone && focusShown) setScroll(arrangement.scrollToShow(focus, scroll));
  // The anchor itself may be gone.
  const auto kept = anchor.lock();
  if (!kept || kept->place < 0) anchorView();
  if (gesture == Gesture::kBand) {
    // It stays where the user began it.
    band.shift(scroll - scrollBefore);
    updateBand(pointer);
  }
  selectShown();
  invalidateAll();
  view.scrollChanged();
  view.itemsChanged();
  view.selectionChanged();
  if (focusGone || focus != focusBefore) view.focusItemChanged();
}

void ThumbnailViewModel::Inside::requestFresh(const ListChange& change) {
  if (mayLoad()) {
    std::vector<LoadRequest> requests;
    for (const auto& item : change.fresh) {
      if (item->place < 0) continue;
      // What comes after the load raises no event.
      if (phase == Phase::kDone) item->counted = true;
      if (item->needs(side)) requests.push_back(requestFor(*item, side, false));
    }
    loader.add(std::move(requests));
  }
  updateWanted();
}

// ---------------------------------------------------------------------------------------------- results

void ThumbnailViewModel::Inside::loaded(std::vector<LoadResult> results) {
  for (LoadResult& result : results) {
    const auto item = list.find(result.key);
    if (!item || item->place < 0) continue;
    if (result.canceled) {
      if (mayLoad() && result.side == side && item->needs(side)) {
        loader.add({requestFor(*item, side, false)});
      }
      continue;
    }
    if (result.stale) {
      readAgain(*item, result);
      continue;
    }
    accept(*item, result);
    invalidateItem(*item);
    if (!report(item)) return;
  }
  pictures.trim(list, kept());
  updateWanted();
  finishIfComplete();
}

void ThumbnailViewModel::Inside::readAgain(Item& item, LoadResult& result) {
  ListChange change;
  if (result.found.name.empty()) {
    Changes gone;
    gone.gone.push_back(item.file.name);
    change = list.apply(std::move(gone));
    follow(change);
    return;
  }
  list.renew(item, std::move(result.found), change);
  follow(change);
  if (++item.staleReads < kMostStaleReads) {
    requestFresh(change);
    return;
  }
  item.staleReads = 0;
  LoadResult busy;
  busy.broken = true;
  busy.mayPass = true;
  busy.notice = "The file is being changed.";
  accept(item, busy);
  invalidateItem(item);
  // Counted without an event: nothing was loaded.
  if (!std::exchange(item.counted, true) && phase == Phase::kLoading) ++loadedCount;
}

void ThumbnailViewModel::Inside::accept(Item& item, LoadResult& result) {
  if (result.broken && result.side > side) {
    // For the large picture alone the memory may not suffice: the thumbnail is shown instead.
    item.notice = std::move(result.notice);
    large.put(item.key, {item.bitmap, item.bitmapVersion});
    return;
  }
  if (result.pictureSize != Size{}) item.pictureSize = result.pictureSize;
  item.notice = std::move(result.notice);
  if (result.broken) {
    item.state = ItemState::kBroken;
    item.madeSide = Item::kFinal;
    item.mayPass = result.mayPass;
    if (item.notice.empty()) item.notice = "The picture cannot be read.";
    pictures.put(item, {});
    loader.remove({item.key});
    return;
  }
  item.state = ItemState::kShown;
  item.staleReads = 0;
  if (large.wants(item.key, result.side)) large.put(item.key, {result.bitmap, ++lastVersion});
  // A large picture is kept as a thumbnail only where it is one.
  if (result.side > side) return;
  item.madeSide = std::max(item.madeSide, result.side);
  if (!result.bitmap.empty() && result.side > item.bitmapSide) {
    pictures.put(item, std::move(result.bitmap));
    item.bitmapSide = result.side;
    item.bitmapVersion = ++lastVersion;
  }
}

bool ThumbnailViewModel::Inside::report(const std::shared_ptr<Item>& item) {
  if (item->needs(side)) return true;
  if (!item->counted && phase == Phase::kLoading) {
    item->counted = true;
    ++loadedCount;
    lastPercent = std::max(lastPercent, percent());
    bool cancel = false;
    if (!raise(view.ThumbnailLoaded, *item, lastPercent, cancel)) return false;
    if (cancel) {
      cancelLoad();
      return false;
    }
  }
  return !recalculating || reportRecalculated(item);
}

// ---------------------------------------------------------------------------------------------- wishes

void ThumbnailViewModel::Inside::wantLarge(std::vector<LoadRequest>& first) {
  const std::int32_t item = largeItem();
  const std::int32_t largeSide = LargePictures::sideFor(arrangement.large());
  if (item < 0 || largeSide == 0) {
    large.clear();
    return;
  }
  // Neighbors of very large pictures would take too much memory.
  constexpr std::int32_t kMostForNeighbors = 2048;
  std::vector<FileKey> keys;
  for (const std::int32_t place : {item, item + 1, item - 1}) {
    if (place != item && largeSide > kMostForNeighbors) break;
    if (list.has(place) && !list.at(place).broken()) keys.push_back(list.at(place).key);
  }
  large.want(std::move(keys), largeSide);
  for (const FileKey key : large.missing()) {
    if (const auto wanted = list.find(key)) first.push_back(requestFor(*wanted, largeSide, true));
  }
}

void ThumbnailViewModel::Inside::updateWanted() {
  if (!mayLoad()) {
    loader.want({}, {});
    return;
  }
  std::vector<LoadRequest> first;
  std::vector<LoadRequest> later;
  wantLarge(first);
  const auto add = [this](std::vector<LoadRequest>& requests, std::int32_t place) {
    if (!list.has(place)) return;
    const Item& item = list.at(place);
    if (item.lacksBitmap(side)) requests.push_back(requestFor(item, side, true));
  };
  const ItemRange shown = kept();
  const std::int32_t page = shown.last - shown.first;
  for (std::int32_t place = shown.first; place < shown.last; ++place) add(first, place);
  for (std::int32_t place = shown.last; place < shown.last + page; ++place) add(first, place);
  for (std::int32_t place = shown.first - 1; place >= shown.first - page; --place) add(first, place);

  // As many as fit into the memory, nearest first.
  const std::size_t bytesEach =
      std::size_t{4} * static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
  const auto fitting = static_cast<std::int32_t>(pictures.limit() / 4 * 3 / bytesEach);
  for (std::int32_t distance = page; 2 * distance + page < fitting; ++distance) {
    add(later, shown.last + distance);
    add(later, shown.first - 1 - distance);
  }
  loader.want(std::move(first), std::move(later));
}

}  // namespace kestrel::thumbnails
