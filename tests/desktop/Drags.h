#pragma once

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QWindow>

namespace kestrel::desktop {

/// Drags over a window, to a position in it, as the window system does. Returns the action that is offered
/// there, and taken if `drop`.
inline Qt::DropAction drag(QWindow& window, QPoint at, const QMimeData& data, Qt::DropActions possible,
                           Qt::KeyboardModifiers modifiers, bool drop) {
  QDragEnterEvent enter(at, possible, &data, Qt::LeftButton, modifiers);
  QApplication::sendEvent(&window, &enter);
  QDragMoveEvent move(at, possible, &data, Qt::LeftButton, modifiers);
  QApplication::sendEvent(&window, &move);
  const Qt::DropAction offered = move.isAccepted() ? move.dropAction() : Qt::IgnoreAction;
  if (!drop || offered == Qt::IgnoreAction) {
    QDragLeaveEvent leave;
    QApplication::sendEvent(&window, &leave);
    return offered;
  }
  QDropEvent dropped(at, possible, &data, Qt::LeftButton, modifiers);
  QApplication::sendEvent(&window, &dropped);
  return dropped.isAccepted() ? dropped.dropAction() : Qt::IgnoreAction;
}

}  // namespace kestrel::desktop
