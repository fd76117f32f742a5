#pragma once

#include <QPointer>
#include <optional>
#include <string>

#include "TreeImages.h"
#include "TreeModel.h"
#include "TreeWidget.h"
#include "imaging/contract/TreeView.h"
#include "platform/qt/controls/WidgetControl.h"

namespace kestrel::qt {

/// The tree control on the desktop. Positions are pixels of the view without its frame.
class QtTreeView final : public WidgetControl<TreeView>, private TreeNodes, private TreeItemOwner {
 public:
  QtTreeView(TreeWidget& tree, ControlId id);
  ~QtTreeView() override;

  TreeNodes& Nodes() override { return *this; }
  TreeImages& ImageList() override { return images_; }
  TreeNode* SelectedItem() override { return selected_; }
  TreeNode* HitTest(float x, float y) override;
  void Refresh() override;
  void Redraw(bool value) override;

  std::int32_t BorderStyle() const override;
  void BorderStyle(std::int32_t value) override;
  bool Checkboxes() const override { return model_.checkboxes(); }
  void Checkboxes(bool value) override { model_.setCheckboxes(value); }
  std::string Font() const override;
  void Font(const std::string& value) override;
  bool HideSelection() const override { return tree_.hidesSelection(); }
  void HideSelection(bool value) override { tree_.setHideSelection(value); }
  float Indentation() const override { return static_cast<float>(tree_.indentation()); }
  void Indentation(float value) override;
  std::int32_t LineStyle() const override { return tree_.rootIsDecorated() ? 1 : 0; }
  void LineStyle(std::int32_t value) override;
  bool SingleSel() const override { return singleSel_; }
  void SingleSel(bool value) override { singleSel_ = value; }
  std::int32_t Style() const override { return style_; }
  void Style(std::int32_t value) override;

 private:
  TreeItem& Add(const std::string& relative, std::int32_t relationship, const std::string& key,
                const std::string& text, const std::string& image, const std::string& selectedImage) override;
  void Clear() override;
  void Remove(const std::vector<std::string>& keys) override;
  std::int32_t Count() const override { return model_.count(); }
  TreeItem* Find(const std::string& key) override { return model_.find(key); }
  TreeItem& Item(const std::string& key) override;
  TreeItem& Item(std::int32_t index) override;

  void setExpanded(TreeItem& item, bool value) override;
  bool isSelected(const TreeItem& item) const override { return selected_ == &item; }
  void setSelected(TreeItem& item, bool value) override;
  void makeVisible(TreeItem& item) override;
  void looksChanged(TreeItem& item) override { model_.announceLooks(item); }
  void orderChanged(TreeItem& item) override { model_.sortChildren(item); }

  void listen();
  void listenToMouse();
  void noteSelection();
  void noteExpanded(const QModelIndex& index, bool value);
  void finishInput(bool nodePressed);
  void raiseNodeClick(TreeItem* before);
  void clearSelection();

  TreeWidget& tree_;
  QPointer<TreeWidget> widget_;
  TreeImages images_;
  TreeModel model_;
  TreeItem* selected_ = nullptr;
  /// The node that was selected before input or code changed the selection; none if it did not change.
  std::optional<TreeItem*> changedFrom_;
  bool byCode_ = false;
  int pauses_ = 0;
  bool singleSel_ = false;
  std::int32_t style_ = kTreeStyle;
};

}  // namespace kestrel::qt
