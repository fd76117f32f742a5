#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Control.h"
#include "base/Event.h"

namespace kestrel {

/// Values of the Relationship of `TreeNodes::Add`.
inline constexpr std::int32_t kTreeFirst = 0;
inline constexpr std::int32_t kTreeLast = 1;
inline constexpr std::int32_t kTreeNext = 2;
inline constexpr std::int32_t kTreePrevious = 3;
inline constexpr std::int32_t kTreeChild = 4;

// The properties of a new tree.
inline constexpr std::int32_t kTreeBorderStyle = 1;
inline constexpr float kTreeIndentation = 20;
inline constexpr std::int32_t kTreeLineStyle = 1;
inline constexpr std::int32_t kTreeStyle = 7;

/// The largest values of the properties of a tree that are numbers.
inline constexpr std::int32_t kLargestBorderStyle = 1;
inline constexpr std::int32_t kLargestLineStyle = 1;
inline constexpr std::int32_t kLargestTreeStyle = 7;

/// One node of a tree. Once it is removed it has no parent, no children, and is not selected; its texts stay.
class TreeNode : public std::enable_shared_from_this<TreeNode> {
 public:
  virtual ~TreeNode() = default;
  virtual const std::string& Key() const = 0;
  virtual std::string Text() const = 0;
  virtual void Text(const std::string& value) = 0;
  virtual std::string Tag() const = 0;
  virtual void Tag(const std::string& value) = 0;
  /// The first child, null if there is none.
  virtual TreeNode* Child() = 0;
  /// Null for a node at the top level.
  virtual TreeNode* Parent() = 0;
  /// The number of children.
  virtual std::int32_t Children() const = 0;
  virtual bool Expanded() const = 0;
  /// Raises `Expand` or `Collapse` if the state differs and the node has children.
  virtual void Expanded(bool value) = 0;
  virtual bool Selected() const = 0;
  /// Raises `NodeClick` when the node becomes the selected one. False clears the selection of this node and
  /// raises nothing.
  virtual void Selected(bool value) = 0;
  virtual bool Checked() const = 0;
  /// Raises nothing: `NodeCheck` is for the user's clicks.
  virtual void Checked(bool value) = 0;
  /// Keeps the children sorted by their texts, ignoring case, and numbers in them by value.
  virtual void Sorted(bool value) = 0;
  /// Expands all nodes above it, which raises `Expand` for each that was collapsed, and scrolls to it.
  virtual void EnsureVisible() = 0;
  virtual std::string Image() const = 0;
  /// Image keys for the expanded and for the selected state; empty uses the normal one.
  virtual void ExpandedImage(const std::string& value) = 0;
  virtual std::string ExpandedImage() const = 0;
  virtual void SelectedImage(const std::string& value) = 0;
  virtual std::string SelectedImage() const = 0;
};

/// All nodes of a tree, in the order in which they were added. A node lives until `Clear` or `Remove`;
/// in an event with a node, until all handlers of the event have returned. The tree shares its nodes.
class TreeNodes {
 public:
  virtual ~TreeNodes() = default;
  /// `relative` is the key of the node that the relationship refers to, empty for the top level. Raises
  /// RuntimeError 35602 for a key in use, 35601 for a missing relative.
  virtual TreeNode& Add(const std::string& relative, std::int32_t relationship, const std::string& key,
                        const std::string& text, const std::string& image = {},
                        const std::string& selectedImage = {}) = 0;
  /// Removes all nodes and raises nothing.
  virtual void Clear() = 0;
  /// Removes the nodes of these keys with all nodes below them, and raises nothing. If the selected node is
  /// one of them, none is selected afterwards. The other nodes stay expanded and selected. Keys without a
  /// node are ignored.
  virtual void Remove(const std::vector<std::string>& keys) = 0;
  virtual std::int32_t Count() const = 0;
  /// By key, case-sensitive; null if there is none.
  virtual TreeNode* Find(const std::string& key) = 0;
  /// By key, case-sensitive; raises RuntimeError 35601 if there is none.
  virtual TreeNode& Item(const std::string& key) = 0;
  /// Counted from 1; raises RuntimeError 35600 outside.
  virtual TreeNode& Item(std::int32_t index) = 0;
};

/// The pictures of a tree's nodes, by key and counted from 1.
class ImageList {
 public:
  virtual ~ImageList() = default;
  virtual std::int32_t Count() const = 0;
  /// Raises RuntimeError 35600 outside of the list.
  virtual std::string Key(std::int32_t index) const = 0;
  /// Adds the icon in the icon picture, or replaces the one of that key. An unknown or empty picture adds an
  /// empty icon.
  virtual void Set(const std::string& key, WindowHandle iconPicture) = 0;
};

/// A tree of nodes with pictures, texts and check boxes. At most one node is selected.
///
/// A click of the left button on a node selects it and raises `NodeClick`, also if the node was selected
/// before; a key that selects another node raises it too. The other buttons select nothing. A double click,
/// the sign of the node and the keys + - Right Left expand and collapse.
class TreeView : public Control {
 public:
  virtual TreeNodes& Nodes() = 0;
  virtual kestrel::ImageList& ImageList() = 0;
  /// Null while none is selected.
  virtual TreeNode* SelectedItem() = 0;
  /// The node at a position in the tree's pixels, null if there is none.
  virtual TreeNode* HitTest(float x, float y) = 0;
  virtual void Refresh() = 0;
  /// False suspends painting and the arrangement of new nodes, until True; the calls nest. For adding many
  /// nodes. All other members work in between.
  virtual void Redraw(bool value) = 0;

