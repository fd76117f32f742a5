#include "TreeWidget.h"

#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimerEvent>
#include <algorithm>
#include <utility>

#include "platform/qt/core/Keys.h"

namespace kestrel::qt {
namespace {

/// The share of the text's color in that of the lines.
constexpr double kLineStrength = 0.35;
/// How long a drag rests on a collapsed node until that expands.
constexpr int kExpandMilliseconds = 800;
/// Of the frame around the node that a drop would go to, in pixels.
constexpr int kTargetWidth = 2;
/// The share of the text's color in that of the selection without the focus.
constexpr double kRestingStrength = 0.2;
/// Half of the space that a sign takes of the lines, in pixels.
constexpr int kSignRadius = 6;

QColor lineColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::Text);
  color.setAlphaF(static_cast<float>(kLineStrength));
  return color;
}

/// The ground of the selected row while the tree does not have the focus. Not of the palette: in many themes
/// it is the same with and without the focus there.
QColor restingSelection(const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base);
  const QColor text = palette.color(QPalette::Text);
  const auto mixed = [](int from, int to) { return from + static_cast<int>((to - from) * kRestingStrength); };
  return {mixed(base.red(), text.red()), mixed(base.green(), text.green()), mixed(base.blue(), text.blue())};
}

bool hasNextSibling(const QModelIndex& index) { return index.sibling(index.row() + 1, 0).isValid(); }

/// Lets the view compute the parts of an item.
class TreeDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    if ((option->state & QStyle::State_Active) || option->icon.isNull()) return;
    // The icon for the selection has the color of its text, which is hardly seen on the ground of a selection
    // without the focus.
    const QPixmap normal =
        option->icon.pixmap(option->decorationSize, option->widget->devicePixelRatioF(), QIcon::Normal);
    option->icon = QIcon(normal);
    option->icon.addPixmap(normal, QIcon::Selected);
  }
};

QMouseEvent withoutModifiers(const QMouseEvent& event) {
  return QMouseEvent(event.type(), event.position(), event.globalPosition(), event.button(), event.buttons(),
                     Qt::NoModifier);
}

bool isNavigation(int key) {
  switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      return true;
    default:
      return false;
  }
}

}  // namespace

TreeWidget::TreeWidget(QWidget* parent) : QTreeView(parent) {
  setItemDelegate(new TreeDelegate(this));
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setExpandsOnDoubleClick(false);
  setMouseTracking(true);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  header()->setStretchLastSection(false);
  header()->setResizeContentsPrecision(0);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { fitColumn(); });
}

/// The one column is as wide as the view, or as its visible texts if they are wider.
void TreeWidget::fitColumn() {
  if (!model()) return;
  const int width = std::max(viewport()->width(), sizeHintForColumn(0));
  if (header()->sectionSize(0) != width) header()->resizeSection(0, width);
}

void TreeWidget::updateGeometries() {
  QTreeView::updateGeometries();
  fitColumn();
}

void TreeWidget::holdScroll() {
  top_ = verticalScrollBar()->value() > 0 ? indexAt(QPoint(0, 0)) : QModelIndex();
  topOffset_ = visualRect(top_).top();
}

void TreeWidget::releaseScroll() {
  const QPersistentModelIndex top = std::exchange(top_, {});
  if (!top.isValid()) return;
  const int moved = visualRect(top).top() - topOffset_;
  if (moved != 0) verticalScrollBar()->setValue(verticalScrollBar()->value() + moved);
}

void TreeWidget::setSigns(bool value) {
  signs_ = value;
  viewport()->update();
}

void TreeWidget::setLines(bool value) {
  lines_ = value;
  viewport()->update();
}

void TreeWidget::setHideSelection(bool value) {
  hidesSelection_ = value;
  viewport()->update();
}

QRect TreeWidget::checkBoxOf(const QModelIndex& index) const {
  if (!(index.flags() & Qt::ItemIsUserCheckable)) return {};
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  option.rect = visualRect(index);
  static_cast<const TreeDelegate*>(itemDelegate())->initStyleOption(&option, index);
  return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this);
}

// -- Input ------------------------------------------------------------------------------------------------

