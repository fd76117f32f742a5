#include "PictureMemory.h"

#include <iterator>
#include <utility>

namespace kestrel::thumbnails {

void PictureMemory::put(Item& item, engine::Bitmap bitmap) {
  bytes_ -= item.bitmap.byteSize();
  item.bitmap = std::move(bitmap);
  bytes_ += item.bitmap.byteSize();
  if (item.bitmap.empty()) {
    places_.erase(item.place);
    item.bitmapSide = 0;
  } else {
    places_.insert(item.place);
  }
}

void PictureMemory::trim(const ItemList& list, const ItemRange& visible) {
  while (bytes_ > limit_ && !places_.empty()) {
    const std::int32_t first = *places_.begin();
    const std::int32_t last = *std::prev(places_.end());
    const std::int32_t before = visible.first - first;
    const std::int32_t after = last - (visible.last - 1);
    if (before <= 0 && after <= 0) return;
    put(list.at(before > after ? first : last), {});
  }
}

void PictureMemory::recount(const ItemList& list) {
  places_.clear();
  bytes_ = 0;
  for (const auto& item : list.items()) {
    if (item->bitmap.empty()) continue;
    places_.insert(item->place);
    bytes_ += item->bitmap.byteSize();
  }
}

}  // namespace kestrel::thumbnails
