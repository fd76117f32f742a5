#include "Journal.h"

#include <algorithm>
#include <random>
#include <system_error>
#include <utility>

#include "TakenFile.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "engine/codecs/FileStore.h"
#include "engine/imgx/EncodedPicture.h"

namespace kestrel::engine {
namespace {

/// How long the end of an editor waits for its last changes to be written. An end that the user has agreed to
/// discards them, which does not wait.
constexpr std::chrono::seconds kPatience{5};

std::int64_t secondsNow() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::filesystem::path freshName(const std::filesystem::path& folder) {
  std::random_device random;
  return folder / (std::to_string(random()) + std::to_string(random()) + std::string(kJournalSuffix));
}

}  // namespace

Journal::Journal(std::filesystem::path folder, RecoveryBounds bounds)
    : folder_(std::move(folder)), bounds_(bounds) {}

Journal::~Journal() {
  {
    std::unique_lock lock(mutex_);
    idle_.wait_for(lock, kPatience, [this] { return requests_.empty() && !working_; });
    std::erase_if(requests_, [](const Request& request) { return request.kind == Request::kKeep; });
    canceled_ = true;
    ending_ = true;
  }
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void Journal::Keep(ImgX& Picture, const std::string& Filename) {
  add({Request::kKeep, {stateOf(Picture), Filename, secondsNow()}});
}

void Journal::Discard() { add({Request::kDiscard}); }

void Journal::Leave() { add({Request::kLeave}); }

void Journal::Adopt(std::unique_ptr<TakenPicture> Taken) {
  auto* const ours = dynamic_cast<TakenFile*>(Taken.get());
  if (ours == nullptr) throw RuntimeError(err::kInvalidCall, "The picture is not one of this store.");
  add({Request::kAdopt, {}, ours->release()});
}

std::string Journal::Failure() const {
  const std::lock_guard lock(mutex_);
  return failure_;
}

void Journal::Finish() {
  std::unique_lock lock(mutex_);
  idle_.wait(lock, [this] { return requests_.empty() && !working_; });
}

void Journal::add(Request request) {
  {
    const std::lock_guard lock(mutex_);
    // Only the latest state matters, and none that is discarded.
    const bool replacesState = request.kind == Request::kKeep || request.kind == Request::kDiscard;
    if (replacesState && !requests_.empty() && requests_.back().kind == Request::kKeep) requests_.pop_back();
    if (request.kind == Request::kDiscard && requests_.empty()) canceled_ = true;
    requests_.push_back(std::move(request));
    if (!thread_.joinable()) thread_ = std::thread([this] { serve(); });
  }
  wake_.notify_all();
}

void Journal::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return ending_ || !requests_.empty(); });
    if (requests_.empty()) return;
    {
      Request request = std::move(requests_.front());
      requests_.pop_front();
      working_ = true;
      canceled_ = ending_;
      lock.unlock();
      carryOut(request);
    }
    lock.lock();
    working_ = false;
    if (requests_.empty()) idle_.notify_all();
  }
}

void Journal::carryOut(Request& request) {
  std::string failure;
  try {
    switch (request.kind) {
      case Request::kKeep:
        keep(request.snapshot);
        break;
      case Request::kDiscard:
        if (const auto problem = file_.remove()) throw fileError(*problem, folder_, "cannot be changed");
        break;
      case Request::kLeave:
        file_ = os::OwnedFile();
        break;
      case Request::kAdopt:
        file_ = std::move(request.file);
        break;
    }
  } catch (...) {
    failure = DescribeCurrentError().Description;
  }
  const std::lock_guard lock(mutex_);
  failure_ = std::move(failure);
}

void Journal::keep(Snapshot& snapshot) {
  const auto canceled = [this] { return isCanceled(); };
  const auto blocks = packSnapshot(snapshot, bounds_.snapshotBytes, canceled);
  // From here on a change of the picture needs no copy of it.
  snapshot.picture = {};
  if (!blocks) return;
  if (const auto problem = os::makePrivateFolder(folder_)) {
    throw fileError(*problem, folder_, "cannot be written");
  }
  const auto problem = file_.replace(freshName(folder_), *blocks, canceled);
  if (problem && problem->problem != os::FileProblem::kCanceled) {
    throw fileError(*problem, folder_, "cannot be written");
  }
  if (!problem) dropOldest(folder_, bounds_);
}

bool Journal::isCanceled() const {
  const std::lock_guard lock(mutex_);
  return canceled_;
}

}  // namespace kestrel::engine
