#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace kestrel::thumbnails {

/// Threads that work for several sources in turn. A thread asks for its next job when it is free, so that a
/// source can change its mind until then. Thread-safe.
class Workers {
 public:
  class Source {
   public:
    virtual ~Source() = default;
    /// The next job, or none. Called on a worker thread. Jobs must not raise.
    virtual std::function<void()> take() = 0;
  };

  /// The workers that all views of the process share: one thread per core.
  static std::shared_ptr<Workers> shared();

  /// The threads are created with the first source.
  explicit Workers(std::int32_t threads);
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  /// Waits for the jobs at work, but for the one that it is called by, if it runs on a worker.
  ~Workers();

  /// Asks the source for jobs as long as it exists.
  void add(const std::weak_ptr<Source>& source);
  /// Runs a single job before those of the sources.
  void later(std::function<void()> job);
  /// A function that may outlive the workers: a source calls it when it has jobs again. Thread-safe.
  std::function<void()> waker() const;

 private:
  struct Shared;

  static void serve(const std::shared_ptr<Shared>& shared);
  void start();

  std::int32_t count_;
  std::shared_ptr<Shared> shared_;
};

}  // namespace kestrel::thumbnails
