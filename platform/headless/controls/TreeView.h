#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "../Window.h"
#include "imaging/contract/Picture.h"
#include "imaging/contract/TreeView.h"

namespace kestrel::headless {

class TreeView;

class TreeNode final : public kestrel::TreeNode {
 public:
  TreeNode(TreeView* tree, TreeNode* parent, std::string key, std::string text, std::string image,
           std::string selectedImage)
      : tree_(tree),
        parent_(parent),
        key_(std::move(key)),
        text_(std::move(text)),
        image_(std::move(image)),
        selectedImage_(std::move(selectedImage)) {}

  const std::string& Key() const override { return key_; }
  std::string Text() const override { return text_; }
  void Text(const std::string& value) override;
  std::string Tag() const override { return tag_; }
  void Tag(const std::string& value) override { tag_ = value; }
  TreeNode* Child() override { return children_.empty() ? nullptr : children_.front(); }
  TreeNode* Parent() override { return parent_; }
  std::int32_t Children() const override { return static_cast<std::int32_t>(children_.size()); }
  bool Expanded() const override { return expanded_; }
  void Expanded(bool value) override;
  bool Selected() const override;
  void Selected(bool value) override;
  bool Checked() const override { return checked_; }
  void Checked(bool value) override { checked_ = value; }
  void Sorted(bool value) override;
  void EnsureVisible() override;
  std::string Image() const override { return image_; }
  void ExpandedImage(const std::string& value) override { expandedImage_ = value; }
  std::string ExpandedImage() const override { return expandedImage_; }
  void SelectedImage(const std::string& value) override { selectedImage_ = value; }
  std::string SelectedImage() const override { return selectedImage_; }

  const std::vector<TreeNode*>& children() const { return children_; }
  bool sorted() const { return sorted_; }

 private:
  friend class TreeView;

  /// Takes a removed node out of the tree: handlers of an event may still have it.
  void detach();

  TreeView* tree_;  ///< null once it is detached
  TreeNode* parent_;
  std::string key_;
  std::string text_;
  std::string tag_;
  std::string image_;
  std::string expandedImage_;
  std::string selectedImage_;
  std::vector<TreeNode*> children_;
  bool expanded_ = false;
  bool checked_ = false;
  bool sorted_ = false;
};

/// Keeps a picture for each key.
class ImageList final : public kestrel::ImageList {
 public:
  explicit ImageList(Desktop& desktop) : desktop_(desktop) {}

  std::int32_t Count() const override { return static_cast<std::int32_t>(entries_.size()); }
  std::string Key(std::int32_t index) const override;
  void Set(const std::string& key, WindowHandle iconPicture) override;

  /// Null for an unknown key.
  PicturePtr picture(const std::string& key) const;

 private:
  Desktop& desktop_;
  std::vector<std::pair<std::string, PicturePtr>> entries_;
};

/// A tree whose visible nodes are rows of equal height: the sign to expand, the check box if there is one,
/// and the text up to the right edge. It does not scroll.
class TreeView final : public WindowOf<kestrel::TreeView>, private kestrel::TreeNodes {
 public:
  TreeView(Desktop& desktop, Window* parent, std::string name, std::int32_t index);
  ~TreeView() override;

  kestrel::TreeNodes& Nodes() override { return *this; }
  headless::ImageList& ImageList() override { return images_; }
  TreeNode* SelectedItem() override { return selected_; }
  TreeNode* HitTest(float x, float y) override;
  void Refresh() override { ++refreshes_; }
  void Redraw(bool value) override {
    pauses_ += value ? -1 : 1;
    if (onRedraw) onRedraw(value);
  }

  std::int32_t BorderStyle() const override { return borderStyle_; }
  void BorderStyle(std::int32_t value) override;
  bool Checkboxes() const override { return checkboxes_; }
  void Checkboxes(bool value) override { checkboxes_ = value; }
  std::string Font() const override { return font_; }
  void Font(const std::string& value) override { font_ = value; }
  bool HideSelection() const override { return hideSelection_; }
  void HideSelection(bool value) override { hideSelection_ = value; }
  float Indentation() const override { return indentation_; }
  void Indentation(float value) override { indentation_ = value; }
  std::int32_t LineStyle() const override { return lineStyle_; }
  void LineStyle(std::int32_t value) override;
  bool SingleSel() const override { return singleSel_; }
  void SingleSel(bool value) override { singleSel_ = value; }
  std::int32_t Style() const override { return style_; }
  void Style(std::int32_t value) override;

