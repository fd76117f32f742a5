#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace kestrel::thumbnails {

/// Threads that work for several sources in turn. A thread asks for its next job when it is free, so that a
/// source can change its mind until then. One thread does short jobs only, which so never wait for long ones.
/// Thread-safe.
class Workers {
 public:
  enum class Duty {
    kShort,  ///< jobs such as reading a folder
    kAny,    ///< these and such as decoding a picture
  };

  class Source {
   public:
    virtual ~Source() = default;
    /// The next job for a thread with this duty, or none. Called on a worker thread. Jobs must not raise.
    virtual std::function<void()> take(Duty duty) = 0;
  };

  /// The workers that all views of the process share: one thread per core for any jobs.
  static std::shared_ptr<Workers> shared();

  /// The threads are created with the first source: so many for any jobs, and one for short ones.
  explicit Workers(std::int32_t threads);
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  /// Waits for the jobs at work, but for the one that it is called by, if it runs on a worker.
  ~Workers();

  /// Asks the source for jobs as long as it exists.
  void add(const std::weak_ptr<Source>& source);
  /// Runs a single short job before those of the sources, when the earlier ones have ended.
  void later(std::function<void()> job);
  /// A function that may outlive the workers: a source calls it when it has jobs again. Thread-safe.
  std::function<void()> waker() const;

 private:
  struct Shared;

  static void serve(const std::shared_ptr<Shared>& shared, Duty duty);
  void start();

  std::int32_t count_;
  std::shared_ptr<Shared> shared_;
};

}  // namespace kestrel::thumbnails
