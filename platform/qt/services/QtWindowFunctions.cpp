#include "QtWindowFunctions.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include "DigitBox.h"
#include "base/RuntimeError.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/view/ViewCanvas.h"

namespace kestrel::qt {
namespace {

Margins frameOf(const QWidget& window) {
  const QRect inner = window.geometry(), outer = window.frameGeometry();
  return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
          outer.bottom() - inner.bottom()};
}

}  // namespace

void QtWindowFunctions::AddWindowStyle(WindowHandle window, std::int32_t style) {
  auto* const edit = qobject_cast<QLineEdit*>(widgetOf(window));
  if (edit && (style & kStyleDigitsOnly) != 0) DigitBox::install(*edit);
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
