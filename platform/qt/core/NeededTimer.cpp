#include "NeededTimer.h"

#include <QAbstractEventDispatcher>
#include <utility>

#include "Guard.h"

namespace kestrel::qt {

NeededTimer::NeededTimer(std::chrono::milliseconds interval, std::function<bool()> needed,
                         std::function<void()> work, QObject* parent)
    : QObject(parent), needed_(std::move(needed)), work_(std::move(work)) {
  timer_.setInterval(interval);
  connect(&timer_, &QTimer::timeout, this, &NeededTimer::run);
  const auto* const loop = QAbstractEventDispatcher::instance();
  if (!loop) return;
  // A loop that only polls for events never goes to sleep.
  connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &NeededTimer::look);
  connect(loop, &QAbstractEventDispatcher::awake, this, &NeededTimer::look);
}

void NeededTimer::look() {
  if (!timer_.isActive() && needed_()) timer_.start();
}

void NeededTimer::run() {
  if (!needed_()) {
    timer_.stop();
    return;
  }
  const auto work = work_;  // it may destroy this object
  guarded(work);
}

}  // namespace kestrel::qt
