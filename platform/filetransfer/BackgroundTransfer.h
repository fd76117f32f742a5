#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "FileTransfer.h"

namespace kestrel::transfer {

/// Does the work on a thread of its own. The members are called on one thread, the owner's.
class BackgroundTransfer {
 public:
  enum class State {
    kWorking,
    kAsking,    ///< waits for an answer
    kFinished,  ///< the report is complete
  };

  using Work = std::function<Report(const Request&, Caller&)>;

  /// An exception of the work ends it; the report then has all sources as failed.
  explicit BackgroundTransfer(Request request, Work work = carryOut);
  BackgroundTransfer(const BackgroundTransfer&) = delete;
  BackgroundTransfer& operator=(const BackgroundTransfer&) = delete;
  /// Cancels, and waits until the work has ended. A call of the system cannot be interrupted.
  ~BackgroundTransfer();

  State state() const;
  /// Waits until the work asks or has finished, but not longer than `limit`.
  State waitFor(std::chrono::milliseconds limit);

  Progress progress() const;
  /// While it asks.
  Question question() const;
  void answer(const Answer& answer);
  /// The work ends soon, with a report. An open question is withdrawn.
  void cancel();
  /// When it has finished.
  Report report() const;

 private:
  class Worker;

  State stateLocked() const;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  // Guarded by the mutex
  Progress progress_;
  std::optional<Question> question_;
  std::optional<Answer> answer_;
  std::optional<Report> report_;
  bool canceled_ = false;

  std::thread thread_;
};

}  // namespace kestrel::transfer
