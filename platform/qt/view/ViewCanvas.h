#pragma once

#include <QImage>
#include <QRegion>
#include <QWidget>

namespace kestrel::engine {
class View;
}

namespace kestrel::qt {

/// Shows what a view paints, one device pixel for each of its pixels, whatever the screen's factor is and
/// wherever the widget stands; and hands it the pointer, the wheel and the keys.
class ViewCanvas final : public QWidget {
  Q_OBJECT

 public:
  explicit ViewCanvas(QWidget* parent);

  /// The view whose pixels these are. It must live as long as events come; null ends that.
  void setView(engine::View* view);

  /// A part of the view, in device pixels, has to be painted.
  void invalidate(const QRect& deviceArea);
  void invalidateAll();

  /// Tells the view its present size. Called where the widget's place or the screen's factor may have
  /// changed.
  void measure();
  QSize deviceSize() const { return deviceSize_; }
  /// A position in the widget as one in the view.
  QPointF toView(const QPointF& position) const;
  /// A position on the screen as one in the view. Whole positions of the screen are coarser than the view's
  /// pixels at a factor above 1: where the pointer was seen last, its own position counts.
  QPointF screenToView(const QPoint& screen) const;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// The widget's top left corner in device pixels of its window; a fraction where the factor is one.
  QPointF deviceOrigin() const;
  QPointF pointerInView(const QPointF& position);
  void paintDirty();

  engine::View* view_ = nullptr;
  QSize deviceSize_;
  QPointF pointer_;  ///< its latest position in the widget
  double factor_ = 1.0;
  QImage buffer_;
  QRegion dirty_;
};

}  // namespace kestrel::qt
