#include "BackgroundTransfer.h"

#include <exception>
#include <new>
#include <string>
#include <utility>

namespace kestrel::transfer {
namespace {

Report failureOf(const Request& request, const std::string& reason) {
  Report report;
  for (const std::filesystem::path& source : request.sources) report.failed.push_back({source, reason});
  return report;
}

/// The report of the work. No exception may leave the thread: it would end the program.
Report reportOf(const BackgroundTransfer::Work& work, const Request& request, Caller& caller) noexcept {
  try {
    try {
      return work(request, caller);
    } catch (const std::bad_alloc&) {
      return failureOf(request, "the work ended early, there is not enough memory");
    } catch (const std::exception&) {
      return failureOf(request, "the work ended early");
    }
  } catch (...) {
    // There is not even the memory for a report.
    Report report;
    report.canceled = true;
    return report;
  }
}

}  // namespace

/// The caller's side on the thread of the work.
class BackgroundTransfer::Worker final : public Caller {
 public:
  explicit Worker(BackgroundTransfer& owner) : owner_(owner) {}

  Answer ask(const Question& question) override {
    std::unique_lock lock(owner_.mutex_);
    if (owner_.canceled_) return {};
    owner_.question_ = question;
    owner_.answer_.reset();
    owner_.changed_.notify_all();
    owner_.changed_.wait(lock, [this] { return owner_.answer_ || owner_.canceled_; });
    owner_.question_.reset();
    return owner_.canceled_ ? Answer() : *owner_.answer_;
  }

  void show(const Progress& progress) override {
    const std::scoped_lock lock(owner_.mutex_);
    owner_.progress_ = progress;
  }

  bool canceled() override {
    const std::scoped_lock lock(owner_.mutex_);
    return owner_.canceled_;
  }

 private:
  BackgroundTransfer& owner_;
};

BackgroundTransfer::BackgroundTransfer(Request request, Work work) {
  thread_ = std::thread([this, own = std::move(request), ownWork = std::move(work)] {
    Worker worker(*this);
    Report report = reportOf(ownWork, own, worker);
    const std::scoped_lock lock(mutex_);
    report_ = std::move(report);
    changed_.notify_all();
  });
}

BackgroundTransfer::~BackgroundTransfer() {
  cancel();
  thread_.join();
}

BackgroundTransfer::State BackgroundTransfer::stateLocked() const {
  if (report_) return State::kFinished;
  return question_ && !answer_ && !canceled_ ? State::kAsking : State::kWorking;
}

BackgroundTransfer::State BackgroundTransfer::state() const {
  const std::scoped_lock lock(mutex_);
  return stateLocked();
}

BackgroundTransfer::State BackgroundTransfer::waitFor(std::chrono::milliseconds limit) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, limit, [this] { return stateLocked() != State::kWorking; });
  return stateLocked();
}

Progress BackgroundTransfer::progress() const {
  const std::scoped_lock lock(mutex_);
  return progress_;
}

Question BackgroundTransfer::question() const {
  const std::scoped_lock lock(mutex_);
  return question_.value_or(Question());
}

void BackgroundTransfer::answer(const Answer& answer) {
  const std::scoped_lock lock(mutex_);
  answer_ = answer;
  changed_.notify_all();
}

void BackgroundTransfer::cancel() {
  const std::scoped_lock lock(mutex_);
  canceled_ = true;
  changed_.notify_all();
}

Report BackgroundTransfer::report() const {
  const std::scoped_lock lock(mutex_);
  return report_.value_or(Report());
}

}  // namespace kestrel::transfer
