#include "imaging/contract/TreeView.h"

#include <string>
#include <tuple>

#include "browser/FolderTreeView.h"
#include "host/dispatch/ControlRows.h"
#include "host/dispatch/Elements.h"
#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace {

constexpr auto kTreeViewMembers = std::tuple_cat(
    std::tuple{
        ReadOnly("Nodes", 1, &TreeView::Nodes, "All nodes of the tree."),
        ReadOnly("SelectedItem", 2, &TreeView::SelectedItem,
                 "The selected node; Nothing while there is none."),
        Method("HitTest", 3, &TreeView::HitTest, {"X", "Y"},
               "The node at a position in pixels of the tree; Nothing if there is none."),
        Method("Refresh", 4, &TreeView::Refresh, "Repaints the tree."),
        WriteOnly("Redraw", 5, &TreeView::Redraw,
                  "False suspends painting, until True; the writes nest. For adding many nodes."),
        ReadOnly("ImageList", 6, &TreeView::ImageList, "The pictures of the nodes."),
        Property("BorderStyle", 7, &TreeView::BorderStyle, &TreeView::BorderStyle, "0 none, 1 a frame."),
        Property("Checkboxes", 8, &TreeView::Checkboxes, &TreeView::Checkboxes,
                 "Whether check boxes are shown left of the pictures."),
        Property("Font", 9, &TreeView::Font, &TreeView::Font,
                 "The family and the size in points, such as \"DejaVu Sans, 10\"."),
        Property("HideSelection", 10, &TreeView::HideSelection, &TreeView::HideSelection,
                 "Whether the selection is hidden while the tree does not have the focus."),
        Property("Indentation", 11, &TreeView::Indentation, &TreeView::Indentation,
                 "The distance in pixels by which each level is indented."),
        Property("LineStyle", 12, &TreeView::LineStyle, &TreeView::LineStyle,
                 "0 lines between siblings and parents, 1 also between the nodes at the top."),
        Property("SingleSel", 13, &TreeView::SingleSel, &TreeView::SingleSel,
                 "Whether the selection of a node expands it and collapses the one before."),
        Property("Style", 14, &TreeView::Style, &TreeView::Style,
                 "What is shown of a node: its text, and the sum of 1 pictures, 2 signs to expand, 4 lines."),
    },
    kControlRows);
constexpr std::tuple kTreeViewEvents{
    EventOf("Click", 1, &TreeView::Click, "A left click anywhere in the tree, after the NodeClick."),
    EventOf("DblClick", 2, &TreeView::DblClick, "A double click."),
    EventOf("Collapse", 3, &TreeView::Collapse, {"Node"}, "A node was collapsed."),
    EventOf("Expand", 4, &TreeView::Expand, {"Node"}, "A node was expanded."),
    EventOf("NodeClick", 5, &TreeView::NodeClick, {"Node"}, "A node was clicked or selected."),
    EventOf("NodeCheck", 6, &TreeView::NodeCheck, {"Node"}, "The user has clicked the check box of a node."),
    EventOf("MouseDown", 7, &TreeView::MouseDown, {"Button", "Shift", "X", "Y"},
            "A button was pressed. The position is in pixels of the tree."),
    EventOf("MouseMove", 8, &TreeView::MouseMove, {"Button", "Shift", "X", "Y"}, "The pointer has moved."),
    EventOf("MouseUp", 9, &TreeView::MouseUp, {"Button", "Shift", "X", "Y"}, "A button was released."),
    EventOf("KeyDown", 10, &TreeView::KeyDown, {"KeyCode", "Shift"}, "A key was pressed."),
    EventOf("KeyPress", 11, &TreeView::KeyPress, {"KeyAscii"}, "A character was typed."),
    EventOf("KeyUp", 12, &TreeView::KeyUp, {"KeyCode", "Shift"}, "A key was released."),
};
constexpr ClassDescription kTreeView = MakeClass<TreeView, kTreeViewMembers, kTreeViewEvents>(
    {.name = "TreeView", .help = "A tree of nodes with pictures, texts and check boxes."});

/// The keys of the contract are a list; hosts pass one.
void RemoveNode(TreeNodes& nodes, const std::string& key) { nodes.Remove({key}); }

