#include "Workers.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <system_error>
#include <utility>

#include "engine/parallel/Parallel.h"
#include "engine/parallel/SingleThreaded.h"

namespace kestrel::thumbnails {

struct Workers::Shared {
  std::mutex mutex;
  std::condition_variable wake;
  // Guarded by the mutex
  std::vector<std::weak_ptr<Source>> sources;
  std::deque<std::function<void()>> single;
  std::vector<std::thread> threads;
  bool complete = false;    ///< the thread for short jobs exists
  std::uint64_t calls = 0;  ///< increased with each call of the waker
  bool ending = false;

  void call() {
    {
      const std::lock_guard lock(mutex);
      ++calls;
    }
    wake.notify_all();
  }

  /// The sources in the order in which a thread asks them.
  std::vector<std::weak_ptr<Source>> inTurn(std::size_t& turn) {
    std::erase_if(sources, [](const auto& source) { return source.expired(); });
    if (sources.empty()) return {};
    turn = (turn + 1) % sources.size();
    std::vector<std::weak_ptr<Source>> order = sources;
    std::rotate(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(turn), order.end());
    return order;
  }
};

std::shared_ptr<Workers> Workers::shared() {
  // What decoders use must be destroyed after the workers, hence be constructed before them.
  static const std::int32_t cores = engine::threadCount();
  static const auto workers = std::make_shared<Workers>(cores);
  return workers;
}

Workers::Workers(std::int32_t threads) : count_(std::max(threads, 1)), shared_(std::make_shared<Shared>()) {}

Workers::~Workers() {
  std::vector<std::thread> threads;
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->ending = true;
    threads.swap(shared_->threads);
  }
  shared_->wake.notify_all();
  for (std::thread& thread : threads) {
    // The last owner may be a source that ends on a worker: that thread ends by itself.
    if (thread.get_id() == std::this_thread::get_id()) {
      thread.detach();
    } else {
      thread.join();
    }
  }
}

void Workers::start() {
  // Called with the mutex.
  try {
    while (shared_->threads.size() <= static_cast<std::size_t>(count_)) {
      const bool last = shared_->threads.size() == static_cast<std::size_t>(count_);
      const Duty duty = last ? Duty::kShort : Duty::kAny;
      shared_->threads.emplace_back([shared = shared_, duty] { serve(shared, duty); });
      shared_->complete = last;
    }
  } catch (const std::system_error&) {
    // The system refuses further threads; those already created do the work.
  }
}

void Workers::add(const std::weak_ptr<Source>& source) {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->sources.push_back(source);
    start();
  }
  shared_->call();
}

void Workers::later(std::function<void()> job) {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->single.push_back(std::move(job));
    start();
  }
  shared_->call();
}

std::function<void()> Workers::waker() const {
  return [shared = shared_] { shared->call(); };
}

void Workers::serve(const std::shared_ptr<Shared>& shared, Duty duty) {
  const engine::SingleThreaded alone;
  std::size_t turn = 0;
  std::unique_lock lock(shared->mutex);
  while (!shared->ending) {
    const std::uint64_t calls = shared->calls;
    std::function<void()> job;
    const bool servesSingle = duty == Duty::kShort || !shared->complete;
    if (servesSingle && !shared->single.empty()) {
      job = std::move(shared->single.front());
      shared->single.pop_front();
      lock.unlock();
    } else {
      const auto sources = shared->inTurn(turn);
      // A source has a lock of its own, under which it calls the waker.
      lock.unlock();
      for (const auto& weak : sources) {
        if (const auto source = weak.lock()) job = source->take(duty);
        if (job) break;
      }
    }
    if (job) {
      job();
      job = nullptr;
      lock.lock();
    } else {
      lock.lock();
      shared->wake.wait(lock, [&] { return shared->ending || shared->calls != calls; });
    }
  }
}

}  // namespace kestrel::thumbnails
