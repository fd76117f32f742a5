#include "Parallel.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "SingleThreaded.h"
#include "base/ThrowRecord.h"

namespace kestrel::engine {
namespace {

using Work = std::function<void(std::int32_t, std::int32_t)>;

/// True on a thread that does all its work alone: inside a band, where a nested split would deadlock, and in
/// the background.
thread_local bool alone = false;

/// More bands than threads, so that a core busy with other programs does not delay the rest.
constexpr std::int32_t kBandsPerThread = 4;

/// One call of `forRows`: hands out its bands and keeps the first error. Guarded by the pool's mutex.
struct Job {
  const Work& work;
  std::int32_t height;
  std::int32_t bandRows;
  std::int32_t next = 0;
  std::int32_t active = 0;  ///< threads inside a band
  std::exception_ptr error;

  bool hasBand() const { return next < height && !error; }
};

/// Thread pool, created at the first call that needs it and kept until exit.
class Workers {
 public:
  static Workers& instance() {
    static Workers workers;
    return workers;
  }

  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  ~Workers() {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    wake_.notify_all();
    for (auto& thread : threads_) thread.join();
  }

  /// Runs the job on this thread and the workers; false, with nothing done, if they have another job.
  bool run(Job& job) {
    std::unique_lock lock(mutex_);
    if (job_ != nullptr) return false;
    job_ = &job;
    wake_.notify_all();
    takeBands(job, lock);
    done_.wait(lock, [&] { return job.active == 0; });
    job_ = nullptr;
    return true;
  }

 private:
  Workers() {
    try {
      for (std::int32_t i = 1; i < threadCount(); ++i) threads_.emplace_back([this] { serve(); });
    } catch (const std::system_error&) {
      // The system refuses further threads; those already created do the work.
    }
  }

  void serve() {
    std::unique_lock lock(mutex_);
    while (true) {
      wake_.wait(lock, [this] { return ending_ || (job_ != nullptr && job_->hasBand()); });
      if (ending_) return;
      takeBands(*job_, lock);
    }
  }

  void takeBands(Job& job, std::unique_lock<std::mutex>& lock) {
    ++job.active;
    alone = true;
    while (job.hasBand()) {
      const std::int32_t first = job.next;
      job.next = job.height - first > job.bandRows ? first + job.bandRows : job.height;
      const std::int32_t last = job.next;
      lock.unlock();
      std::exception_ptr error;
      try {
        job.work(first, last);
      } catch (...) {
        error = std::current_exception();
      }
      lock.lock();
      if (error && !job.error) job.error = error;
    }
    alone = false;
    if (--job.active == 0) done_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable wake_, done_;
  Job* job_ = nullptr;
  bool ending_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace

SingleThreaded::SingleThreaded() : before_(std::exchange(alone, true)) {}

SingleThreaded::~SingleThreaded() { alone = before_; }

std::int32_t threadCount() {
  static const auto count = static_cast<std::int32_t>(std::max(1U, std::thread::hardware_concurrency()));
  return count;
}

void forRows(std::int32_t height, std::int32_t minRowsPerTask, const Work& work) {
  if (height <= 0) return;
  const std::int32_t smallest = std::max(1, minRowsPerTask);
  const std::int32_t bands = std::min(threadCount() * kBandsPerThread, height / smallest);
  if (bands > 1 && threadCount() > 1 && !alone) {
    Job job{work, height, (height - 1) / bands + 1, 0, 0, nullptr};
    if (Workers::instance().run(job)) {
      if (job.error) RethrowHere(job.error);
      return;
    }
  }
  work(0, height);
}

}  // namespace kestrel::engine
