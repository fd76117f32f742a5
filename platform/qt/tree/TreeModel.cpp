#include "TreeModel.h"

#include <QLocale>
#include <algorithm>
#include <iterator>

namespace kestrel::qt {
namespace {

/// The locale "C" orders by code points, in which Z is before a.
QLocale localeOfTexts() {
  const QLocale system;
  return system.language() == QLocale::C ? QLocale(QLocale::English) : system;
}

}  // namespace

TreeModel::TreeModel(TreeItemOwner& owner, const TreeImages& images)
    : owner_(owner),
      images_(images),
      collator_(localeOfTexts()),
      root_(std::make_unique<TreeItem>(owner, "", "", "", "")) {
  collator_.setNumericMode(true);
  collator_.setCaseSensitivity(Qt::CaseInsensitive);
}

TreeModel::~TreeModel() {
  for (const auto& item : items_) item->detach();
}

// -- The nodes --------------------------------------------------------------------------------------------

TreeItem& TreeModel::add(TreeItem* relative, std::int32_t relationship, const std::string& key,
                         const std::string& text, const std::string& image,
                         const std::string& selectedImage) {
  const bool isChild = relative && relationship == kTreeChild;
  TreeItem& parent = isChild ? *relative : relative ? *relative->place().parent : *root_;
  items_.push_back(std::make_shared<TreeItem>(owner_, key, text, image, selectedImage));
  TreeItem& item = *items_.back();
  item.place().parent = &parent;
  if (!key.empty()) byKey_.emplace(key, &item);

  const bool isLast = isChild || relationship == kTreeLast || !relative;
  if (isLast && relationship != kTreeFirst) {
    parent.place().waiting.push_back(&item);
    withWaiting_.insert(&parent);
    if (holds_ == 0) showWaiting();
    return item;
  }
  showWaiting();
  std::size_t at = 0;
  if (relative && relationship == kTreePrevious) at = static_cast<std::size_t>(relative->place().row);
  if (relative && relationship == kTreeNext) at = static_cast<std::size_t>(relative->place().row) + 1;
  insert(parent, at, item);
  return item;
}

void TreeModel::insert(TreeItem& parent, std::size_t at, TreeItem& item) {
  std::vector<TreeItem*>& row = parent.place().shown;
  if (parent.sorted()) {
    const auto place =
        std::upper_bound(row.begin(), row.end(), &item,
                         [this](TreeItem* one, TreeItem* other) { return isBefore(*one, *other); });
    at = static_cast<std::size_t>(place - row.begin());
  }
  beginInsertRows(indexOf(parent), static_cast<int>(at), static_cast<int>(at));
  row.insert(row.begin() + static_cast<std::ptrdiff_t>(at), &item);
  renumber(parent, at);
  endInsertRows();
}

void TreeModel::clear() {
  beginResetModel();
  withWaiting_.clear();
  byKey_.clear();
  root_->place().shown.clear();
  root_->place().waiting.clear();
  for (const auto& item : items_) item->detach();
  items_.clear();
  endResetModel();
}

void TreeModel::remove(const std::vector<TreeItem*>& items) {
  if (items.empty()) return;
  showWaiting();
  for (TreeItem* const item : items) {
    TreeItem& parent = *item->place().parent;
    const int row = item->place().row;
    beginRemoveRows(indexOf(parent), row, row);
    parent.place().shown.erase(parent.place().shown.begin() + row);
    renumber(parent, static_cast<std::size_t>(row));
    forget(*item);
    endRemoveRows();
  }
  for (const auto& item : items_) {
    if (item->place().removed) item->detach();
  }
  std::erase_if(items_, [](const std::shared_ptr<TreeItem>& item) { return item->isDetached(); });
}

/// Takes the item and those below it out of the index of keys.
void TreeModel::forget(TreeItem& item) {
  std::vector<TreeItem*> left{&item};
  while (!left.empty()) {
    TreeItem* const each = left.back();
    left.pop_back();
    each->place().removed = true;
    byKey_.erase(each->Key());
    left.insert(left.end(), each->place().shown.begin(), each->place().shown.end());
  }
}

TreeItem* TreeModel::find(const std::string& key) const {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : found->second;
}

void TreeModel::hold(bool value) {
  holds_ = std::max(0, holds_ + (value ? 1 : -1));
  if (holds_ == 0) showWaiting();
}

void TreeModel::showWaiting() {
  while (!withWaiting_.empty()) {
    TreeItem* const parent = *withWaiting_.begin();
    withWaiting_.erase(withWaiting_.begin());
    showWaiting(*parent);
  }
}

void TreeModel::showWaiting(TreeItem& parent) {
  TreeItem::Place& place = parent.place();
  if (place.waiting.empty()) return;
  if (parent.sorted() && place.waiting.size() == 1) {
    TreeItem* const single = place.waiting.front();
    place.waiting.clear();
    return insert(parent, 0, *single);
  }
  const std::size_t first = place.shown.size();
  beginInsertRows(indexOf(parent), static_cast<int>(first),
                  static_cast<int>(first + place.waiting.size()) - 1);
  place.shown.insert(place.shown.end(), place.waiting.begin(), place.waiting.end());
  place.waiting.clear();
  renumber(parent, first);
  endInsertRows();
  sortChildren(parent);
}

void TreeModel::renumber(TreeItem& parent, std::size_t from) {
  const std::vector<TreeItem*>& row = parent.place().shown;
  for (std::size_t i = from; i < row.size(); ++i) row[i]->place().row = static_cast<int>(i);
}

// -- The order --------------------------------------------------------------------------------------------

const QCollatorSortKey& TreeModel::sortKeyOf(TreeItem& item) const {
  std::optional<QCollatorSortKey>& key = item.place().sortKey;
  if (!key) key = collator_.sortKey(item.label());
  return *key;
}

bool TreeModel::isBefore(TreeItem& one, TreeItem& other) const {
  const int order = sortKeyOf(one).compare(sortKeyOf(other));
  // Texts that the locale holds equal keep one order.
  return order < 0 || (order == 0 && one.Text() < other.Text());
}

void TreeModel::sortChildren(TreeItem& item) {
  std::vector<TreeItem*>& row = item.place().shown;
  const auto before = [this](TreeItem* one, TreeItem* other) { return isBefore(*one, *other); };
  if (!item.sorted() || std::is_sorted(row.begin(), row.end(), before)) return;
  const QList<QPersistentModelIndex> parents = {indexOf(item)};
  Q_EMIT layoutAboutToBeChanged(parents, QAbstractItemModel::VerticalSortHint);
  std::stable_sort(row.begin(), row.end(), before);
  renumber(item, 0);
  const QModelIndexList old = persistentIndexList();
  QModelIndexList renewed;
  renewed.reserve(old.size());
  for (const QModelIndex& index : old) renewed.append(indexOf(*itemOf(index)));
  changePersistentIndexList(old, renewed);
  Q_EMIT layoutChanged(parents, QAbstractItemModel::VerticalSortHint);
}

// -- The looks --------------------------------------------------------------------------------------------

void TreeModel::announceLooks(TreeItem& item) {
  const std::vector<TreeItem*>& row = item.place().parent->place().shown;
  const auto place = static_cast<std::size_t>(item.place().row);
  if (place >= row.size() || row[place] != &item) return;  // waits
  const QModelIndex index = indexOf(item);
  Q_EMIT dataChanged(index, index);
}

void TreeModel::announceAllLooks() {
  if (items_.empty()) return;
  Q_EMIT layoutAboutToBeChanged();
  Q_EMIT layoutChanged();
}

void TreeModel::setCheckboxes(bool value) {
  checkboxes_ = value;
  announceAllLooks();
}

void TreeModel::setPictures(bool value) {
  pictures_ = value;
  announceAllLooks();
}

// -- The toolkit's model ----------------------------------------------------------------------------------

QModelIndex TreeModel::indexOf(const TreeItem& item) const {
  if (&item == root_.get()) return {};
  return createIndex(item.place().row, 0, &item);
}

TreeItem* TreeModel::itemOf(const QModelIndex& index) {
  return index.isValid() ? static_cast<TreeItem*>(index.internalPointer()) : nullptr;
}

TreeItem& TreeModel::parentOrRoot(const QModelIndex& index) const {
  TreeItem* const item = itemOf(index);
  return item ? *item : *root_;
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  const std::vector<TreeItem*>& children = parentOrRoot(parent).place().shown;
  if (column != 0 || row < 0 || static_cast<std::size_t>(row) >= children.size()) return {};
  return createIndex(row, 0, children[static_cast<std::size_t>(row)]);
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  const TreeItem* const item = itemOf(child);
  return item ? indexOf(*item->place().parent) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(parentOrRoot(parent).place().shown.size());
}

int TreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  const TreeItem* const item = itemOf(index);
  if (!item) return {};
  switch (role) {
    case Qt::DisplayRole:
      return item->label();
    case Qt::DecorationRole: {
      const QIcon& icon = images_.icon(item->shownImage());
      return pictures_ && !icon.isNull() ? QVariant(icon) : QVariant();
    }
    case Qt::CheckStateRole:
      return checkboxes_ ? QVariant(item->Checked() ? Qt::Checked : Qt::Unchecked) : QVariant();
    default:
      return {};
  }
}

QVariant TreeModel::headerData(int /*section*/, Qt::Orientation /*orientation*/, int /*role*/) const {
  return {};
}

bool TreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  TreeItem* const item = itemOf(index);
  if (!item || role != Qt::CheckStateRole || !checkboxes_) return false;
  item->Checked(value.toInt() == Qt::Checked);
  Q_EMIT checkToggled(item);
  return true;
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = QAbstractItemModel::flags(index);
  if (checkboxes_) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

}  // namespace kestrel::qt
