#include "PopupPlace.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QVariant>

#include "platform/qt/core/Keys.h"

namespace kestrel::qt {

PopupPlace::PopupPlace(const QWidget& control) : control_(control) { qApp->installEventFilter(this); }

bool PopupPlace::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    byKey_ = isContextMenuKey(*static_cast<const QKeyEvent*>(event));
  } else if (event->type() == QEvent::MouseButtonPress) {
    byKey_ = false;
  }
  return false;
}

const QWidget* PopupPlace::markedWidget() const {
  const QWidget* const focus = QApplication::focusWidget();
  return byKey_ && focus && (focus == &control_ || control_.isAncestorOf(focus)) ? focus : nullptr;
}

QPoint PopupPlace::position(const QRect& area) const {
  if (const QWidget* const focus = markedWidget()) {
    const QRect marked = focus->inputMethodQuery(Qt::ImCursorRectangle).toRect() & focus->rect();
    return focus->mapToGlobal((marked.isEmpty() ? focus->rect() : marked).center());
  }
  const QPoint pointer = QCursor::pos();
  return area.contains(pointer) ? pointer : area.center();
}

}  // namespace kestrel::qt
