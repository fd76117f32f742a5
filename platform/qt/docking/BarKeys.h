#pragma once

#include <QObject>
#include <QToolBar>
#include <QToolButton>
#include <vector>

namespace kestrel::qt {

/// The keyboard in tool bars. The buttons of a bar are one stop of the Tab key; the arrow keys, Home and End
/// move among them, Return and Space press, and Escape moves the focus to the content of the control.
class BarKeys final : public QObject {
  Q_OBJECT

 public:
  /// `control` is the widget of the whole control.
  explicit BarKeys(QWidget& control) : control_(control) {}

  /// Takes a new button of a bar.
  void add(QToolButton& button);
  /// Makes a button the bar's stop that can be pressed. Call it when the buttons or their states have
  /// changed.
  void update(const QToolBar& bar);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool press(QToolButton& button, int key);

  QWidget& control_;
};

}  // namespace kestrel::qt
