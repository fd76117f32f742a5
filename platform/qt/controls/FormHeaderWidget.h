#pragma once

#include <QLabel>
#include <QPushButton>
#include <QRect>
#include <QWidget>

namespace kestrel::qt {

/// Covers a window without a layout, behind its other widgets: a strip with the window's title at the top,
/// and a row with OK and Cancel at the bottom. The area between them is left to the window.
///
/// It gives the other widgets their natural sizes, all frames the height of the tallest. Widgets of a fixed
/// height, such as check boxes, belong to the left part of the row and are placed there from left to right;
/// their `y` is left to the window. The window cannot become smaller than the frames next to each other below
/// the remaining widgets.
class FormHeaderWidget final : public QWidget {
  Q_OBJECT

 public:
  explicit FormHeaderWidget(QWidget* parent = nullptr);

  QString title() const { return title_->text(); }
  QPushButton& ok() const { return *ok_; }
  QPushButton& cancel() const { return *cancel_; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  void okClicked();
  void cancelClicked();
  /// The area that is left to the visible window, in its coordinates. Emitted for each new layout.
  void laidOut(const QRect& client);

 protected:
  bool event(QEvent* event) override;

 private:
  /// The space that the other widgets need.
  struct Needs {
    QSize frames;  ///< all next to each other, with their gaps
    QSize row;     ///< of the widgets in the row, with their gaps
    QSize rest;    ///< the smallest size of the largest remaining widget
  };

  void layOut();
  Needs sizeSiblings(int gap) const;

  QLabel* title_;
  QPushButton* ok_;
  QPushButton* cancel_;
};

}  // namespace kestrel::qt
