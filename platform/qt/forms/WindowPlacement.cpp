#include "WindowPlacement.h"

#include <QEvent>
#include <QTimer>
#include <utility>

#include "platform/qt/core/Handles.h"
#include "platform/qt/services/QtWindowFunctions.h"
#include "platform/store/StoredPositions.h"

namespace kestrel::qt {

WindowPlacement::WindowPlacement(QWidget& window) : window_(window) { window_.installEventFilter(this); }

void WindowPlacement::place(const QRect& client) {
  window_.setGeometry(client);
  wanted_.reset();
  if (window_.isWindow() && !window_.isVisible()) wanted_ = client;
}

bool WindowPlacement::eventFilter(QObject* /*watched*/, QEvent* event) {
  // The first paint event comes after the window manager has mapped the window.
  if (wanted_ && event->type() == QEvent::Paint) QTimer::singleShot(0, this, [this] { settle(); });
  return false;
}

void WindowPlacement::settle() {
  const std::optional<QRect> wanted = std::exchange(wanted_, std::nullopt);
  if (!wanted || !window_.isWindow() || window_.windowState() & (Qt::WindowMinimized | Qt::WindowMaximized)) {
    return;
  }
  QtWindowFunctions desktop;
  const Rectangle kept = store::keptOnScreen({wanted->x(), wanted->y(), wanted->width(), wanted->height()},
                                             desktop.FrameOf(handleOf(&window_)), desktop);
  const QRect place(kept.Left, kept.Top, kept.Width, kept.Height);
  if (place != window_.geometry()) window_.setGeometry(place);
}

}  // namespace kestrel::qt
