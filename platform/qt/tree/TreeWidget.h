#pragma once

#include <QBasicTimer>
#include <QPersistentModelIndex>
#include <QTreeView>
#include <cstdint>

namespace kestrel::qt {

/// The view of a tree: one selected node, signs and lines as set, and its input as signals.
///
/// The left button selects and expands, the other buttons do neither. Dragging selects nothing.
class TreeWidget final : public QTreeView {
  Q_OBJECT

 public:
  /// Exchanges the files of nodes with other programs.
  class Files {
   public:
    virtual ~Files() = default;
    /// Uses a key of the clipboard for the selected node, which may be invalid. May destroy the widget.
    virtual void useKey(const QKeyEvent& event, const QModelIndex& index) = 0;
    /// A drag has come; whether it brings files.
    virtual bool dragEntered(const QDropEvent& event) = 0;
    virtual void dragLeft() = 0;
    /// What its drop on the node would do now.
    virtual Qt::DropAction dropAction(const QDropEvent& event, const QModelIndex& index) = 0;
    virtual void drop(QDropEvent& event, const QModelIndex& index) = 0;
  };

  explicit TreeWidget(QWidget* parent = nullptr);

  /// Without files, of which there are none at first, drops are refused.
  void setFiles(Files* files);
  void setSigns(bool value);
  void setLines(bool value);
  void setHideSelection(bool value);
  bool hidesSelection() const { return hidesSelection_; }

  /// What is at the top of the view when the scroll position is held is there again after its release,
  /// although nodes above it have come or gone.
  void holdScroll();
  void releaseScroll();

  /// Whether input is being processed; `inputEnded` follows.
  bool inInput() const { return inInput_; }
  /// The check box of a visible node in the viewport; empty if it has none.
  QRect checkBoxOf(const QModelIndex& index) const;

 Q_SIGNALS:
  // Masks of buttons and modifiers, positions in the viewport.
  void mousePressed(int button, int shift, const QPointF& at);
  void mouseMoved(int buttons, int shift, const QPointF& at);
  void mouseReleased(int button, int shift, const QPointF& at);
  void leftClicked();
  void doublePressed();
  void keyDown(int keyCode, int shift);
  void characterTyped(int character);
  void keyUp(int keyCode, int shift);
  /// The view has processed input; whether it was a press on the text of a node.
  void inputEnded(bool nodePressed);

 protected:
  bool event(QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void updateGeometries() override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;

 private:
  void fitColumn();
  void drawLines(QPainter& painter, const QRect& rect, const QModelIndex& index) const;
  void pressLeft(const QMouseEvent& event);
  /// Toggles the check box at a position; false if there is none.
  bool toggleCheckBox(const QPoint& at);

  bool isClipboardKey(const QKeyEvent& event) const;
  void setDropTarget(const QModelIndex& index);

  Files* files_ = nullptr;
  QPersistentModelIndex top_;  // while the scroll position is held
  int topOffset_ = 0;
  QPersistentModelIndex dropTarget_;
  QBasicTimer expandTimer_;  // while a drag rests on a collapsed node
  bool signs_ = true;
  bool lines_ = true;
  bool hidesSelection_ = false;
  bool inInput_ = false;
  bool pressedByView_ = false;  // the base class has seen the press, so it gets the release
  bool secondPress_ = false;    // of a double click
};

}  // namespace kestrel::qt
