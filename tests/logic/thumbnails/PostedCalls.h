#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/thumbnailview/Services.h"

namespace kestrel::thumbnails::test {

/// The event loop of a test: functions that worker threads post, run on the test's thread when it waits.
class PostedCalls {
 public:
  /// May be used after the end of this object.
  Post post() const {
    return [queue = queue_](std::function<void()> call) {
      {
        const std::lock_guard lock(queue->mutex);
        queue->calls.push_back(std::move(call));
      }
      queue->arrived.notify_one();
    };
  }

  /// Runs one call, waiting for it. False if none comes within a minute.
  bool runOne() {
    std::function<void()> call;
    {
      std::unique_lock lock(queue_->mutex);
      const bool came =
          queue_->arrived.wait_for(lock, std::chrono::minutes(1), [this] { return !queue_->calls.empty(); });
      if (!came) return false;
      call = std::move(queue_->calls.front());
      queue_->calls.pop_front();
    }
    call();
    return true;
  }

  bool runUntil(const std::function<bool()>& done) {
    while (!done()) {
      if (!runOne()) return false;
    }
    return true;
  }

  /// Runs what is there, without waiting.
  void runPending() {
    while (pending() > 0) runOne();
  }

  std::size_t pending() const {
    const std::lock_guard lock(queue_->mutex);
    return queue_->calls.size();
  }

 private:
  struct Queue {
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::function<void()>> calls;
  };

  std::shared_ptr<Queue> queue_ = std::make_shared<Queue>();
};

}  // namespace kestrel::thumbnails::test
