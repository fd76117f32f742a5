#include "ItemList.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/NaturalOrder.h"
#include "platform/os/Paths.h"

namespace kestrel::thumbnails {
namespace {

bool nameLess(const std::filesystem::path& left, const std::filesystem::path& right) {
  return NaturalLess(os::textOf(left), os::textOf(right));
}

}  // namespace

std::string Item::Filename() const { return *folder_ + os::textOf(file.name); }

void ItemList::reset(const std::string& folder) {
  for (const auto& item : items_) item->place = -1;
  items_.clear();
  byKey_.clear();
  folder_ = std::make_shared<const std::string>(folder);
}

std::shared_ptr<Item> ItemList::find(FileKey key) const {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : found->second.lock();
}

std::shared_ptr<Item> ItemList::make(FoundFile found, ListChange& change) {
  auto item = std::make_shared<Item>(folder_, std::move(found));
  item->key = ++lastKey_;
  byKey_.emplace(item->key, item);
  change.fresh.push_back(item);
  return item;
}

std::pair<FileKey, FileKey> ItemList::rekey(Item& item, ListChange& change) {
  const auto node = byKey_.find(item.key);
  const auto shared = node->second.lock();
  byKey_.erase(node);
  const FileKey before = std::exchange(item.key, ++lastKey_);
  byKey_.emplace(item.key, shared);
  change.fresh.push_back(shared);
  return {before, item.key};
}

void ItemList::renew(Item& item, FoundFile found, ListChange& change) {
  change.renewed.push_back(rekey(item, change));
  item.file = std::move(found);
  item.bitmapSide = 0;
  item.madeSide = 0;
  item.mayPass = false;
}

void ItemList::rename(Item& item, FoundFile found, ListChange& change) {
  change.renamed.push_back(rekey(item, change));
  change.any = true;
  item.file.name = std::move(found.name);
  // The renaming itself sets the time `changed`.
  if (item.file.id == found.id) item.file.changed = found.changed;
}

void ItemList::update(Item& item, FoundFile found, ListChange& change) {
  // A permission may have come back, or the file's writer may have finished.
  if (sameVersion(item.file, found) && !item.mayPass) return;
  item.staleReads = 0;
  renew(item, std::move(found), change);
}

std::int32_t ItemList::placeOf(const std::filesystem::path& name) const {
  const auto found = std::lower_bound(
      items_.begin(), items_.end(), name,
      [](const auto& item, const auto& wanted) { return nameLess(item->file.name, wanted); });
  return found != items_.end() && (*found)->file.name == name ? (*found)->place : -1;
}

void ItemList::become(Items items, ListChange& change) {
  change.places.assign(items_.size(), -1);
  for (std::size_t place = 0; place < items.size(); ++place) {
    const std::int32_t before = items[place]->place;
    if (before >= 0) change.places[static_cast<std::size_t>(before)] = static_cast<std::int32_t>(place);
    if (before != static_cast<std::int32_t>(place)) change.any = true;
  }
  for (std::size_t before = 0; before < items_.size(); ++before) {
    if (change.places[before] >= 0) continue;
    change.any = true;
    change.gone.push_back(items_[before]->key);
    byKey_.erase(items_[before]->key);
    items_[before]->place = -1;
  }
  items_ = std::move(items);
  for (std::size_t place = 0; place < items_.size(); ++place) {
    items_[place]->place = static_cast<std::int32_t>(place);
  }
}

ListChange ItemList::replace(std::vector<FoundFile> files) {
  ListChange change;
  std::unordered_map<std::filesystem::path::string_type, std::shared_ptr<Item>> before;
  for (const auto& item : items_) before.emplace(item->file.name.native(), item);
  Items items;
  items.reserve(files.size());
  for (FoundFile& file : files) {
    const auto known = before.find(file.name.native());
    if (known == before.end()) {
      items.push_back(make(std::move(file), change));
    } else {
      update(*known->second, std::move(file), change);
      items.push_back(known->second);
    }
  }
  become(std::move(items), change);
  return change;
}

ListChange ItemList::apply(FolderLoader::Listener::Changes changes) {
  ListChange change;
  std::vector<bool> taken(items_.size(), false);
  // Items to insert: new ones, and renamed ones under their new names.
  std::map<std::filesystem::path, std::shared_ptr<Item>> inserted;
  const auto take = [&](const std::filesystem::path& name) -> std::shared_ptr<Item> {
    if (const auto known = inserted.find(name); known != inserted.end()) {
      auto item = known->second;
      inserted.erase(known);
      return item;
    }
    const std::int32_t place = placeOf(name);
    if (place < 0 || taken[static_cast<std::size_t>(place)]) return nullptr;
    taken[static_cast<std::size_t>(place)] = true;
    return items_[static_cast<std::size_t>(place)];
  };

  std::vector<std::pair<std::shared_ptr<Item>, FoundFile>> renamings;
  for (auto& renamed : changes.renamed) {
    // Two names of one file stay as they are.
    if (renamed.from == renamed.to.name) continue;
    const auto item = take(renamed.from);
    take(renamed.to.name);
    if (!item) {
      changes.changed.push_back(std::move(renamed.to));
      continue;
    }
    inserted.emplace(renamed.to.name, item);
    renamings.emplace_back(item, std::move(renamed.to));
  }
  // The list is searched by its order, so names change when the searching is over.
  std::vector<std::pair<std::shared_ptr<Item>, FoundFile>> updates;
  for (FoundFile& file : changes.changed) {
    const auto known = inserted.find(file.name);
    const std::int32_t place = placeOf(file.name);
    if (known != inserted.end()) {
      updates.emplace_back(known->second, std::move(file));
    } else if (place >= 0 && !taken[static_cast<std::size_t>(place)]) {
      updates.emplace_back(items_[static_cast<std::size_t>(place)], std::move(file));
    } else {
      const auto name = file.name;
      inserted.emplace(name, make(std::move(file), change));
    }
  }
  for (const auto& name : changes.gone) take(name);
  for (auto& [item, file] : renamings) {
    const auto last = inserted.find(file.name);
    if (last != inserted.end() && last->second == item) rename(*item, std::move(file), change);
  }
  for (auto& [item, file] : updates) update(*item, std::move(file), change);

  Items added;
  for (const auto& [name, item] : inserted) added.push_back(item);
  const auto inOrder = [](const auto& left, const auto& right) {
    return nameLess(left->file.name, right->file.name);
  };
  std::sort(added.begin(), added.end(), inOrder);
  Items kept;
  kept.reserve(items_.size());
  for (const auto& item : items_) {
    if (!taken[static_cast<std::size_t>(item->place)]) kept.push_back(item);
  }
  Items items;
  items.reserve(kept.size() + added.size());
  // A search for each added item costs less than comparisons along the whole list.
  auto next = kept.begin();
  for (const auto& item : added) {
    const auto place = std::upper_bound(next, kept.end(), item, inOrder);
    items.insert(items.end(), next, place);
    items.push_back(item);
    next = place;
  }
  items.insert(items.end(), next, kept.end());
  become(std::move(items), change);
  return change;
}

}  // namespace kestrel::thumbnails