  // The user. Nodes are named by key; they must be visible.
  void click(const std::string& key);
  void doubleClick(const std::string& key);
  void rightClick(const std::string& key);
  /// A click below the last node.
  void clickEmptySpace(std::int32_t button = kLeftButton);
  void clickSign(const std::string& key);
  void clickCheckBox(const std::string& key);
  void press(std::int32_t button, std::int32_t shift, float x, float y);
  void move(std::int32_t button, std::int32_t shift, float x, float y) { MouseMove(button, shift, x, y); }
  void release(std::int32_t button, std::int32_t shift, float x, float y);
  /// Presses and releases a key: arrows, Home, End, + - * on the number pad, Space for a check box. A
  /// character of 0 raises no `KeyPress`; any other selects the next node whose text begins with it.
  void pressKey(std::int32_t keyCode, std::int32_t shift = 0, std::int32_t character = 0);

  // What the user sees.
  /// The nodes whose parents are all expanded, from top to bottom.
  std::vector<TreeNode*> visibleNodes() const;
  /// The keys of a node's children from top to bottom; an empty key means the top level.
  std::vector<std::string> childKeys(const std::string& key) const;
  std::vector<std::string> childTexts(const std::string& key) const;
  bool isVisible(const std::string& key) const;
  /// The center of a node's text.
  std::pair<float, float> placeOf(const std::string& key) const;
  /// The key of the picture that a node shows now.
  std::string imageOf(const std::string& key) const;
  /// Called with each value of `Redraw`.
  std::function<void(bool)> onRedraw;
  std::int32_t refreshes() const { return refreshes_; }
  bool isPaused() const { return pauses_ > 0; }

 private:
  friend class TreeNode;
  enum class Part { kSign, kCheckBox, kText };

  TreeNode& Add(const std::string& relative, std::int32_t relationship, const std::string& key,
                const std::string& text, const std::string& image, const std::string& selectedImage) override;
  void Clear() override;
  void Remove(const std::vector<std::string>& keys) override;
  std::int32_t Count() const override { return static_cast<std::int32_t>(nodes_.size()); }
  TreeNode* Find(const std::string& key) override;
  TreeNode& Item(const std::string& key) override;
  TreeNode& Item(std::int32_t index) override;

  const std::vector<TreeNode*>& siblings(const TreeNode* parent) const;
  std::vector<TreeNode*>& siblings(TreeNode* parent);
  void place(TreeNode& node, TreeNode* relative, std::int32_t relationship);
  static void sort(std::vector<TreeNode*>& nodes);
  std::size_t rowOf(const std::string& key) const;
  float leftOf(const TreeNode& node) const;
  Part partAt(const TreeNode& node, float x) const;
  void select(TreeNode& node);
  void toggle(TreeNode& node);
  void check(TreeNode& node);
  void moveSelection(std::int32_t keyCode);
  void selectByLetter(std::int32_t character);

  headless::ImageList images_;
  std::vector<std::shared_ptr<TreeNode>> nodes_;
  std::unordered_map<std::string, TreeNode*> byKey_;
  std::vector<TreeNode*> roots_;
  TreeNode* selected_ = nullptr;

  std::int32_t borderStyle_ = kTreeBorderStyle;
  bool checkboxes_ = false;
  std::string font_ = "Sans, 10";
  bool hideSelection_ = false;
  float indentation_ = kTreeIndentation;
  std::int32_t lineStyle_ = kTreeLineStyle;
  bool singleSel_ = false;
  std::int32_t style_ = kTreeStyle;
  std::int32_t refreshes_ = 0;
  std::int32_t pauses_ = 0;
};

}  // namespace kestrel::headless
