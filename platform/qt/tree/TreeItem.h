#pragma once

#include <QCollator>
#include <QString>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "imaging/contract/TreeView.h"

namespace kestrel::qt {

class TreeItem;

/// What an item asks of its tree.
class TreeItemOwner {
 public:
  virtual ~TreeItemOwner() = default;
  virtual void setExpanded(TreeItem& item, bool value) = 0;
  virtual bool isSelected(const TreeItem& item) const = 0;
  virtual void setSelected(TreeItem& item, bool value) = 0;
  virtual void makeVisible(TreeItem& item) = 0;
  /// Text, pictures or check mark.
  virtual void looksChanged(TreeItem& item) = 0;
  /// The order of the item's children.
  virtual void orderChanged(TreeItem& item) = 0;
};

/// A node of the tree.
class TreeItem final : public TreeNode {
 public:
  /// The place of an item in the model, which alone changes it. The items at the top level have the invisible
  /// root as their parent.
  struct Place {
    TreeItem* parent = nullptr;
    int row = 0;  ///< among the shown children of the parent
    std::vector<TreeItem*> shown;
    /// Children that come after those shown, and are shown together later.
    std::vector<TreeItem*> waiting;
    bool removed = false;  ///< the model is about to release it
    std::optional<QCollatorSortKey> sortKey;
  };

  TreeItem(TreeItemOwner& owner, std::string key, std::string text, std::string image,
           std::string selectedImage);

  const std::string& Key() const override { return key_; }
  std::string Text() const override { return text_; }
  void Text(const std::string& value) override;
  std::string Tag() const override { return tag_; }
  void Tag(const std::string& value) override { tag_ = value; }
  TreeNode* Child() override;
  TreeNode* Parent() override;
  std::int32_t Children() const override;
  bool Expanded() const override { return expanded_; }
  void Expanded(bool value) override;
  bool Selected() const override { return owner_ && owner_->isSelected(*this); }
  void Selected(bool value) override;
  bool Checked() const override { return checked_; }
  void Checked(bool value) override;
  void Sorted(bool value) override;
  void EnsureVisible() override;
  std::string Image() const override { return image_; }
  void ExpandedImage(const std::string& value) override;
  std::string ExpandedImage() const override { return expandedImage_; }
  void SelectedImage(const std::string& value) override;
  std::string SelectedImage() const override { return selectedImage_; }

  /// Takes a removed item out of the tree: handlers of an event may still have it.
  void detach();
  bool isDetached() const { return owner_ == nullptr; }

  Place& place() { return place_; }
  const Place& place() const { return place_; }
  bool sorted() const { return sorted_; }
  /// Only notes the state.
  void noteExpanded(bool value) { expanded_ = value; }
  /// The text in one line, as `VisibleText` gives it.
  QString label() const;
  /// The key of the picture to show now.
  const std::string& shownImage() const;

 private:
  void announceLooks();

  TreeItemOwner* owner_;  ///< null once it is detached
  Place place_;
  std::string key_;
  std::string text_;
  std::string tag_;
  std::string image_;
  std::string expandedImage_;
  std::string selectedImage_;
  bool expanded_ = false;
  bool checked_ = false;
  bool sorted_ = false;
};

}  // namespace kestrel::qt
