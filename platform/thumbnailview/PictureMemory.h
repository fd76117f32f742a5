#pragma once

#include <cstddef>
#include <cstdint>
#include <set>

#include "Arrangement.h"
#include "ItemList.h"

namespace kestrel::thumbnails {

/// Bounds the memory of the thumbnails of a list: those farthest from the visible ones are dropped first.
class PictureMemory {
 public:
  explicit PictureMemory(std::size_t limit) : limit_(limit) {}

  /// Bytes of all kept bitmaps.
  std::size_t bytes() const { return bytes_; }
  std::size_t limit() const { return limit_; }

  /// Gives the item a bitmap, which may be empty.
  void put(Item& item, engine::Bitmap bitmap);
  /// Drops bitmaps until the limit is kept. Those of visible items stay.
  void trim(const ItemList& list, const ItemRange& visible);
  /// The places of the items have changed, or the list is another one.
  void recount(const ItemList& list);

 private:
  std::size_t limit_;
  std::size_t bytes_ = 0;
  std::set<std::int32_t> places_;  ///< of the items that have a bitmap
};

}  // namespace kestrel::thumbnails
