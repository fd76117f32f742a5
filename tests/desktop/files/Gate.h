#pragma once

#include <condition_variable>
#include <mutex>

namespace kestrel::desktop {

/// Where all copies of this process wait while it is closed.
class Gate {
 public:
  void close() { set(true); }
  void open() { set(false); }
  /// Called by the copies.
  void pass() {
    std::unique_lock lock(mutex_);
    opened_.wait(lock, [this] { return !closed_; });
  }

 private:
  void set(bool closed) {
    const std::scoped_lock lock(mutex_);
    closed_ = closed;
    opened_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable opened_;
  bool closed_ = false;
};

Gate& gate();

}  // namespace kestrel::desktop
