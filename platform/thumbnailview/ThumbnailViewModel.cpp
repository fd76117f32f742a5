#include "ThumbnailViewModel.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "Inside.h"
#include "base/RuntimeError.h"
#include "base/VisibleText.h"
#include "platform/os/Paths.h"

namespace kestrel::thumbnails {
namespace {

/// The size of the store at which thumbnails of the grid are made.
std::int32_t sideFor(double scale) {
  const std::int32_t shown = gridPictureSide(scale);
  for (const std::int32_t side : kStoredSides) {
    if (side >= shown) return side;
  }
  return *std::rbegin(kStoredSides);
}

[[noreturn]] void refuseIndex(std::int32_t index) {
  throw RuntimeError(err::kSubscript, "There is no thumbnail " + std::to_string(index) + ".");
}

}  // namespace

ThumbnailViewModel::Inside::Inside(ThumbnailViewModel& owner, Services given)
    : view(owner), services(std::move(given)), pictures(services.memory), loader(services, *this) {}

std::int32_t ThumbnailViewModel::Inside::AllItems::Count() const { return inside_.list.count(); }

kestrel::Thumbnail& ThumbnailViewModel::Inside::AllItems::Item(std::int32_t index) {
  if (!inside_.list.has(index - 1)) refuseIndex(index);
  return inside_.list.at(index - 1);
}

std::int32_t ThumbnailViewModel::Inside::SelectedItems::Count() const { return inside_.selection.count(); }

kestrel::Thumbnail& ThumbnailViewModel::Inside::SelectedItems::Item(std::int32_t index) {
  if (index < 1 || index > Count()) refuseIndex(index);
  return inside_.list.at(inside_.selection.items()[static_cast<std::size_t>(index - 1)]);
}

ThumbnailViewModel::ThumbnailViewModel(Services services)
    : inside_(std::make_unique<Inside>(*this, std::move(services))) {}

ThumbnailViewModel::~ThumbnailViewModel() = default;

// ---------------------------------------------------------------------------------------------- contract

std::string ThumbnailViewModel::Folder() const { return inside_->folder; }

void ThumbnailViewModel::Folder(const std::string& value) {
  // A folder that could not be read may have come back, unnoticed.
  if (value == inside_->folder && !inside_->cleared && inside_->problem.empty()) return;
  // A handler of the ended load may change the text that `value` refers to.
  std::string folder = value;
  if (!inside_->endLoad()) return;
  inside_->folder = std::move(folder);
  inside_->cleared = false;
  inside_->emptyList();
  inside_->startLoad();
}

void ThumbnailViewModel::Clear() {
  inside_->cleared = true;
  if (!inside_->endLoad()) return;
  inside_->emptyList();
}

std::int32_t ThumbnailViewModel::View() const { return inside_->mode; }

void ThumbnailViewModel::View(std::int32_t value) {
  Inside& inside = *inside_;
  if (value < kViewThumbnail || value > kViewSingle) {
    throw RuntimeError(err::kInvalidPropertyValue, "The view must be from 0 to 2.");
  }
  if (value == inside.mode) return;
  inside.endGesture();
  if (inside.mode != kViewSingle) inside.modeBefore = inside.mode;
  inside.mode = value;
  inside.scroll = 0;
  inside.arrange();
  if (inside.focus >= 0) {
    // In the middle, so that the neighbors are visible.
    const Arrangement& arrangement = inside.arrangement;
    inside.setScroll(arrangement.begin(inside.focus) - (arrangement.page() - arrangement.pitch()) / 2);
  }
  inside.anchorView();
  inside.selectShown();
  inside.invalidateAll();
  scrollChanged();
  itemsChanged();
  selectionChanged();
  inside.updateWanted();
  static_cast<void>(inside.raise(ViewChange, value));
}

std::string ThumbnailViewModel::EmptyText() const { return inside_->emptyText; }

void ThumbnailViewModel::EmptyText(const std::string& value) {
  if (value == inside_->emptyText) return;
  inside_->emptyText = value;
  if (inside_->list.count() == 0) inside_->invalidateAll();
}

void ThumbnailViewModel::UserMode(bool value) {
  if (std::exchange(inside_->userMode, value) == value) return;
  if (value) {
    Refresh();
  } else if (inside_->endLoad()) {
    inside_->emptyList();
  }
}

void ThumbnailViewModel::Refresh() { inside_->startLoad(); }

kestrel::Thumbnails& ThumbnailViewModel::Thumbnails() { return inside_->allItems; }

kestrel::Thumbnails& ThumbnailViewModel::SelectedItems() { return inside_->selectedItems; }

// ---------------------------------------------------------------------------------------------- layout

void ThumbnailViewModel::layOut(Size viewport, const Metrics& metrics) {
  Inside& inside = *inside_;
  if (viewport == inside.viewport && metrics == inside.metrics) return;
  const ItemRange shown = inside.visible();
  const bool focusShown = shown.contains(inside.focus);
  const bool rescaled = metrics.scale != inside.metrics.scale;
  inside.endGesture();
  inside.viewport = viewport;
  inside.metrics = metrics;
  inside.arrange();
  inside.returnToAnchor();
  if (focusShown) inside.setScroll(inside.arrangement.scrollToShow(inside.focus, inside.scroll));
  if (rescaled) inside.setSide(sideFor(metrics.scale));
  inside.invalidateAll();
  scrollChanged();
  inside.updateWanted();
}

const Arrangement& ThumbnailViewModel::arrangement() const { return inside_->arrangement; }

std::int64_t ThumbnailViewModel::scroll() const { return inside_->scroll; }

void ThumbnailViewModel::scrollTo(std::int64_t position) {
  inside_->alter([&] { inside_->setScroll(position); });
}

// ---------------------------------------------------------------------------------------------- painting

ItemRange ThumbnailViewModel::visibleItems() const { return inside_->visible(); }

ItemPlace ThumbnailViewModel::placeOf(std::int32_t item) const {
  return inside_->arrangement.place(item, inside_->scroll);
}

std::int32_t ThumbnailViewModel::largeItem() const { return inside_->largeItem(); }

PaintedPicture ThumbnailViewModel::pictureOf(std::int32_t item) const {
  const Item& shown = inside_->list.at(item);
  const Rectangle box = placeOf(item).picture;
  if (shown.bitmap.empty()) return {{}, fitted(shown.pictureSize, box), 0};
  return {shown.bitmap, fitted(inside_->paintedSize(shown, shown.bitmap, shown.bitmapSide), box),
          shown.bitmapVersion};
}

PaintedPicture ThumbnailViewModel::largePicture() const {
  const std::int32_t item = inside_->largeItem();
  const Rectangle box = inside_->arrangement.large();
  if (item < 0) return {};
  const Item& shown = inside_->list.at(item);
  if (shown.broken()) return {{}, box, 0};
  if (const LargePictures::Picture* const picture = inside_->large.find(shown.key)) {
    return {picture->bitmap, fitted(inside_->paintedSize(shown, picture->bitmap, inside_->large.side()), box),
            picture->version};
  }
  if (shown.bitmap.empty()) return {{}, fitted(shown.pictureSize, box), 0};
  return {shown.bitmap, fitted(inside_->paintedSize(shown, shown.bitmap, shown.bitmapSide), box),
          shown.bitmapVersion};
}

ItemFacts ThumbnailViewModel::factsOf(std::int32_t item) const {
  const Item& shown = inside_->list.at(item);
  ItemFacts facts;
  facts.filename = shown.Filename();
  facts.label = VisibleText(os::textOf(shown.file.name));
  facts.state = shown.state;
  facts.notice = shown.notice;
  facts.pictureSize = shown.pictureSize;
  facts.bytes = shown.file.size;
  facts.modified = shown.file.modified;
  facts.selected = isSelected(item);
  facts.focused = item == inside_->focus;
  return facts;
}

std::int32_t ThumbnailViewModel::itemCount() const { return inside_->list.count(); }

bool ThumbnailViewModel::isSelected(std::int32_t item) const { return inside_->selection.contains(item); }

Rectangle ThumbnailViewModel::rubberBand() const {
  return inside_->band.rectangle(inside_->arrangement, inside_->scroll);
}

std::string ThumbnailViewModel::message() const {
  if (inside_->list.count() > 0 || searching()) return {};
  return inside_->problem.empty() ? inside_->emptyText : inside_->problem;
}

bool ThumbnailViewModel::searching() const {
  return inside_->phase == Inside::Phase::kSearching && inside_->list.count() == 0;
}

bool ThumbnailViewModel::loading() const { return inside_->isLoading() || inside_->recalculating; }

bool ThumbnailViewModel::settled() const { return !loading() && inside_->loader.idle(); }

// ---------------------------------------------------------------------------------------------- commands

std::int32_t ThumbnailViewModel::focusItem() const { return inside_->focus; }

void ThumbnailViewModel::selectOnly(std::int32_t item) {
  if (inside_->list.has(item)) inside_->moveTo(item, 0);
}

void ThumbnailViewModel::select(std::int32_t item, bool selected) {
  inside_->alter([&] { inside_->selection.set(item, selected); });
}

void ThumbnailViewModel::focus(std::int32_t item) {
  if (inside_->list.has(item)) inside_->moveTo(item, kCtrlMask);
}

std::vector<std::filesystem::path> ThumbnailViewModel::selectedPaths() const {
  std::vector<std::filesystem::path> paths;
  for (const std::int32_t item : inside_->selection.items()) paths.push_back(pathOf(item));
  return paths;
}

std::filesystem::path ThumbnailViewModel::pathOf(std::int32_t item) const {
  return folderPath() / inside_->list.at(item).file.name;
}

std::filesystem::path ThumbnailViewModel::folderPath() const {
  if (inside_->folder.empty()) return {};
  return inside_->services.pathOf ? inside_->services.pathOf(inside_->folder) : os::pathOf(inside_->folder);
}

bool ThumbnailViewModel::showsFolder() const {
  return !inside_->folder.empty() && !inside_->cleared && inside_->userMode;
}

void ThumbnailViewModel::activated() {
  if (inside_->phase == Inside::Phase::kDone && !inside_->loader.watched()) inside_->loader.list();
}

}  // namespace kestrel::thumbnails
