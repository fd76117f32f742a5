#pragma once

#include <QToolButton>

namespace kestrel::qt {

/// A button of a 3 by 3 grid that chooses a place. Its picture is an arrow from the middle of the grid to the
/// place, or a dot for the middle.
///
/// The buttons of a grid are one stop for Tab, the checked button; the arrow keys choose the neighbor. They
/// are siblings with the properties `index`, 0 to 8 in reading order, and `checkable`.
class PlacementButton final : public QToolButton {
  Q_OBJECT

 public:
  explicit PlacementButton(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void checkStateSet() override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int place() const { return property("index").toInt(); }
  /// The button this many columns and rows away; null beyond the edge.
  PlacementButton* neighbor(int columns, int rows) const;
};

}  // namespace kestrel::qt
