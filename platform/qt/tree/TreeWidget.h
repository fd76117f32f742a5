#pragma once

#include <QTreeView>
#include <cstdint>

namespace kestrel::qt {

/// The view of a tree: one selected node, signs and lines as set, and its input as signals.
///
/// The left button selects and expands, the other buttons do neither. Dragging selects nothing.
class TreeWidget final : public QTreeView {
  Q_OBJECT

 public:
  explicit TreeWidget(QWidget* parent = nullptr);

  void setSigns(bool value);
  void setLines(bool value);
  void setHideSelection(bool value);
  bool hidesSelection() const { return hidesSelection_; }

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

  bool signs_ = true;
  bool lines_ = true;
  bool hidesSelection_ = false;
  bool inInput_ = false;
  bool pressedByView_ = false;  // the base class has seen the press, so it gets the release
  bool secondPress_ = false;    // of a double click
};

}  // namespace kestrel::qt
