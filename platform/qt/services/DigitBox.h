#pragma once

#include <QLineEdit>

namespace kestrel::qt {

/// Makes an edit a box for a whole number. Typed characters other than digits are blocked, from the keyboard
/// and from an input method; digits of other scripts are entered as 0 to 9. Pasted and set text is not
/// checked. Up and Down, and the wheel while the edit has the focus, step the number by 1, Page
/// Up and Page Down by 10. A step does not lead below 0, unless the number is negative already, nor above the
/// edit's dynamic property `maximum`, if it has one. Typed numbers have no maximum.
///
/// The edit owns it. A second one for the same edit has no effect.
class DigitBox final : public QObject {
 public:
  static void install(QLineEdit& edit);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  explicit DigitBox(QLineEdit& edit);

  bool onKey(const QKeyEvent& key);
  /// Text that is being composed is not shown.
  bool onInputMethod(const QInputMethodEvent& input);
  bool onWheel(const QWheelEvent& wheel);
  /// Enters the digits of a text at the cursor, instead of the selected text.
  void enter(const QString& text);
  void step(int by);
  /// The highest number that a step leads to.
  qint64 highest() const;

  QLineEdit& edit_;
  int wheel_ = 0;  ///< turned, in eighths of a degree, less the steps done
};

}  // namespace kestrel::qt
