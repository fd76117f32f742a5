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
  waits_ = window_.isWindow() && !window_.isVisible();
  wanted_.reset();
  if (waits_) wanted_ = client;
}

void WindowPlacement::resize(const QSize& client) {
  window_.resize(client);
  waits_ = window_.isWindow() && !window_.isVisible();
  if (waits_ && wanted_) wanted_->setSize(client);
}

QRect WindowPlacement::normalPlace() const {
  if (wanted_) return *wanted_;
  const QRect restored = isNormal() ? QRect() : window_.normalGeometry();
  return restored.isValid() ? restored : window_.geometry();
}

bool WindowPlacement::isNormal() const {
  return !(window_.windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen));
}

bool WindowPlacement::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (!waits_ || event->type() != QEvent::Paint) return false;
  if (!window_.isWindow()) {
    // It was embedded since: there is no frame to wait for.
    waits_ = false;
    wanted_.reset();
  } else if (isNormal()) {
    // The first painting comes after the window manager has taken the window in.
    QTimer::singleShot(0, this, [this] { settle(); });
  }
  return false;
}

void WindowPlacement::settle() {
  if (!waits_ || !window_.isWindow() || !isNormal()) return;
  waits_ = false;
  const QRect wanted = std::exchange(wanted_, std::nullopt).value_or(window_.geometry());
  QtWindowFunctions desktop;
  const Rectangle kept = store::keptOnScreen({wanted.x(), wanted.y(), wanted.width(), wanted.height()},
                                             desktop.FrameOf(handleOf(&window_)), desktop);
  const QRect place(kept.Left, kept.Top, kept.Width, kept.Height);
  if (place != window_.geometry()) window_.setGeometry(place);
}

}  // namespace kestrel::qt
