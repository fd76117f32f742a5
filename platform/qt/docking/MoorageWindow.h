#pragma once

#include <QMainWindow>
#include <functional>

namespace kestrel::qt {

/// The window of the docking suite inside its container: bars around an empty client area. The content is a
/// sibling of the suite above that area.
class MoorageWindow final : public QMainWindow {
  Q_OBJECT

 public:
  /// `parent` is the widget of the whole control.
  explicit MoorageWindow(QWidget* parent);

  /// The area that the bars and docked windows leave free, in this widget's pixels.
  QRect clientArea();

  /// The smallest size at which bars and docked windows fit around the client area. Those that are shown are
  /// counted, and what `setRoomForHidden` adds.
  QSize minimumSizeHint() const override;
  /// The same around a content of that smallest size.
  QSize minimumSizeFor(const QSize& content) const;
  QSize minimumSizeOfShown() const { return QMainWindow::minimumSizeHint(); }
  /// What the docked windows would need that are hidden for lack of room.
  void setRoomForHidden(const QSize& room) { roomForHidden_ = room; }

  /// Fills the context menu of the bars.
  std::function<void(QMenu&)> fillBarMenu;

  QMenu* createPopupMenu() override;

 Q_SIGNALS:
  void clientAreaChanged();
  /// Size, visibility, bars or dock windows have changed.
  void roomChanged();
  /// The smallest size at which bars and dock windows fit may be another now.
  void smallestSizeChanged();
  void layoutDirectionChanged();

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* client_;
  QSize roomForHidden_{0, 0};
};

}  // namespace kestrel::qt