bool TreeWidget::toggleCheckBox(const QPoint& at) {
  const QModelIndex index = indexAt(at);
  if (!index.isValid() || !checkBoxOf(index).contains(at)) return false;
  const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  model()->setData(index, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
  return true;
}

void TreeWidget::pressLeft(const QMouseEvent& event) {
  const QPointer<TreeWidget> self(this);
  const QPoint at = event.position().toPoint();
  if (toggleCheckBox(at)) return;
  const QPersistentModelIndex index = indexAt(at);
  // On the ground, or with Ctrl, the view would clear the selection.
  if (!index.isValid()) {
    Q_EMIT inputEnded(false);
    return;
  }
  QMouseEvent plain = withoutModifiers(event);
  inInput_ = true;
  pressedByView_ = true;
  QTreeView::mousePressEvent(&plain);
  if (!self) return;
  inInput_ = false;
  Q_EMIT inputEnded(visualRect(index).contains(at));
}

void TreeWidget::mousePressEvent(QMouseEvent* event) {
  const QPointer<TreeWidget> self(this);
  pressedByView_ = false;
  secondPress_ = false;
  Q_EMIT mousePressed(buttonMaskOf(event->button()), shiftMaskOf(event->modifiers()), event->position());
  if (self && event->button() == Qt::LeftButton) pressLeft(*event);
  event->accept();
}

void TreeWidget::mouseMoveEvent(QMouseEvent* event) {
  const QPointer<TreeWidget> self(this);
  Q_EMIT mouseMoved(buttonMaskOf(event->buttons()), shiftMaskOf(event->modifiers()), event->position());
  if (self && event->buttons() == Qt::NoButton) QTreeView::mouseMoveEvent(event);
}

void TreeWidget::mouseReleaseEvent(QMouseEvent* event) {
  const QPointer<TreeWidget> self(this);
  const bool left = event->button() == Qt::LeftButton;
  if (left && pressedByView_) {
    QMouseEvent plain = withoutModifiers(*event);
    QTreeView::mouseReleaseEvent(&plain);
  }
  if (!self) return;
  pressedByView_ = false;
  const bool single = !std::exchange(secondPress_, false);
  Q_EMIT mouseReleased(buttonMaskOf(event->button()), shiftMaskOf(event->modifiers()), event->position());
  if (self && left && single) Q_EMIT leftClicked();
}

void TreeWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return mousePressEvent(event);
  const QPointer<TreeWidget> self(this);
  secondPress_ = true;
  const QPoint at = event->position().toPoint();
  if (toggleCheckBox(at)) return;
  const QPersistentModelIndex index = indexAt(at);
  Q_EMIT doublePressed();
  if (self && index.isValid() && model()->hasChildren(index)) setExpanded(index, !isExpanded(index));
}

void TreeWidget::keyPressEvent(QKeyEvent* event) {
  const QPointer<TreeWidget> self(this);
  const KeyStroke stroke = keyStrokeOf(*event);
  const QString text = event->text();
  if (stroke.keyCode != 0) Q_EMIT keyDown(stroke.keyCode, stroke.shift);
  if (self && !text.isEmpty()) Q_EMIT characterTyped(text[0].unicode());
  if (!self) return;
  if (isClipboardKey(*event)) return files_->useKey(*event, currentIndex());

  inInput_ = true;
  if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Asterisk) {
    // By an asterisk the view would expand all levels below, which never ends where a link leads back up.
    if (model()->hasChildren(currentIndex())) expand(currentIndex());
  } else if (event->key() == Qt::Key_Minus) {
    // The view would also search for a node whose text begins with the sign.
    collapse(currentIndex());
  } else if (isNavigation(event->key())) {
    // With Ctrl the view would move without selecting.
    QKeyEvent plain(event->type(), event->key(), event->modifiers() & Qt::KeypadModifier);
    QTreeView::keyPressEvent(&plain);
  } else if (event->key() == Qt::Key_Escape) {
    event->ignore();
  } else {
    QTreeView::keyPressEvent(event);
  }
  if (!self) return;
  inInput_ = false;
  Q_EMIT inputEnded(false);
}

bool TreeWidget::isClipboardKey(const QKeyEvent& event) const {
  return files_ && (event.matches(QKeySequence::Copy) || event.matches(QKeySequence::Cut) ||
                    event.matches(QKeySequence::Paste));
}

