#include "QtTreeView.h"

#include <QFontInfo>
#include <QItemSelectionModel>
#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "imaging/contract/TreeErrors.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

// The parts of Style.
constexpr std::int32_t kPictures = 1;
constexpr std::int32_t kSigns = 2;
constexpr std::int32_t kLines = 4;

/// Raises an event with a node, which lives until the last handler has returned: one may remove it.
void raise(const Event<TreeNode&>& event, TreeItem& item) {
  const auto kept = item.shared_from_this();
  event(*kept);
}

/// Whether the item is one of these or below one of them.
bool isIn(const TreeItem* item, const std::unordered_set<const TreeItem*>& items) {
  while (item && !items.contains(item)) item = item->place().parent;
  return item != nullptr;
}

}  // namespace

QtTreeView::QtTreeView(TreeWidget& tree, ControlId id)
    : WidgetControl(tree, std::move(id)),
      tree_(tree),
      widget_(&tree),
      images_([this] { tree_.viewport()->update(); }),
      model_(*this, images_) {
  tree_.setModel(&model_);
  tree_.setIndentation(static_cast<int>(kTreeIndentation));
  listen();
  listenToMouse();
}

QtTreeView::~QtTreeView() {
  // The widget may live longer, or may be gone.
  if (widget_) widget_->setModel(nullptr);
}

void QtTreeView::listen() {
  const auto on = [this](auto* sender, auto signal, auto slot) {
    QObject::connect(sender, signal, receiver(), slot);
  };
  on(tree_.selectionModel(), &QItemSelectionModel::selectionChanged, [this] { noteSelection(); });
  on(&tree_, &QTreeView::expanded, [this](const QModelIndex& index) { noteExpanded(index, true); });
  on(&tree_, &QTreeView::collapsed, [this](const QModelIndex& index) { noteExpanded(index, false); });
  on(&tree_, &TreeWidget::inputEnded,
     [this](bool nodePressed) { guarded([&] { finishInput(nodePressed); }); });
  on(&tree_, &TreeWidget::keyDown, [this](int key, int shift) { guarded([&] { KeyDown(key, shift); }); });
  on(&tree_, &TreeWidget::characterTyped, [this](int character) { guarded([&] { KeyPress(character); }); });
  on(&tree_, &TreeWidget::keyUp, [this](int key, int shift) { guarded([&] { KeyUp(key, shift); }); });
  on(&model_, &TreeModel::checkToggled,
     [this](TreeItem* item) { guarded([&] { raise(NodeCheck, *item); }); });
}

void QtTreeView::listenToMouse() {
  const auto forward = [this](auto signal, auto& event) {
    QObject::connect(&tree_, signal, receiver(), [&event](int button, int shift, const QPointF& at) {
      guarded([&] { event(button, shift, static_cast<float>(at.x()), static_cast<float>(at.y())); });
    });
  };
  forward(&TreeWidget::mousePressed, MouseDown);
  forward(&TreeWidget::mouseMoved, MouseMove);
  forward(&TreeWidget::mouseReleased, MouseUp);
  QObject::connect(&tree_, &TreeWidget::leftClicked, receiver(), [this] { guarded([this] { Click(); }); });
  QObject::connect(&tree_, &TreeWidget::doublePressed, receiver(),
                   [this] { guarded([this] { DblClick(); }); });
}

// -- The nodes --------------------------------------------------------------------------------------------

TreeItem& QtTreeView::Add(const std::string& relative, std::int32_t relationship, const std::string& key,
                          const std::string& text, const std::string& image,
                          const std::string& selectedImage) {
  if (model_.find(key)) tree_errors::refuseKeyInUse(key);
  TreeItem* const other = relative.empty() ? nullptr : &Item(relative);
  return model_.add(other, relationship, key, text, image, selectedImage);
}

void QtTreeView::Clear() {
  selected_ = nullptr;
  changedFrom_.reset();
  model_.clear();
}

void QtTreeView::Remove(const std::vector<std::string>& keys) {
  std::unordered_set<const TreeItem*> named;
  for (const std::string& key : keys) named.insert(model_.find(key));
  named.erase(nullptr);
  std::vector<TreeItem*> uppermost;
  for (const std::string& key : keys) {
    TreeItem* const item = model_.find(key);
    if (!item || isIn(item->place().parent, named)) continue;
    if (std::find(uppermost.begin(), uppermost.end(), item) == uppermost.end()) uppermost.push_back(item);
  }
  if (isIn(selected_, named)) clearSelection();
  if (changedFrom_ && isIn(*changedFrom_, named)) changedFrom_ = nullptr;
  model_.remove(uppermost);
}

TreeItem& QtTreeView::Item(const std::string& key) {
  if (TreeItem* const item = model_.find(key)) return *item;
  tree_errors::refuseMissingKey(key);
}

TreeItem& QtTreeView::Item(std::int32_t index) {
  tree_errors::requireIndex(index, Count(), "node");
  return model_.at(static_cast<std::size_t>(index) - 1);
}

