#include "TreeView.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <unordered_set>

#include "base/CaseFolding.h"
#include "base/NaturalOrder.h"
#include "imaging/contract/TreeErrors.h"
#include "imaging/contract/controls/PictureBox.h"

namespace kestrel::headless {
namespace {

constexpr float kRowHeight = 16;
constexpr float kCheckBoxWidth = 16;

// Virtual key codes.
constexpr std::int32_t kKeySpace = 32;
constexpr std::int32_t kKeyEnd = 35;
constexpr std::int32_t kKeyHome = 36;
constexpr std::int32_t kKeyLeft = 37;
constexpr std::int32_t kKeyUp = 38;
constexpr std::int32_t kKeyRight = 39;
constexpr std::int32_t kKeyDown = 40;
constexpr std::int32_t kKeyAdd = 107;
constexpr std::int32_t kKeySubtract = 109;

/// Raises an event with a node, which lives until the last handler has returned: one may remove it.
void raise(const Event<kestrel::TreeNode&>& event, TreeNode& node) {
  const auto kept = node.shared_from_this();
  event(*kept);
}

}  // namespace

// -- One node ---------------------------------------------------------------------------------------------

void TreeNode::Text(const std::string& value) {
  text_ = value;
  if (parent_ && parent_->sorted_) TreeView::sort(parent_->children_);
}

void TreeNode::Expanded(bool value) {
  if (value == expanded_ || children_.empty()) return;
  expanded_ = value;
  raise(value ? tree_->Expand : tree_->Collapse, *this);
}

bool TreeNode::Selected() const { return tree_ && tree_->selected_ == this; }

void TreeNode::Selected(bool value) {
  if (!tree_ || value == Selected()) return;
  if (value) {
    tree_->select(*this);
  } else {
    tree_->selected_ = nullptr;
  }
}

void TreeNode::detach() {
  tree_ = nullptr;
  parent_ = nullptr;
  children_.clear();
  expanded_ = false;
}

void TreeNode::Sorted(bool value) {
  sorted_ = value;
  if (value) TreeView::sort(children_);
}

void TreeNode::EnsureVisible() {
  std::vector<std::string> above;
  for (TreeNode* node = parent_; node; node = node->parent_) above.push_back(node->key_);
  TreeView* const tree = tree_;  // a handler may clear the tree
  for (auto key = above.rbegin(); key != above.rend(); ++key) {
    if (TreeNode* const node = tree->Find(*key)) node->Expanded(true);
  }
}

// -- The pictures -----------------------------------------------------------------------------------------

std::string ImageList::Key(std::int32_t index) const {
  tree_errors::requireIndex(index, Count(), "picture");
  return entries_[static_cast<std::size_t>(index) - 1].first;
}

void ImageList::Set(const std::string& key, WindowHandle iconPicture) {
  const auto* const box = dynamic_cast<kestrel::PictureBox*>(desktop_.find(iconPicture));
  PicturePtr drawn = box ? box->Picture() : nullptr;
  const auto known = std::ranges::find(entries_, key, &std::pair<std::string, PicturePtr>::first);
  if (known == entries_.end()) {
    entries_.emplace_back(key, std::move(drawn));
  } else {
    known->second = std::move(drawn);
  }
}

PicturePtr ImageList::picture(const std::string& key) const {
  const auto known = std::ranges::find(entries_, key, &std::pair<std::string, PicturePtr>::first);
  return known == entries_.end() ? nullptr : known->second;
}

// -- The nodes --------------------------------------------------------------------------------------------

TreeView::TreeView(Desktop& desktop, Window* parent, std::string name, std::int32_t index)
    : WindowOf(desktop, parent, std::move(name), index), images_(desktop) {}

TreeView::~TreeView() { Clear(); }

TreeNode& TreeView::Add(const std::string& relative, std::int32_t relationship, const std::string& key,
                        const std::string& text, const std::string& image, const std::string& selectedImage) {
  if (byKey_.contains(key)) tree_errors::refuseKeyInUse(key);
  TreeNode* const other = relative.empty() ? nullptr : &Item(relative);
  const bool isChild = other && relationship == kTreeChild;
  TreeNode* const parent = isChild ? other : other ? other->parent_ : nullptr;
  nodes_.push_back(std::make_shared<TreeNode>(this, parent, key, text, image, selectedImage));
  TreeNode& node = *nodes_.back();
  if (!key.empty()) byKey_[key] = &node;
  place(node, other, isChild ? kTreeLast : relationship);
  return node;
}

void TreeView::place(TreeNode& node, TreeNode* relative, std::int32_t relationship) {
  std::vector<TreeNode*>& row = siblings(node.parent_);
  const auto found = std::ranges::find(row, relative);
  auto at = row.end();
  if (relationship == kTreeFirst) at = row.begin();
  if (relationship == kTreePrevious) at = found;
  if (relationship == kTreeNext && found != row.end()) at = std::next(found);
  row.insert(at, &node);
  if (node.parent_ && node.parent_->sorted_) sort(row);
}

void TreeView::sort(std::vector<TreeNode*>& nodes) {
  std::ranges::stable_sort(nodes, [](const TreeNode* one, const TreeNode* other) {
    return NaturalLess(one->text_, other->text_);
  });
}

void TreeView::Clear() {
  selected_ = nullptr;
  roots_.clear();
  byKey_.clear();
  for (const auto& node : nodes_) node->detach();
  nodes_.clear();
}

void TreeView::Remove(const std::vector<std::string>& keys) {
  std::vector<TreeNode*> left;
  for (const std::string& key : keys) {
    TreeNode* const node = Find(key);
    if (!node) continue;
    std::erase(siblings(node->parent_), node);
    left.push_back(node);
  }
  std::unordered_set<TreeNode*> removed;
  while (!left.empty()) {
    TreeNode* const node = left.back();
    left.pop_back();
    removed.insert(node);
    left.insert(left.end(), node->children_.begin(), node->children_.end());
  }
  if (removed.contains(selected_)) selected_ = nullptr;
  std::erase_if(byKey_, [&](const auto& known) { return removed.contains(known.second); });
  for (TreeNode* const node : removed) node->detach();
  std::erase_if(nodes_, [&](const auto& node) { return removed.contains(node.get()); });
}

TreeNode* TreeView::Find(const std::string& key) {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : found->second;
}

TreeNode& TreeView::Item(const std::string& key) {
  if (TreeNode* const node = Find(key)) return *node;
  tree_errors::refuseMissingKey(key);
}

TreeNode& TreeView::Item(std::int32_t index) {
  tree_errors::requireIndex(index, Count(), "node");
  return *nodes_[static_cast<std::size_t>(index) - 1];
}

const std::vector<TreeNode*>& TreeView::siblings(const TreeNode* parent) const {
  return parent ? parent->children_ : roots_;
}

std::vector<TreeNode*>& TreeView::siblings(TreeNode* parent) { return parent ? parent->children_ : roots_; }

// -- Properties -------------------------------------------------------------------------------------------

void TreeView::BorderStyle(std::int32_t value) {
  tree_errors::requireUpTo(kLargestBorderStyle, value);
  borderStyle_ = value;
}

void TreeView::LineStyle(std::int32_t value) {
  tree_errors::requireUpTo(kLargestLineStyle, value);
  lineStyle_ = value;
}

void TreeView::Style(std::int32_t value) {
  tree_errors::requireUpTo(kLargestTreeStyle, value);
  style_ = value;
}

// -- What the user sees -----------------------------------------------------------------------------------

std::vector<TreeNode*> TreeView::visibleNodes() const {
  std::vector<TreeNode*> visible;
  std::vector<TreeNode*> left(roots_.rbegin(), roots_.rend());
  while (!left.empty()) {
    TreeNode* const node = left.back();
    left.pop_back();
    visible.push_back(node);
    if (node->expanded_) left.insert(left.end(), node->children_.rbegin(), node->children_.rend());
  }
  return visible;
}

std::vector<std::string> TreeView::childKeys(const std::string& key) const {
  std::vector<std::string> keys;
  for (const TreeNode* node : siblings(key.empty() ? nullptr : byKey_.at(key))) keys.push_back(node->key_);
  return keys;
}

std::vector<std::string> TreeView::childTexts(const std::string& key) const {
  std::vector<std::string> texts;
  for (const TreeNode* node : siblings(key.empty() ? nullptr : byKey_.at(key))) texts.push_back(node->text_);
  return texts;
}

std::size_t TreeView::rowOf(const std::string& key) const {
  const std::vector<TreeNode*> visible = visibleNodes();
  const auto row = std::ranges::find(visible, key, [](const TreeNode* node) { return node->key_; });
  if (row == visible.end()) throw std::logic_error("No node \"" + key + "\" is visible in the tree.");
  return static_cast<std::size_t>(row - visible.begin());
}

bool TreeView::isVisible(const std::string& key) const {
  return std::ranges::any_of(visibleNodes(), [&](const TreeNode* node) { return node->key_ == key; });
}

float TreeView::leftOf(const TreeNode& node) const {
  float left = 0;
  for (const TreeNode* above = node.parent_; above; above = above->parent_) left += indentation_;
  return left;
}

std::pair<float, float> TreeView::placeOf(const std::string& key) const {
  const float left = leftOf(*byKey_.at(key)) + indentation_ + kCheckBoxWidth;
  return {left + kRowHeight, (static_cast<float>(rowOf(key)) + 0.5F) * kRowHeight};
}

std::string TreeView::imageOf(const std::string& key) const {
  const TreeNode& node = *byKey_.at(key);
  if (node.Selected() && !node.selectedImage_.empty()) return node.selectedImage_;
  if (node.expanded_ && !node.expandedImage_.empty()) return node.expandedImage_;
  return node.image_;
}

TreeNode* TreeView::HitTest(float x, float y) {
  if (x < 0 || y < 0) return nullptr;
  const std::vector<TreeNode*> visible = visibleNodes();
  const auto row = static_cast<std::size_t>(y / kRowHeight);
  return row < visible.size() ? visible[row] : nullptr;
}

TreeView::Part TreeView::partAt(const TreeNode& node, float x) const {
  const float left = leftOf(node);
  if (x < left + indentation_) return Part::kSign;
  return checkboxes_ && x < left + indentation_ + kCheckBoxWidth ? Part::kCheckBox : Part::kText;
}

// -- The user ---------------------------------------------------------------------------------------------

void TreeView::select(TreeNode& node) {
  const auto kept = node.shared_from_this();  // another node could get its address
  TreeNode* const before = std::exchange(selected_, &node);
  if (singleSel_ && before != &node) {
    bool isAbove = false;
    for (const TreeNode* above = &node; above; above = above->parent_) isAbove = isAbove || above == before;
    if (before && !isAbove) before->Expanded(false);
    if (selected_ == &node) node.Expanded(true);
  }
  if (selected_ == &node) raise(NodeClick, node);
}

void TreeView::toggle(TreeNode& node) { node.Expanded(!node.expanded_); }

void TreeView::check(TreeNode& node) {
  node.checked_ = !node.checked_;
  raise(NodeCheck, node);
}

void TreeView::press(std::int32_t button, std::int32_t shift, float x, float y) {
  MouseDown(button, shift, x, y);
  TreeNode* const node = HitTest(x, y);
  if (!node || button != kLeftButton) return;
  switch (partAt(*node, x)) {
    case Part::kSign:
      return toggle(*node);
    case Part::kCheckBox:
      return check(*node);
    case Part::kText:
      return select(*node);
  }
}

void TreeView::release(std::int32_t button, std::int32_t shift, float x, float y) {
  MouseUp(button, shift, x, y);
  if (button == kLeftButton) Click();
}

void TreeView::click(const std::string& key) {
  const auto [x, y] = placeOf(key);
  press(kLeftButton, 0, x, y);
  release(kLeftButton, 0, x, y);
}

void TreeView::doubleClick(const std::string& key) {
  const auto [x, y] = placeOf(key);
  click(key);
  DblClick();
  if (TreeNode* const node = Find(key)) toggle(*node);
  MouseUp(kLeftButton, 0, x, y);
}

void TreeView::rightClick(const std::string& key) {
  const auto [x, y] = placeOf(key);
  press(kRightButton, 0, x, y);
  release(kRightButton, 0, x, y);
}

void TreeView::clickEmptySpace(std::int32_t button) {
  const float below = (static_cast<float>(visibleNodes().size()) + 1) * kRowHeight;
  press(button, 0, indentation_, below);
  release(button, 0, indentation_, below);
}

void TreeView::clickSign(const std::string& key) {
  const float x = leftOf(Item(key)) + indentation_ / 2;
  const float y = placeOf(key).second;
  press(kLeftButton, 0, x, y);
  release(kLeftButton, 0, x, y);
}

void TreeView::clickCheckBox(const std::string& key) {
  const float x = leftOf(Item(key)) + indentation_ + kCheckBoxWidth / 2;
  const float y = placeOf(key).second;
  press(kLeftButton, 0, x, y);
  release(kLeftButton, 0, x, y);
}

void TreeView::pressKey(std::int32_t keyCode, std::int32_t shift, std::int32_t character) {
  KeyDown(keyCode, shift);
  moveSelection(keyCode);
  if (character != 0) {
    KeyPress(character);
    selectByLetter(character);
  }
  KeyUp(keyCode, shift);
}

void TreeView::moveSelection(std::int32_t keyCode) {
  const std::vector<TreeNode*> visible = visibleNodes();
  if (visible.empty()) return;
  const std::size_t row = selected_ ? rowOf(selected_->key_) : 0;
  TreeNode* const node = visible[row];
  TreeNode* next = node;
  switch (keyCode) {
    case kKeyHome:
      next = visible.front();
      break;
    case kKeyEnd:
      next = visible.back();
      break;
    case kKeyUp:
      next = visible[row == 0 ? 0 : row - 1];
      break;
    case kKeyDown:
      next = visible[std::min(selected_ ? row + 1 : 0, visible.size() - 1)];
      break;
    case kKeyLeft:
      if (node->expanded_) return node->Expanded(false);
      if (node->parent_) next = node->parent_;
      break;
    case kKeyRight:
      if (!node->expanded_) return node->Expanded(true);
      if (node->Child()) next = node->Child();
      break;
    case kKeyAdd:
      return node->Expanded(true);
    case kKeySubtract:
      return node->Expanded(false);
    case kKeySpace:
      if (checkboxes_ && selected_) check(*node);
      return;
    default:
      return;
  }
  if (next != selected_) select(*next);
}

void TreeView::selectByLetter(std::int32_t character) {
  const std::vector<TreeNode*> visible = visibleNodes();
  const std::string letter = FoldCase(std::string(1, static_cast<char>(character)));
  const std::size_t start = selected_ ? rowOf(selected_->key_) + 1 : 0;
  for (std::size_t i = 0; i < visible.size(); ++i) {
    TreeNode* const node = visible[(start + i) % visible.size()];
    if (!FoldCase(node->text_).starts_with(letter)) continue;
    if (node != selected_) select(*node);
    return;
  }
}

}  // namespace kestrel::headless
