#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QObject>

namespace kestrel::qt {

/// Paints a button as a field of one colour, with a frame in the desktop's style: the colours that users
/// choose must not be tinted by the style.
class SwatchLook final : public QObject {
 public:
  explicit SwatchLook(QAbstractButton& button);

  /// An invalid colour gives the button its own looks back.
  void show(const QColor& color, bool pressed);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAbstractButton& button_;
  QColor color_;
  bool pressed_ = false;
};

}  // namespace kestrel::qt
