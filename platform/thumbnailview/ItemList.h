#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "FolderLoader.h"
#include "Items.h"
#include "imaging/contract/ThumbnailView.h"

namespace kestrel::thumbnails {

/// A file of the view with what is known of its picture.
class Item final : public kestrel::Thumbnail {
 public:
  /// The folder with a separator at its end, as it precedes names in `Filename`.
  Item(std::shared_ptr<const std::string> folder, FoundFile found)
      : file(std::move(found)), folder_(std::move(folder)) {}

  std::string Filename() const override;
  std::int32_t Index() const override { return place + 1; }

  bool broken() const { return state == ItemState::kBroken; }
  /// Whether the thumbnail of this version of the file has yet to be made at this size.
  bool needs(std::int32_t side) const { return madeSide < side; }
  /// Whether a bitmap of this version at this size can be had, and is not there.
  bool lacksBitmap(std::int32_t side) const { return madeSide != kFinal && bitmapSide < side; }

  /// `madeSide` of a version of which no more can be made.
  static constexpr std::int32_t kFinal = std::numeric_limits<std::int32_t>::max();

  FoundFile file;
  FileKey key = 0;          ///< of this version of the file
  std::int32_t place = -1;  ///< in the list, from 0; -1 if it is no longer in it

  ItemState state = ItemState::kWaiting;
  std::string notice;
  Size pictureSize;
  /// May be of an earlier version of the file until the new one is loaded.
  engine::Bitmap bitmap;
  std::uint64_t bitmapVersion = 0;
  std::int32_t bitmapSide = 0;  ///< the size asked for when the bitmap was made; 0 for an earlier version
  std::int32_t madeSide = 0;    ///< the size at which the thumbnail was made, with or without a bitmap here
  bool counted = false;         ///< reported as loaded in this load
  bool remaking = false;        ///< is to be reported as recalculated
  bool mayPass = false;         ///< broken for a reason that is none of the file's content
  std::int32_t staleReads = 0;  ///< how often in a row the file had changed while it was read

 private:
  std::shared_ptr<const std::string> folder_;
};

/// How a list has changed.
struct ListChange {
  /// The new place of each item by its old one, -1 for one that is gone.
  std::vector<std::int32_t> places;
  /// Items that are new, or have another version or name, in no order.
  std::vector<std::shared_ptr<Item>> fresh;
  /// Keys of the items that are gone.
  std::vector<FileKey> gone;
  /// The old and the new key of each file that has another version.
  std::vector<std::pair<FileKey, FileKey>> renewed;
  /// The same of each file that has another name.
  std::vector<std::pair<FileKey, FileKey>> renamed;
  bool any = false;  ///< whether items came, went, moved or got other names
};

/// The items of a folder in natural order of their names.
class ItemList {
 public:
  using Items = std::vector<std::shared_ptr<Item>>;

  /// Empties the list. `folder` as in `Item`.
  void reset(const std::string& folder);

  const Items& items() const { return items_; }
  std::int32_t count() const { return static_cast<std::int32_t>(items_.size()); }
  bool has(std::int32_t place) const { return place >= 0 && place < count(); }
  Item& at(std::int32_t place) const { return *items_[static_cast<std::size_t>(place)]; }
  /// Null if no item has this version.
  std::shared_ptr<Item> find(FileKey key) const;

  /// Makes the list equal to a whole listing in natural order. Files that are unchanged keep their items.
  ListChange replace(std::vector<FoundFile> files);
  /// Applies changes of single files.
  ListChange apply(FolderLoader::Listener::Changes changes);
  /// The file has another version; its item keeps the picture until the new one is loaded.
  void renew(Item& item, FoundFile found, ListChange& change);

 private:
  std::shared_ptr<Item> make(FoundFile found, ListChange& change);
  /// Gives an item another key, so that nothing that was asked for with the old one can arrive.
  std::pair<FileKey, FileKey> rekey(Item& item, ListChange& change);
  /// The item of a file that got another name: what is shown of it stays, what is still to be loaded must be
  /// asked for by the new name.
  void rename(Item& item, FoundFile found, ListChange& change);
  /// The place of a name, -1 if there is none.
  std::int32_t placeOf(const std::filesystem::path& name) const;
  /// Renews or confirms the item of a file that is in the list.
  void update(Item& item, FoundFile found, ListChange& change);
  /// Puts another list in place of this one. `change` gets the places.
  void become(Items items, ListChange& change);

  std::shared_ptr<const std::string> folder_ = std::make_shared<const std::string>();
  Items items_;
  std::unordered_map<FileKey, std::weak_ptr<Item>> byKey_;
  FileKey lastKey_ = 0;
};

}  // namespace kestrel::thumbnails
