#include "DigitBox.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QVariant>
#include <QWheelEvent>
#include <algorithm>
#include <limits>

#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kPage = 10;
constexpr char kMaximum[] = "maximum";

/// The step of a key; 0 for keys that do not step.
int stepOf(int key) {
  switch (key) {
    case Qt::Key_Up:
      return 1;
    case Qt::Key_Down:
      return -1;
    case Qt::Key_PageUp:
      return kPage;
    case Qt::Key_PageDown:
      return -kPage;
    default:
      return 0;
  }
}

/// The digits of a text, each as 0 to 9.
QString digitsIn(const QString& text) {
  QString digits;
  for (const QChar character : text) {
    if (const int digit = character.digitValue(); digit >= 0 && character.isDigit()) {
      digits += QString::number(digit);
    }
  }
  return digits;
}

/// The whole part of the number that the text begins with, within 32 bits.
qint64 numberIn(const QString& text) {
  constexpr double kLow = std::numeric_limits<qint32>::min(), kHigh = std::numeric_limits<qint32>::max();
  try {
    return static_cast<qint64>(std::clamp(Val(fromQt(text)), kLow, kHigh));
  } catch (const RuntimeError&) {  // beyond the range of double
    return std::numeric_limits<qint32>::max();
  }
}

}  // namespace

void DigitBox::install(QLineEdit& edit) {
  for (const QObject* child : edit.children()) {
    if (dynamic_cast<const DigitBox*>(child)) return;
  }
  new DigitBox(edit);
}

DigitBox::DigitBox(QLineEdit& edit) : QObject(&edit), edit_(edit) {
  edit.installEventFilter(this);
  edit.setInputMethodHints(edit.inputMethodHints() | Qt::ImhDigitsOnly);
}

bool DigitBox::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      return onKey(static_cast<const QKeyEvent&>(*event));
    case QEvent::InputMethod:
      return onInputMethod(static_cast<const QInputMethodEvent&>(*event));
    case QEvent::Wheel:
      return onWheel(static_cast<const QWheelEvent&>(*event));
    case QEvent::FocusOut:
      wheel_ = 0;
      return false;
    default:
      return false;
  }
}

bool DigitBox::onKey(const QKeyEvent& key) {
  // Keys with Control are commands of the edit, such as paste.
  if (key.modifiers().testFlag(Qt::ControlModifier)) return false;
  const bool modified = key.modifiers().testAnyFlags(Qt::ShiftModifier | Qt::AltModifier);
  if (const int by = modified ? 0 : stepOf(key.key())) {
    step(by);
    return true;
  }
  const QString typed = key.text();
  if (typed.isEmpty() || !typed[0].isPrint() || (typed[0] >= u'0' && typed[0] <= u'9')) return false;
  enter(typed);
  return true;
}

bool DigitBox::onInputMethod(const QInputMethodEvent& input) {
  const QString& entered = input.commitString();
  // The edit itself replaces a part of its text, as a correction asks for.
  if (input.preeditString().isEmpty() && entered == digitsIn(entered)) return false;
  enter(entered);
  return true;
}

void DigitBox::enter(const QString& text) {
  const QString digits = digitsIn(text);
  if (!digits.isEmpty() && !edit_.isReadOnly()) edit_.insert(digits);
}

bool DigitBox::onWheel(const QWheelEvent& wheel) {
  if (!edit_.hasFocus()) return false;
  wheel_ += wheel.angleDelta().y();
  const int steps = wheel_ / QWheelEvent::DefaultDeltasPerStep;
  wheel_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0) step(steps);
  return true;
}

qint64 DigitBox::highest() const {
  const QVariant maximum = edit_.property(kMaximum);
  return maximum.isValid() ? maximum.toInt() : std::numeric_limits<qint32>::max();
}

void DigitBox::step(int by) {
  if (edit_.isReadOnly()) return;
  const qint64 now = numberIn(edit_.text());
  const qint64 low = now < 0 ? std::numeric_limits<qint32>::min() : 0;
  const qint64 next = std::clamp(now + by, low, highest());
  const QString text = QString::number(next);
  edit_.selectAll();
  if (text == edit_.text()) return;
  edit_.insert(text);  // which can be undone
  edit_.selectAll();
}

}  // namespace kestrel::qt
