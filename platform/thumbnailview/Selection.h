#pragma once

#include <cstdint>
#include <vector>

namespace kestrel::thumbnails {

/// Which items are selected, with the anchor of ranges. Items are counted from 0.
class Selection {
 public:
  /// Empties the selection of a list with this many items.
  void reset(std::int32_t count);
  /// Follows a change of the list: `places` has the new place of each old item, -1 for one that is gone.
  void remap(const std::vector<std::int32_t>& places, std::int32_t count);

  bool contains(std::int32_t item) const;
  std::int32_t count() const { return selected_; }
  /// Whether both select the same items of the same list.
  bool sameItems(const Selection& other) const { return flags_ == other.flags_; }
  /// The selected items in ascending order.
  const std::vector<std::int32_t>& items() const;

  /// Where a range begins; -1 if no item was selected yet.
  std::int32_t anchor() const { return anchor_; }
  void anchor(std::int32_t item) { anchor_ = item; }

  void clear();
  void all();
  void set(std::int32_t item, bool selected);
  /// Selects this item alone; it becomes the anchor.
  void only(std::int32_t item);
  /// Changes the state of the item, which becomes the anchor.
  void toggle(std::int32_t item);
  /// Selects from the anchor to the item; `keep` leaves the other items as they are. Without an anchor the
  /// item becomes it.
  void extend(std::int32_t item, bool keep);

 private:
  bool isItem(std::int32_t item) const;

  std::vector<std::uint8_t> flags_;
  std::int32_t selected_ = 0;
  std::int32_t anchor_ = -1;
  mutable std::vector<std::int32_t> items_;
  mutable bool listed_ = true;  ///< `items_` is up to date
};

}  // namespace kestrel::thumbnails