constexpr std::tuple kTreeNodesMembers{
    ItemOf<TreeNodes>("The node of a position, counted from 1, or of a key; keys are case-sensitive."),
    ReadOnly("Count", 1, &TreeNodes::Count, "The number of nodes."),
    Method("Add", 2, &TreeNodes::Add,
           {"Relative", "Relationship", "Key", "Text", {"Image", ""}, {"SelectedImage", ""}},
           "Adds a node. Relative is the key of the node that Relationship refers to, empty for the top "
           "level: 0 first, 1 last, 2 next, 3 previous, 4 child. A node without a key is reached by its "
           "position only."),
    Method("Clear", 3, &TreeNodes::Clear, "Removes all nodes."),
    Method("Remove", 4, &RemoveNode, {"Key"},
           "Removes a node with all nodes below it. Does nothing if there is no node of that key."),
};
constexpr ClassDescription kTreeNodes = MakeClass<TreeNodes, kTreeNodesMembers>(
    {.name = "TreeNodes", .help = "All nodes of a tree, in the order in which they were added."});

constexpr std::tuple kTreeNodeMembers{
    ReadOnly("Key", 1, &TreeNode::Key, "The key of the node."),
    Property("Text", 2, &TreeNode::Text, &TreeNode::Text, "The text of the node."),
    Property("Tag", 3, &TreeNode::Tag, &TreeNode::Tag, "A text stored with the node."),
    ReadOnly("Child", 4, &TreeNode::Child, "The first child; Nothing if there is none."),
    ReadOnly("Children", 5, &TreeNode::Children, "The number of children."),
    Property("Expanded", 6, &TreeNode::Expanded, &TreeNode::Expanded, "Whether its children are shown."),
    Property("Selected", 7, &TreeNode::Selected, &TreeNode::Selected, "Whether it is the selected node."),
    WriteOnly("Sorted", 8, &TreeNode::Sorted,
              "Keeps the children sorted by their texts, and numbers in them by value."),
    Method("EnsureVisible", 9, &TreeNode::EnsureVisible, "Expands all nodes above it and scrolls to it."),
    ReadOnly("Parent", 10, &TreeNode::Parent, "The node above; Nothing at the top level."),
    Property("Checked", 11, &TreeNode::Checked, &TreeNode::Checked, "Whether its check box is checked."),
    ReadOnly("Image", 12, &TreeNode::Image, "The key of its picture."),
    Property("ExpandedImage", 13, &TreeNode::ExpandedImage, &TreeNode::ExpandedImage,
             "The key of its picture while it is expanded; empty for the normal one."),
    Property("SelectedImage", 14, &TreeNode::SelectedImage, &TreeNode::SelectedImage,
             "The key of its picture while it is selected; empty for the normal one."),
};
constexpr ClassDescription kTreeNode =
    MakeClass<TreeNode, kTreeNodeMembers>({.name = "TreeNode", .help = "One node of a tree."});

constexpr std::tuple kImageListMembers{
    ReadOnly("Count", 1, &ImageList::Count, "The number of pictures."),
    Method("Key", 2, &ImageList::Key, {"Index"}, "The key of the picture of a position, counted from 1."),
    Method("Set", 3, &ImageList::Set, {"Key", "IconPicture"},
           "Adds the icon in a picture box, given by its window, or replaces the one of that key."),
};
constexpr ClassDescription kImageList = MakeClass<ImageList, kImageListMembers>(
    {.name = "ImageList", .help = "The pictures of a tree's nodes, by key."});

}  // namespace

template <>
const ClassDescription& Describe<TreeView>() {
  return kTreeView;
}
template <>
const ClassDescription& Describe<TreeNodes>() {
  return kTreeNodes;
}
template <>
const ClassDescription& Describe<TreeNode>() {
  return kTreeNode;
}
template <>
const ClassDescription& Describe<ImageList>() {
  return kImageList;
}

std::string Locate<TreeNode>::Key(const TreeNode& node) { return node.Key(); }

TreeNode* Locate<TreeNode>::Find(TreeNodes& nodes, const std::string& key) { return nodes.Find(key); }
TreeNode* Locate<TreeNode>::Find(TreeView& tree, const std::string& key) { return tree.Nodes().Find(key); }
TreeNode* Locate<TreeNode>::Find(FolderTreeView& tree, const std::string& key) {
  return tree.Nodes().Find(key);
}

}  // namespace kestrel::dispatch
