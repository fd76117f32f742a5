#pragma once

#include <QMainWindow>
#include <functional>

namespace kestrel::qt {

/// The frame of the docking suite inside its container: bars around a client area that stays empty, since
/// what is shown there stands beside the suite and not in it.
class MoorageWindow final : public QMainWindow {
  Q_OBJECT

 public:
  /// The parent is the widget of the whole control.
  explicit MoorageWindow(QWidget* parent);

  /// What the bars and docked windows leave free, in this widget's pixels.
  QRect clientArea();

  /// Fills the menu that the bars open on a right click.
  std::function<void(QMenu&)> fillBarMenu;

  QMenu* createPopupMenu() override;

 Q_SIGNALS:
  void clientAreaChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* client_;
};

}  // namespace kestrel::qt
