#include "LargePictures.h"

#include <algorithm>
#include <utility>

#include "ThumbnailStore.h"

namespace kestrel::thumbnails {

std::int32_t LargePictures::sideFor(const Rectangle& box) {
  const std::int32_t longest = std::max(box.Width, box.Height);
  if (box.Width < 1 || box.Height < 1) return 0;
  std::int32_t side = kStoredSides[0];
  while (side < longest && side < engine::Bitmap::kMaxSide / 2) side *= 2;
  return side;
}

void LargePictures::want(std::vector<FileKey> keys, std::int32_t side) {
  const bool sameSide = side == side_;
  std::vector<Entry> entries;
  for (const FileKey key : keys) {
    Entry entry{key, {}, false};
    if (Entry* const known = entryOf(key)) {
      entry = std::move(*known);
      // A picture of another size is shown, scaled, until the new one is loaded.
      entry.current = entry.current && sameSide;
    }
    entries.push_back(std::move(entry));
  }
  entries_ = std::move(entries);
  side_ = side;
}

LargePictures::Entry* LargePictures::entryOf(FileKey key) {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [key](const Entry& entry) { return entry.key == key; });
  return found == entries_.end() ? nullptr : &*found;
}

bool LargePictures::wants(FileKey key, std::int32_t side) const {
  return side == side_ && std::any_of(entries_.begin(), entries_.end(),
                                      [key](const Entry& entry) { return entry.key == key; });
}

std::vector<FileKey> LargePictures::missing() const {
  std::vector<FileKey> keys;
  for (const Entry& entry : entries_) {
    if (!entry.current) keys.push_back(entry.key);
  }
  return keys;
}

void LargePictures::put(FileKey key, Picture picture) {
  if (Entry* const entry = entryOf(key)) {
    entry->picture = std::move(picture);
    entry->current = true;
  }
}

const LargePictures::Picture* LargePictures::find(FileKey key) const {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [key](const Entry& entry) { return entry.key == key; });
  return found == entries_.end() || found->picture.bitmap.empty() ? nullptr : &found->picture;
}

void LargePictures::renew(FileKey from, FileKey to) {
  if (Entry* const entry = entryOf(from)) {
    entry->key = to;
    entry->current = false;
  }
}

void LargePictures::rename(FileKey from, FileKey to) {
  if (Entry* const entry = entryOf(from)) entry->key = to;
}

void LargePictures::clear() {
  entries_.clear();
  side_ = 0;
}

}  // namespace kestrel::thumbnails
