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

  /// Fills the context menu of the bars.
  std::function<void(QMenu&)> fillBarMenu;

  QMenu* createPopupMenu() override;

 Q_SIGNALS:
  void clientAreaChanged();
  /// The smallest size at which bars and dock windows fit may be another now.
  void smallestSizeChanged();

 protected:
  bool event(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* client_;
};

}  // namespace kestrel::qt