bool TreeWidget::event(QEvent* event) {
  // Before a shortcut of the window.
  if (event->type() == QEvent::ShortcutOverride && isClipboardKey(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return QTreeView::event(event);
}

void TreeWidget::keyReleaseEvent(QKeyEvent* event) {
  const KeyStroke stroke = keyStrokeOf(*event);
  if (stroke.keyCode != 0) Q_EMIT keyUp(stroke.keyCode, stroke.shift);
  event->ignore();
}

void TreeWidget::focusInEvent(QFocusEvent* event) {
  QTreeView::focusInEvent(event);
  viewport()->update();
}

// -- Drops ------------------------------------------------------------------------------------------------

void TreeWidget::setFiles(Files* files) {
  files_ = files;
  setAcceptDrops(files != nullptr);
}

void TreeWidget::setDropTarget(const QModelIndex& index) {
  if (index == dropTarget_) return;
  dropTarget_ = index;
  expandTimer_.stop();
  if (index.isValid() && model()->hasChildren(index) && !isExpanded(index)) {
    expandTimer_.start(kExpandMilliseconds, this);
  }
  viewport()->update();
}

void TreeWidget::timerEvent(QTimerEvent* event) {
  if (event->timerId() != expandTimer_.timerId()) return QTreeView::timerEvent(event);
  expandTimer_.stop();
  if (dropTarget_.isValid()) expand(dropTarget_);
}

void TreeWidget::dragEnterEvent(QDragEnterEvent* event) {
  event->ignore();
  if (!files_ || !files_->dragEntered(*event)) return;
  dragMoveEvent(event);
  // Other nodes may take what this one does not.
  event->accept();
}

void TreeWidget::dragMoveEvent(QDragMoveEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  const Qt::DropAction action = files_ ? files_->dropAction(*event, index) : Qt::IgnoreAction;
  setDropTarget(action == Qt::IgnoreAction ? QModelIndex() : index);
  event->setDropAction(action);
  event->setAccepted(action != Qt::IgnoreAction);
}

void TreeWidget::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
  setDropTarget({});
  if (files_) files_->dragLeft();
}

void TreeWidget::dropEvent(QDropEvent* event) {
  event->ignore();
  setDropTarget({});
  if (files_) files_->drop(*event, indexAt(event->position().toPoint()));
}

// -- Painting ---------------------------------------------------------------------------------------------

void TreeWidget::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyleOptionViewItem row = option;
  if (!hasFocus()) {
    row.state &= ~QStyle::State_Active;
    row.palette.setColor(QPalette::Highlight,
                         hidesSelection_ ? row.palette.color(QPalette::Base) : restingSelection(row.palette));
    row.palette.setColor(QPalette::HighlightedText, row.palette.color(QPalette::Text));
  }
  QTreeView::drawRow(painter, row, index);
  if (index != dropTarget_) return;
  painter->save();
  painter->setPen(QPen(palette().color(QPalette::Active, QPalette::Highlight), kTargetWidth));
  painter->drawRect(visualRect(index).adjusted(1, 1, -1, -1));
  painter->restore();
}

void TreeWidget::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
  if (lines_) drawLines(*painter, rect, index);
  if (signs_) QTreeView::drawBranches(painter, rect, index);
}

void TreeWidget::drawLines(QPainter& painter, const QRect& rect, const QModelIndex& index) const {
  const int width = indentation();
  const bool mirrored = isRightToLeft();
  int x = mirrored ? rect.left() + width / 2 : rect.right() + 1 - width / 2;
  const int middle = rect.center().y();
  const auto isInside = [&] { return x >= rect.left() && x <= rect.right(); };
  if (!isInside()) return;

  painter.save();
  painter.setPen(QPen(lineColor(palette()), 1));
  const int gap = signs_ && model()->hasChildren(index) ? kSignRadius : 0;
  const bool isTop = index.row() == 0 && !index.parent().isValid();
  if (!isTop) painter.drawLine(x, rect.top(), x, middle - gap);
  if (hasNextSibling(index)) painter.drawLine(x, middle + gap, x, rect.bottom());
  if (mirrored) {
    painter.drawLine(x - gap, middle, rect.left(), middle);
  } else {
    painter.drawLine(x + gap, middle, rect.right(), middle);
  }
  for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
    x += mirrored ? width : -width;
    if (isInside() && hasNextSibling(above)) painter.drawLine(x, rect.top(), x, rect.bottom());
  }
  painter.restore();
}

}  // namespace kestrel::qt
