#include "HotKeyFilter.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <algorithm>
#include <array>

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Keys.h"

namespace kestrel::qt {
namespace {

bool takesText(const QWidget& widget) {
  if (widget.testAttribute(Qt::WA_InputMethodEnabled)) return true;
  // Read-only text widgets too: text can be copied from them.
  return qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QTextEdit*>(&widget) ||
         qobject_cast<const QPlainTextEdit*>(&widget) || qobject_cast<const QAbstractSpinBox*>(&widget);
}

/// Keys that type or edit text, or move the text cursor.
bool editsText(const QKeyEvent& event) {
  static constexpr std::array kEditing = {QKeySequence::Copy, QKeySequence::Cut,  QKeySequence::Paste,
                                          QKeySequence::Undo, QKeySequence::Redo, QKeySequence::SelectAll};
  const bool plain = !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
  const bool isFunctionKey = event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35;
  if (plain) return !isFunctionKey;
  return std::any_of(kEditing.begin(), kEditing.end(),
                     [&event](QKeySequence::StandardKey standard) { return event.matches(standard); });
}

/// Whether the stored layout gives the key to a command, which may be disabled.
bool isAssigned(docking::MoorageModel& suite, const KeyStroke& stroke) {
  const auto& commands = suite.Commands().all();
  return std::any_of(commands.begin(), commands.end(), [&](const auto& command) {
    return command->HotKeys().find(stroke.shift, stroke.keyCode) != nullptr;
  });
}

}  // namespace

HotKeyFilter::HotKeyFilter(docking::MoorageModel& suite, const QWidget& control)
    : suite_(suite), control_(control) {
  qApp->installEventFilter(this);
}

bool HotKeyFilter::isUsable() const {
  if (!control_.isVisible() || !control_.isEnabled() || QApplication::activePopupWidget()) return false;
  const QWidget* const modal = QApplication::activeModalWidget();
  return !modal || modal == control_.window();
}

bool HotKeyFilter::owns(const QWidget& widget) const {
  for (const QWidget* ancestor = &widget; ancestor; ancestor = ancestor->parentWidget()) {
    if (ancestor == &control_) return true;
    if (ancestor->isWindow() && !qobject_cast<const QDockWidget*>(ancestor)) break;
  }
  return widget.isAncestorOf(&control_) && fillsItsWindow();
}

bool HotKeyFilter::fillsItsWindow() const {
  const QWidget* const window = control_.window();
  return QRect(control_.mapTo(window, QPoint()), control_.size()) == window->rect();
}

bool HotKeyFilter::eventFilter(QObject* watched, QEvent* event) {
  const bool claims = event->type() == QEvent::ShortcutOverride;
  if ((!claims && event->type() != QEvent::KeyPress) || !watched->isWidgetType()) return false;
  // An unhandled key propagates to the parents; handle it only at the focus widget.
  const QWidget* const focus = QApplication::focusWidget();
  const auto& widget = *static_cast<QWidget*>(watched);
  if (focus ? &widget != focus : !widget.isWindow()) return false;
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (!isUsable() || !owns(widget) || (takesText(widget) && editsText(key))) return false;

  const Binding binding = bindingOf(key);
  if (!binding.any()) return false;
  if (claims) {
    event->accept();
    return true;
  }
  return run(binding, key);
}

HotKeyFilter::Binding HotKeyFilter::bindingOf(const QKeyEvent& event) const {
  const KeyStroke stroke = keyStrokeOf(event);
  if (stroke.keyCode != 0 && suite_.hasHotKey(stroke.shift, stroke.keyCode)) return {.hotKey = true};
  if (desktopKeys_.empty() || isAssigned(suite_, stroke)) return {};

  const QKeySequence pressed(QKeyCombination(event.modifiers() & ~Qt::KeypadModifier, Qt::Key(event.key())));
  if (pressed == QKeySequence(Qt::Key_F10)) return {.menuBar = true};
  for (const DesktopKey& desktopKey : desktopKeys_) {
    if (!desktopKey.keys.contains(pressed)) continue;
    docking::CommandModel& command = suite_.Commands().Item(desktopKey.command);
    if (command.available()) return {.command = &command};
  }
  return {};
}

bool HotKeyFilter::run(const Binding& binding, const QKeyEvent& event) {
  bool handled = true;
  if (binding.hotKey) {
    const KeyStroke stroke = keyStrokeOf(event);
    guarded([&] { handled = suite_.pressHotKey(stroke.shift, stroke.keyCode); });
  } else if (binding.command) {
    guarded([&] { suite_.click(*binding.command); });
  } else {
    Q_EMIT menuBarRequested();
  }
  return handled;
}

}  // namespace kestrel::qt
