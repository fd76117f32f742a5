#pragma once

#include <QObject>
#include <QPushButton>

namespace kestrel::qt {

/// Marks the push button that has the keyboard focus. The style Fusion outlines it like the default button of
/// the window, so that nobody sees which one the space bar presses. Other styles show the focus themselves.
class ButtonFocus final : public QObject {
 public:
  /// Lives as long as the button.
  explicit ButtonFocus(QPushButton& button);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void paint();

  QPushButton& button_;
};

}  // namespace kestrel::qt
