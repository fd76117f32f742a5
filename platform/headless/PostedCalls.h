#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace kestrel::headless {

/// Functions that other threads hand over to the thread of a control, which runs them when a test asks for
/// it: this platform has no event loop.
class PostedCalls {
 public:
  /// Thread-safe.
  void post(std::function<void()> call) {
    {
      const std::lock_guard lock(mutex_);
      calls_.push_back(std::move(call));
    }
    arrived_.notify_one();
  }

  /// Runs the calls, waiting for further ones, until `done` returns true. False if a minute passes without a
  /// call.
  bool runUntil(const std::function<bool()>& done) {
    constexpr std::chrono::minutes kPatience{1};
    while (!done()) {
      std::function<void()> call;
      {
        std::unique_lock lock(mutex_);
        if (!arrived_.wait_for(lock, kPatience, [this] { return !calls_.empty(); })) return false;
        call = std::move(calls_.front());
        calls_.pop_front();
      }
      call();
    }
    return true;
  }

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<std::function<void()>> calls_;
};

}  // namespace kestrel::headless