TreeNode* QtTreeView::HitTest(float x, float y) {
  model_.showWaiting();
  const QPoint at(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
  if (!tree_.viewport()->rect().contains(at)) return nullptr;
  return TreeModel::itemOf(tree_.indexAt(at));
}

void QtTreeView::Refresh() {
  model_.showWaiting();
  tree_.viewport()->update();
}

void QtTreeView::Redraw(bool value) {
  if (!value && pauses_++ == 0) tree_.holdScroll();
  model_.hold(!value);
  if (value && pauses_ > 0 && --pauses_ == 0) tree_.releaseScroll();
}

// -- Selection and expansion ------------------------------------------------------------------------------

/// The view may be in the middle of processing input, so `NodeClick` is raised after it.
void QtTreeView::noteSelection() {
  const QModelIndexList indexes = tree_.selectionModel()->selectedIndexes();
  TreeItem* const item = indexes.isEmpty() ? nullptr : TreeModel::itemOf(indexes.front());
  if (item == selected_) return;
  TreeItem* const before = std::exchange(selected_, item);
  if (!changedFrom_) changedFrom_ = before;
  for (TreeItem* const changed : {before, item}) {
    if (changed) model_.announceLooks(*changed);
  }
  // An accessibility tool has selected the node.
  if (!byCode_ && !tree_.inInput()) guarded([this] { finishInput(false); });
}

void QtTreeView::finishInput(bool nodePressed) {
  const std::optional<TreeItem*> before = std::exchange(changedFrom_, std::nullopt);
  if (!selected_ || (!before && !nodePressed)) return;
  raiseNodeClick(before.value_or(selected_));
}

void QtTreeView::raiseNodeClick(TreeItem* before) {
  TreeItem* const item = selected_;
  // A handler may remove it, and another node may get its address.
  const auto kept = item ? item->shared_from_this() : nullptr;
  if (singleSel_ && before != item) {
    bool isAbove = false;
    for (TreeItem* above = item; above; above = above->place().parent) isAbove = isAbove || above == before;
    if (before && !isAbove) setExpanded(*before, false);
    if (selected_ == item) setExpanded(*item, true);
  }
  // A handler may have cleared the tree.
  if (item && selected_ == item) raise(NodeClick, *item);
}

void QtTreeView::setSelected(TreeItem& item, bool value) {
  if (value == isSelected(item)) return;
  if (!value) return clearSelection();
  model_.showWaiting();
  const bool outer = std::exchange(byCode_, true);
  tree_.setCurrentIndex(model_.indexOf(item));
  byCode_ = outer;
  const std::optional<TreeItem*> before = std::exchange(changedFrom_, std::nullopt);
  if (before) raiseNodeClick(*before);
}

void QtTreeView::clearSelection() {
  const bool outer = std::exchange(byCode_, true);
  tree_.selectionModel()->clear();
  byCode_ = outer;
  changedFrom_.reset();
}

void QtTreeView::noteExpanded(const QModelIndex& index, bool value) {
  TreeItem& item = *TreeModel::itemOf(index);
  item.noteExpanded(value);
  model_.announceLooks(item);
  if (byCode_) return;
  guarded([&] { raise(value ? Expand : Collapse, item); });
}

void QtTreeView::setExpanded(TreeItem& item, bool value) {
  if (value == item.Expanded() || item.Children() == 0) return;
  model_.showWaiting();
  const bool outer = std::exchange(byCode_, true);
  tree_.setExpanded(model_.indexOf(item), value);
  byCode_ = outer;
  raise(value ? Expand : Collapse, item);
}

void QtTreeView::makeVisible(TreeItem& item) {
  std::vector<std::string> above;
  for (const TreeItem* up = item.place().parent; up->place().parent; up = up->place().parent) {
    above.push_back(up->Key());
  }
  const std::string key = item.Key();
  for (auto up = above.rbegin(); up != above.rend(); ++up) {
    if (TreeItem* const found = model_.find(*up)) setExpanded(*found, true);
  }
  model_.showWaiting();
  // A handler may have cleared the tree.
  if (const TreeItem* const found = model_.find(key)) tree_.scrollTo(model_.indexOf(*found));
}

// -- Properties -------------------------------------------------------------------------------------------

std::int32_t QtTreeView::BorderStyle() const { return tree_.frameShape() == QFrame::NoFrame ? 0 : 1; }

void QtTreeView::BorderStyle(std::int32_t value) {
  tree_errors::requireUpTo(kLargestBorderStyle, value);
  tree_.setFrameShape(value == 0 ? QFrame::NoFrame : QFrame::StyledPanel);
}

std::string QtTreeView::Font() const {
  const QFont font = tree_.font();
  const double size = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
  return fromQt(font.family() + QStringLiteral(", ") + QString::number(size));
}

void QtTreeView::Font(const std::string& value) {
  const QString text = toQt(value);
  const qsizetype comma = text.lastIndexOf(u',');
  const double size = comma < 0 ? 0 : text.mid(comma + 1).trimmed().toDouble();
  QFont font = tree_.font();
  font.setFamily((comma < 0 ? text : text.left(comma)).trimmed());
  if (size > 0) font.setPointSizeF(size);
  tree_.setFont(font);
}

void QtTreeView::Indentation(float value) { tree_.setIndentation(static_cast<int>(std::lround(value))); }

void QtTreeView::LineStyle(std::int32_t value) {
  tree_errors::requireUpTo(kLargestLineStyle, value);
  tree_.setRootIsDecorated(value == 1);
}

void QtTreeView::Style(std::int32_t value) {
  tree_errors::requireUpTo(kLargestTreeStyle, value);
  style_ = value;
  model_.setPictures(value & kPictures);
  tree_.setSigns(value & kSigns);
  tree_.setLines(value & kLines);
}

}  // namespace kestrel::qt
