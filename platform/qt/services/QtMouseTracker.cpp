#include "QtMouseTracker.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>
#include <utility>

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Handles.h"

namespace kestrel::qt {

QtMouseTracker::QtMouseTracker() {
  rest_.setSingleShot(true);
  connect(&rest_, &QTimer::timeout, this, &QtMouseTracker::hovered);
}

WindowHandle QtMouseTracker::hWnd() const { return handleOf(window_); }

void QtMouseTracker::hWnd(WindowHandle value) {
  StopTracking();
  if (window_) window_->removeEventFilter(this);
  window_ = widgetOf(value);
  if (!window_) return;
  window_->setMouseTracking(true);
  window_->installEventFilter(this);
}

void QtMouseTracker::StartTracking() {
  if (!window_) return;
  hoverArmed_ = leaveArmed_ = true;
  rest_.start(QApplication::style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay));
}

void QtMouseTracker::StopTracking() {
  hoverArmed_ = leaveArmed_ = false;
  rest_.stop();
}

bool QtMouseTracker::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::MouseMove && hoverArmed_) {
    rest_.start();
  } else if (event->type() == QEvent::Leave) {
    left();
  }
  return false;
}

void QtMouseTracker::hovered() {
  if (!window_ || !window_->underMouse() || !std::exchange(hoverArmed_, false)) return;
  guarded([this] { MouseHover(); });
}

void QtMouseTracker::left() {
  rest_.stop();
  hoverArmed_ = false;
  if (std::exchange(leaveArmed_, false)) guarded([this] { MouseLeave(); });
}

}  // namespace kestrel::qt
