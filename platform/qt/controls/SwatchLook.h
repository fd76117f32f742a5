#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QObject>

namespace kestrel::qt {

/// Paints a button as a field of one color with a frame in the desktop's style, so that the style does not
/// tint the color.
class SwatchLook final : public QObject {
 public:
  explicit SwatchLook(QAbstractButton& button);

  /// An invalid color restores the button's own appearance. The color of the window follows the theme.
  void show(const QColor& color, bool pressed);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAbstractButton& button_;
  QColor color_;
  bool isColorOfWindow_ = false;
  bool pressed_ = false;
};

}  // namespace kestrel::qt