  /// 0 none, 1 a frame. Raises RuntimeError 380 for other values.
  virtual std::int32_t BorderStyle() const = 0;
  virtual void BorderStyle(std::int32_t value) = 0;
  virtual bool Checkboxes() const = 0;
  virtual void Checkboxes(bool value) = 0;
  /// The family and the size in points, "DejaVu Sans, 10". Initially the font of the container.
  virtual std::string Font() const = 0;
  virtual void Font(const std::string& value) = 0;
  /// Whether the selection is hidden while the tree does not have the focus.
  virtual bool HideSelection() const = 0;
  virtual void HideSelection(bool value) = 0;
  /// The distance in pixels by which each level is indented.
  virtual float Indentation() const = 0;
  virtual void Indentation(float value) = 0;
  /// 0 lines between siblings and parents, 1 also between the nodes at the top, which then have signs to
  /// expand them. Raises RuntimeError 380 for other values.
  virtual std::int32_t LineStyle() const = 0;
  virtual void LineStyle(std::int32_t value) = 0;
  /// Whether the selection of a node expands it and collapses the node that was selected before, unless that
  /// one is above it.
  virtual bool SingleSel() const = 0;
  virtual void SingleSel(bool value) = 0;
  /// What is shown of a node: texts always, and the sum of 1 pictures, 2 signs to expand, 4 lines. Raises
  /// RuntimeError 380 for values outside of 0 to 7.
  virtual std::int32_t Style() const = 0;
  virtual void Style(std::int32_t value) = 0;

  /// A left click anywhere in the tree, after the `NodeClick`.
  Event<> Click;
  Event<> DblClick;
  Event<TreeNode&> Collapse;
  Event<TreeNode&> Expand;
  Event<TreeNode&> NodeClick;
  Event<TreeNode&> NodeCheck;
  /// Button, Shift and the position in the tree's pixels.
  Event<std::int32_t, std::int32_t, float, float> MouseDown;
  Event<std::int32_t, std::int32_t, float, float> MouseMove;
  Event<std::int32_t, std::int32_t, float, float> MouseUp;
  /// The key code and Shift; `KeyPress` has the character code.
  Event<std::int32_t, std::int32_t> KeyDown;
  Event<std::int32_t> KeyPress;
  Event<std::int32_t, std::int32_t> KeyUp;
};

}  // namespace kestrel
