#include "HotKeyFilter.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <algorithm>
#include <array>

#include "../Guard.h"
#include "../Keys.h"

namespace kestrel::qt {
namespace {

bool takesText(const QWidget& widget) {
  return qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QTextEdit*>(&widget) ||
         qobject_cast<const QPlainTextEdit*>(&widget) || qobject_cast<const QAbstractSpinBox*>(&widget);
}

/// Keys that write or edit a text, or move in it.
bool editsText(const QKeyEvent& event) {
  static constexpr std::array kEditing = {QKeySequence::Copy, QKeySequence::Cut,  QKeySequence::Paste,
                                          QKeySequence::Undo, QKeySequence::Redo, QKeySequence::SelectAll};
  const bool plain = !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
  const bool isFunctionKey = event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35;
  if (plain) return !isFunctionKey;
  return std::any_of(kEditing.begin(), kEditing.end(),
                     [&event](QKeySequence::StandardKey standard) { return event.matches(standard); });
}

}  // namespace

HotKeyFilter::HotKeyFilter(docking::MoorageModel& suite, QWidget& surface)
    : suite_(suite), surface_(surface) {
  qApp->installEventFilter(this);
}

bool HotKeyFilter::concerns(const QWidget& widget) const {
  if (QApplication::activePopupWidget() || !surface_.isVisible()) return false;
  const QWidget* const modal = QApplication::activeModalWidget();
  if (modal && modal != surface_.window()) return false;
  if (widget.window() == surface_.window()) return true;
  const QWidget* ancestor = &widget;
  while (ancestor && ancestor != &surface_) ancestor = ancestor->parentWidget();
  return ancestor != nullptr;
}

bool HotKeyFilter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  // An unused key wanders on to the parents; it is asked about once, where it arrives.
  const QWidget* const focus = QApplication::focusWidget();
  const auto& widget = *static_cast<QWidget*>(watched);
  if (focus ? &widget != focus : !widget.isWindow()) return false;
  auto& key = *static_cast<QKeyEvent*>(event);
  if (!concerns(widget) || (takesText(widget) && editsText(key))) return false;

  const KeyStroke stroke = keyStrokeOf(key);
  if (stroke.keyCode == 0) return false;
  bool handled = false;
  guarded([&] { handled = suite_.pressHotKey(stroke.shift, stroke.keyCode); });
  return handled;
}

}  // namespace kestrel::qt
