#pragma once

#include <QImage>
#include <QRegion>
#include <QWidget>

class QPainter;

namespace kestrel::engine {
class View;
}

namespace kestrel::qt {

/// Displays a view's pixels 1:1 on device pixels, at any scale and position of the widget; passes pointer,
/// wheel and keys to the view.
class ViewCanvas final : public QWidget {
  Q_OBJECT

 public:
  explicit ViewCanvas(QWidget* parent);

  /// The displayed view. It must live as long as events arrive; null detaches it.
  void setView(engine::View* view);
  engine::View* view() const { return view_; }

  /// Schedules a part of the view, in device pixels, for painting.
  void invalidate(const QRect& deviceArea);
  void invalidateAll();

  /// Call after the widget has moved, also with its parent: measures, and the resting pointer is at another
  /// position of the view.
  void moved();
  /// Passes the current size to the view. Called when the widget's position or the scale may have changed.
  void measure();
  QSize deviceSize() const { return deviceSize_; }
  /// Converts a position in the widget to view pixels.
  QPointF toView(const QPointF& position) const;
  /// Converts a position on the screen to view pixels. Integer screen positions are coarser than view pixels
  /// at a scale above 1: at the last known pointer position its exact value is used.
  QPointF screenToView(const QPoint& screen) const;

  /// The cursor's rectangle is the visible part of the selection, where the menu key opens the menu.
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 Q_SIGNALS:
  void painted();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override { press(*event, false); }
  void mouseDoubleClickEvent(QMouseEvent* event) override { press(*event, true); }
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QPointF pointerInView(const QPointF& position);
  void press(const QMouseEvent& event, bool again);
  void paintDirty();
  void paintHint(QPainter& painter) const;

  engine::View* view_ = nullptr;
  QSize deviceSize_;
  QPointF pointer_;  ///< last pointer position on the screen
  double factor_ = 1.0;
  QImage buffer_;
  QRegion dirty_;
};

}  // namespace kestrel::qt
