#include "QtWindowFunctions.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>

#include "base/RuntimeError.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/view/ViewCanvas.h"

namespace kestrel::qt {
namespace {

/// Blocks typed characters other than digits; pasted or set text is not checked.
class DigitsOnly final : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    // Keys with Control are commands of the edit, such as paste.
    if (key.modifiers().testFlag(Qt::ControlModifier)) return false;
    const QString typed = key.text();
    return !typed.isEmpty() && typed[0].isPrint() && !(typed[0] >= u'0' && typed[0] <= u'9');
  }
};

Margins frameOf(const QWidget& window) {
  const QRect inner = window.geometry(), outer = window.frameGeometry();
  return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
          outer.bottom() - inner.bottom()};
}

}  // namespace

void QtWindowFunctions::AddWindowStyle(WindowHandle window, std::int32_t style) {
  QWidget* const widget = widgetOf(window);
  if (!widget || (style & kStyleDigitsOnly) == 0) return;
  widget->installEventFilter(new DigitsOnly(widget));
  widget->setInputMethodHints(widget->inputMethodHints() | Qt::ImhDigitsOnly);
}

bool QtWindowFunctions::IsWindowVisible(WindowHandle window) {
  const QWidget* const widget = widgetOf(window);
  return widget && widget->isVisible();
}

Point QtWindowFunctions::GetCursorPos() {
  const QPoint position = QCursor::pos();
  return {position.x(), position.y()};
}

Point QtWindowFunctions::ScreenToClient(WindowHandle window, const Point& screen) {
  const QWidget* const widget = widgetOf(window);
  if (!widget) return screen;
  const QPoint position(screen.X, screen.Y);
  const auto* const canvas = qobject_cast<const ViewCanvas*>(widget);
  const QPoint own = canvas ? canvas->screenToView(position).toPoint() : widget->mapFromGlobal(position);
  return {own.x(), own.y()};
}

void QtWindowFunctions::LockWindowUpdate(WindowHandle window) {
  if (locked_) locked_->setUpdatesEnabled(true);
  locked_ = widgetOf(window);
  if (locked_) locked_->setUpdatesEnabled(false);
}

std::int32_t QtWindowFunctions::ScreenCount() {
  return static_cast<std::int32_t>(QGuiApplication::screens().size());
}

Rectangle QtWindowFunctions::ScreenArea(std::int32_t index) {
  QList<QScreen*> screens = QGuiApplication::screens();
  if (index < 0 || index >= screens.size()) {
    throw RuntimeError(err::kSubscript, "There is no screen " + std::to_string(index) + ".");
  }
  // The primary screen is screen 0, regardless of the toolkit's order.
  const qsizetype primary = screens.indexOf(QGuiApplication::primaryScreen());
  if (primary > 0) screens.move(primary, 0);
  const QRect area = screens[index]->availableGeometry();
  return {area.x(), area.y(), area.width(), area.height()};
}

Margins QtWindowFunctions::FrameOf(WindowHandle window) {
  const QWidget* const widget = widgetOf(window);
  const QWidget* const topLevel = widget ? widget->window() : nullptr;
  return topLevel && topLevel->isVisible() ? frameOf(*topLevel) : Margins{};
}

}  // namespace kestrel::qt
