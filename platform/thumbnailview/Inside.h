#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "FolderLoader.h"
#include "ItemList.h"
#include "LargePictures.h"
#include "PictureMemory.h"
#include "RubberBand.h"
#include "Selection.h"
#include "ThumbnailViewModel.h"
#include "TypeAhead.h"

namespace kestrel::thumbnails {

/// The state of a view and what works on it. A handler of an event may destroy it: after `raise` returned
/// false no member may be used any more.
struct ThumbnailViewModel::Inside final : FolderLoader::Listener {
  Inside(ThumbnailViewModel& owner, Services given);

  // Events.

  /// Raises an event. False if its handlers have destroyed the view, or have begun or ended a load.
  template <typename... Parameters, typename... Arguments>
  [[nodiscard]] bool raise(Event<Parameters...>& event, Arguments&&... arguments) {
    const std::weak_ptr<const int> alive = life;
    const std::uint64_t before = load;
    event(std::forward<Arguments>(arguments)...);
    return !alive.expired() && load == before;
  }

  // Loading: Inside.Loading.cpp.

  /// Where a load is. After a load that was canceled nothing is loaded until the next one.
  enum class Phase { kNone, kSearching, kLoading, kDone, kCanceled };

  void startLoad();
  /// Ends a load under way, as canceled. False if a handler destroyed the view or began another load.
  bool endLoad();
  void cancelLoad();
  void emptyList();
  void finishIfComplete();
  bool isLoading() const { return phase == Phase::kSearching || phase == Phase::kLoading; }
  bool mayLoad() const { return phase == Phase::kLoading || phase == Phase::kDone; }

  void listed(std::vector<FoundFile> files, const std::string& problem) override;
  void loaded(std::vector<LoadResult> results) override;
  void changed(Changes changes) override;

  /// Sets why the folder cannot be read, which is shown; empty if it can.
  void setProblem(const std::string& sentence);
  void follow(const ListChange& change);
  void requestFresh(const ListChange& change);
  void readAgain(Item& item, LoadResult& result);
  void accept(Item& item, LoadResult& result);
  /// Reports a result to the handlers; false as `raise`.
  bool report(const std::shared_ptr<Item>& item);
  std::int32_t percent() const;

  // Recalculation: Inside.Recalculation.cpp.
  void setSide(std::int32_t value);
  void considerRecalculation();
  void startRecalculation();
  bool reportRecalculated(const std::shared_ptr<Item>& item);
  /// Raises `RecalculatingThumbnailsComplete` if a recalculation is under way; false as `raise`.
  bool endRecalculation();
  bool canImprove(const Item& item) const;

  // What is to be loaded now.
  LoadRequest requestFor(const Item& item, std::int32_t atSide, bool bitmap) const;
  void updateWanted();
  void wantLarge(std::vector<LoadRequest>& first);

  // Layout and appearance: Inside.Layout.cpp.
  /// What is visible, to repaint what a change has altered.
  struct Appearance {
    std::int64_t scroll = 0;
    std::int64_t range = 0;
    ItemRange visible;
    Selection selection;
    std::int32_t focus = -1;
    std::int32_t large = -1;
    Rectangle band;
  };
  Appearance appearance() const;
  void showDifference(const Appearance& before);
  /// Makes a change of scroll position, selection, focus or rubber band, and repaints. Raises no events.
  template <typename Change>
  void alter(Change change) {
    const Appearance before = appearance();
    change();
    if (mode == kViewSingle) selectShown();
    if (scroll != before.scroll) anchorView();
    showDifference(before);
    updateWanted();
  }
  void arrange();
  void setScroll(std::int64_t position);
  /// Remembers the item at the edge, which stays where it is when the list or the layout changes.
  void anchorView();
  void returnToAnchor();
  void invalidateAll();
  void invalidateItem(const Item& item);
  std::int32_t largeItem() const;
  ItemRange visible() const;
  /// The items whose bitmaps are kept beyond the limit too: those visible, or the one of the large picture.
  ItemRange kept() const;
  /// Moves the focus and makes the item visible.
  void moveFocus(std::int32_t item);
  /// In the views with a large picture the picture shown is selected. In the single view it is alone, since
  /// commands must not mean files that are not visible.
  void selectShown();
  /// Where the focus item is after a change of the list: the next item if it is gone, or else the last one.
  std::int32_t focusAfter(const ListChange& change) const;
  Size paintedSize(const Item& item, const engine::Bitmap& bitmap, std::int32_t askedFor) const;

