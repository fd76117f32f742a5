#pragma once

#include <QAbstractScrollArea>
#include <QRegion>
#include <QTimer>
#include <cstdint>
#include <optional>

#include "ThumbnailPainter.h"
#include "WheelGlide.h"
#include "imaging/contract/Types.h"
#include "platform/thumbnailview/Arrangement.h"

class QHelpEvent;

namespace kestrel::thumbnails {
class ThumbnailViewModel;
}

namespace kestrel::qt {

class FileTraffic;

/// The widget of a thumbnail view: paints its items in device pixels, and passes pointer, wheel, keys, drags
/// and the clipboard's keys on.
///
/// What the view reports during a call is noted, and done when the call has returned.
class ThumbnailArea final : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit ThumbnailArea(QWidget* parent = nullptr);
  ~ThumbnailArea() override;

  /// The displayed view, and what copies and moves its files. Both must live as long as events arrive; null
  /// detaches them.
  void setView(thumbnails::ThumbnailViewModel* view, FileTraffic* files);
  thumbnails::ThumbnailViewModel* view() const { return view_; }
  FileTraffic* files() const { return files_; }

  // Reported by the view.
  /// An area of the viewport in device pixels.
  void invalidate(const Rectangle& area);
  void scrollChanged();
  void itemsChanged();
  void selectionChanged();
  void focusItemChanged();
  void dragWanted() { dragWanted_ = true; }

  /// Repaints everything, after a change of how items look.
  void repaintItems();
  /// The item below the pointer, -1 if there is none.
  std::int32_t hoveredItem() const { return hovered_; }

  /// Converts a position in the viewport to device pixels, which are the view's units, and back.
  Point toView(const QPointF& position) const;
  QRect fromView(const Rectangle& area) const;

  QSize sizeHint() const override { return {640, 480}; }
  /// The cursor's rectangle is that of the focused item, where the menu key opens the menu.
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct Noted {
    bool scroll = false, items = false, selection = false, focus = false;
  };

  void note(bool Noted::*what);
  /// Does what was noted.
  void catchUp();
  /// Passes size and metrics to the view if they differ.
  void layOutView();
  void updateBars();
  void restyle();
  void hover(const QPoint& position);
  void hoverItem(std::int32_t item);
  void showTip(const QHelpEvent& event);
  void paintItems(QPainter& painter, const QRegion& exposed);
  void paintLargePicture(QPainter& painter);
  bool useClipboardKey(const QKeyEvent& event);
  bool claimsKey(const QKeyEvent& event) const;
  void setDropping(bool value);

  thumbnails::ThumbnailViewModel* view_ = nullptr;
  FileTraffic* files_ = nullptr;
  ThumbnailPainter painter_;
  WheelGlide glide_;
  QTimer catchUpTimer_;
  Noted noted_;
  thumbnails::Metrics metrics_;  ///< those of the view's layout
  std::int32_t hovered_ = -1;
  double wheelRest_ = 0;  ///< notches not yet used for a step in the single view
  bool updatingBars_ = false;
  bool dragWanted_ = false;
  bool dropping_ = false;  ///< files that the view would take are above it
};

}  // namespace kestrel::qt
