#include "BackgroundTransfer.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace kestrel::transfer {
namespace {

/// The report of work that an exception has ended.
Report lostWork(const Request& request) {
  Report report;
  for (const std::filesystem::path& source : request.sources)
    report.failed.push_back({source, "the work ended early"});
  return report;
}

/// No exception may leave the thread: it would end the program. `lost` was made in advance, since there may
/// be no memory left for it.
Report reportOf(const BackgroundTransfer::Work& work, const Request& request, Caller& caller,
                Report&& lost) noexcept {
  try {
    return work(request, caller);
  } catch (...) {
    return std::move(lost);
  }
}

}  // namespace

/// What both threads use. The one of the work may outlive the owner.
struct BackgroundTransfer::Shared {
  std::mutex mutex;
  std::condition_variable changed;
  // Guarded by the mutex
  Progress progress;
  std::optional<Question> question;
  std::optional<Answer> answer;
  std::optional<Report> report;
  bool canceled = false;

  /// With the mutex locked.
  State state() const {
    if (report) return State::kFinished;
    return question && !answer && !canceled ? State::kAsking : State::kWorking;
  }
};

/// The caller's side on the thread of the work.
class BackgroundTransfer::Worker final : public Caller {
 public:
  explicit Worker(Shared& shared) : shared_(shared) {}

  Answer ask(const Question& question) override {
    std::unique_lock lock(shared_.mutex);
    if (shared_.canceled) return {};
    shared_.question = question;
    shared_.answer.reset();
    shared_.changed.notify_all();
    shared_.changed.wait(lock, [this] { return shared_.answer || shared_.canceled; });
    shared_.question.reset();
    return shared_.canceled ? Answer() : *shared_.answer;
  }

  void show(const Progress& progress) override {
    const std::scoped_lock lock(shared_.mutex);
    shared_.progress = progress;
  }

  bool canceled() override {
    const std::scoped_lock lock(shared_.mutex);
    return shared_.canceled;
  }

 private:
  Shared& shared_;
};

BackgroundTransfer::BackgroundTransfer(Request request, Work work) : shared_(std::make_shared<Shared>()) {
  Report lost = lostWork(request);
  thread_ = std::thread([shared = shared_, lost = std::move(lost), own = std::move(request),
                         ownWork = std::move(work)]() mutable {
    Worker worker(*shared);
    Report report = reportOf(ownWork, own, worker, std::move(lost));
    const std::scoped_lock lock(shared->mutex);
    shared->report = std::move(report);
    shared->changed.notify_all();
  });
}

BackgroundTransfer::~BackgroundTransfer() {
  cancel();
  if (waitFor(kPatience) == State::kFinished) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

BackgroundTransfer::State BackgroundTransfer::state() const {
  const std::scoped_lock lock(shared_->mutex);
  return shared_->state();
}

BackgroundTransfer::State BackgroundTransfer::waitFor(std::chrono::milliseconds limit) {
  std::unique_lock lock(shared_->mutex);
  shared_->changed.wait_for(lock, limit, [this] { return shared_->state() != State::kWorking; });
  return shared_->state();
}

Progress BackgroundTransfer::progress() const {
  const std::scoped_lock lock(shared_->mutex);
  return shared_->progress;
}

Question BackgroundTransfer::question() const {
  const std::scoped_lock lock(shared_->mutex);
  return shared_->question.value_or(Question());
}

void BackgroundTransfer::answer(const Answer& answer) {
  const std::scoped_lock lock(shared_->mutex);
  shared_->answer = answer;
  shared_->changed.notify_all();
}

void BackgroundTransfer::cancel() {
  const std::scoped_lock lock(shared_->mutex);
  shared_->canceled = true;
  shared_->changed.notify_all();
}

Report BackgroundTransfer::report() const {
  const std::scoped_lock lock(shared_->mutex);
  return shared_->report.value_or(Report());
}

}  // namespace kestrel::transfer