  // Input: Inside.Input.cpp.
  enum class Gesture { kNone, kItem, kBand };
  enum class OnRelease { kNothing, kSelectOnly, kToggle };
  void press(std::int32_t modifiers, Point position);
  void pressItem(std::int32_t item, std::int32_t modifiers);
  void drag(Point position);
  void updateBand(Point position);
  /// How far a position is beyond the strip along the scroll axis, negative before it.
  std::int32_t beyond(Point position) const;
  void setAutoScroll(bool on);
  void endGesture();
  /// After a change of the list: a press on an item that is gone ends, all else goes on.
  void followGesture(const ListChange& change);
  void moveTo(std::int32_t item, std::int32_t modifiers);
  bool escape();
  bool space(std::int32_t modifiers);
  bool find(std::string_view text);

  ThumbnailViewModel& view;
  Services services;
  std::shared_ptr<const int> life = std::make_shared<const int>(0);

  // Properties
  std::string folder;
  std::string emptyText;
  std::int32_t mode = kViewThumbnail;
  std::int32_t modeBefore = kViewThumbnail;  ///< where Escape leads to from the single view
  bool userMode = true;
  bool cleared = false;

  // Contents
  ItemList list;
  Selection selection;
  std::int32_t focus = -1;
  PictureMemory pictures;
  LargePictures large;
  std::uint64_t lastVersion = 0;  ///< of bitmaps
  std::string problem;

  // Loading
  Phase phase = Phase::kNone;
  std::uint64_t load = 0;  ///< increased when a load begins or ends
  std::int32_t loadedCount = 0;
  std::int32_t lastPercent = 0;
  std::int32_t side = 128;  ///< longest side of the thumbnails to make
  bool recalculating = false;
  bool starting = false;       ///< of the recalculation: it has no items yet
  std::int32_t remaining = 0;  ///< items still to be recalculated

  // Layout
  Arrangement arrangement;
  Metrics metrics;
  Size viewport;
  std::int64_t scroll = 0;
  std::weak_ptr<const Item> anchor;  ///< of the scroll position; none at the beginning
  std::int64_t anchorOffset = 0;     ///< from the scroll position to the begin of the anchor's cell

  // Input
  Gesture gesture = Gesture::kNone;
  OnRelease onRelease = OnRelease::kNothing;
  std::int32_t pressed = -1;
  Point pressedAt;
  Point pointer;
  bool autoScrolling = false;
  RubberBand band;
  TypeAhead typeAhead;

  // The contract's collections
  class AllItems final : public kestrel::Thumbnails {
   public:
    explicit AllItems(Inside& inside) : inside_(inside) {}
    std::int32_t Count() const override;
    kestrel::Thumbnail& Item(std::int32_t index) override;

   private:
    Inside& inside_;
  };
  class SelectedItems final : public kestrel::Thumbnails {
   public:
    explicit SelectedItems(Inside& inside) : inside_(inside) {}
    std::int32_t Count() const override;
    kestrel::Thumbnail& Item(std::int32_t index) override;
    kestrel::Thumbnails& All() override { return inside_.allItems; }

   private:
    Inside& inside_;
  };
  AllItems allItems{*this};
  SelectedItems selectedItems{*this};

  /// Last, so that no result arrives in a view that is half destroyed.
  FolderLoader loader;
};

}  // namespace kestrel::thumbnails
