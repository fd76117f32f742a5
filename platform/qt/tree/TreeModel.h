#pragma once

#include <QAbstractItemModel>
#include <QCollator>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "TreeImages.h"
#include "TreeItem.h"

namespace kestrel::qt {

/// The nodes of a tree as the toolkit's model. It shares them with the events under way.
class TreeModel final : public QAbstractItemModel {
  Q_OBJECT

 public:
  TreeModel(TreeItemOwner& owner, const TreeImages& images);
  ~TreeModel() override;

  TreeItem& add(TreeItem* relative, std::int32_t relationship, const std::string& key,
                const std::string& text, const std::string& image, const std::string& selectedImage);
  void clear();
  /// Removes the items with all items below them. None may be below another one.
  void remove(const std::vector<TreeItem*>& items);
  std::int32_t count() const { return static_cast<std::int32_t>(items_.size()); }
  /// Null if there is none.
  TreeItem* find(const std::string& key) const;
  /// Counted from 0 in the order of adding.
  TreeItem& at(std::size_t place) const { return *items_[place]; }

  /// While held, added items wait. Releasing shows them.
  void hold(bool value);
  /// Shows the items that wait.
  void showWaiting();

  /// Sorts the children of an item that keeps them sorted.
  void sortChildren(TreeItem& item);
  void announceLooks(TreeItem& item);
  void announceAllLooks();
  void setCheckboxes(bool value);
  bool checkboxes() const { return checkboxes_; }
  void setPictures(bool value);

  QModelIndex indexOf(const TreeItem& item) const;
  /// Null for an invalid index.
  static TreeItem* itemOf(const QModelIndex& index);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  /// Nothing: accessibility tools would read the number of the column.
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  /// The check mark.
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
  /// The user has changed the check mark.
  void checkToggled(kestrel::qt::TreeItem* item);

 private:
  TreeItem& parentOrRoot(const QModelIndex& index) const;
  void insert(TreeItem& parent, std::size_t at, TreeItem& item);
  void forget(TreeItem& item);
  void showWaiting(TreeItem& parent);
  static void renumber(TreeItem& parent, std::size_t from);
  bool isBefore(TreeItem& one, TreeItem& other) const;
  const QCollatorSortKey& sortKeyOf(TreeItem& item) const;

  TreeItemOwner& owner_;
  const TreeImages& images_;
  QCollator collator_;
  std::unique_ptr<TreeItem> root_;
  std::vector<std::shared_ptr<TreeItem>> items_;
  std::unordered_map<std::string, TreeItem*> byKey_;
  std::unordered_set<TreeItem*> withWaiting_;
  int holds_ = 0;
  bool checkboxes_ = false;
  bool pictures_ = true;
};

}  // namespace kestrel::qt
