#include "PostedCalls.h"

#include <QElapsedTimer>
#include <QPointer>
#include <deque>
#include <mutex>
#include <utility>

#include "platform/qt/core/Guard.h"

namespace kestrel::qt {
namespace {

/// Of the 16 that a frame has.
constexpr qint64 kMillisecondsAtOnce = 5;

}  // namespace

struct PostedCalls::Queue {
  std::mutex mutex;
  // Guarded by the mutex
  std::deque<std::function<void()>> functions;
  PostedCalls* runner = nullptr;
};

PostedCalls::PostedCalls() : queue_(std::make_shared<Queue>()) {
  queue_->runner = this;
  // A timer without a delay fires when no event waits.
  timer_.setInterval(0);
  connect(&timer_, &QTimer::timeout, this, &PostedCalls::run);
}

PostedCalls::~PostedCalls() {
  const std::lock_guard lock(queue_->mutex);
  queue_->runner = nullptr;
}

thumbnails::Post PostedCalls::post() const {
  return [queue = queue_](std::function<void()> function) {
    const std::lock_guard lock(queue->mutex);
    if (!queue->runner) return;
    queue->functions.push_back(std::move(function));
    if (queue->functions.size() > 1) return;
    // The runner's end waits for the lock, and removes the call from its event queue.
    QMetaObject::invokeMethod(
        queue->runner, [runner = queue->runner] { runner->timer_.start(); }, Qt::QueuedConnection);
  };
}

void PostedCalls::run() {
  const QPointer<PostedCalls> self(this);  // a function may destroy the view
  const std::shared_ptr<Queue> queue = queue_;
  QElapsedTimer clock;
  clock.start();
  while (self && clock.elapsed() < kMillisecondsAtOnce) {
    std::function<void()> next;
    {
      const std::lock_guard lock(queue->mutex);
      if (queue->functions.empty()) {
        timer_.stop();
        return;
      }
      next = std::move(queue->functions.front());
      queue->functions.pop_front();
    }
    guarded([&] { next(); });
  }
}

}  // namespace kestrel::qt
