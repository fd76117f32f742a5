#pragma once

#include <chrono>
#include <functional>
#include <memory>
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
  /// Cancels, and waits until the work has ended, but not longer than `kPatience`: a call of the system
  /// cannot be interrupted, and a disk that was disconnected may never answer. The thread then ends by itself
  /// after that call.
  ~BackgroundTransfer();

  static constexpr std::chrono::milliseconds kPatience{2000};

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
  struct Shared;
  class Worker;

  std::shared_ptr<Shared> shared_;
  std::thread thread_;
};

}  // namespace kestrel::transfer
